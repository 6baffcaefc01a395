// Lines at the end of a file that is opened for each of them.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "base/runtime_error.h"
#include "platform/linux/linux_files.h"

namespace cvl {
namespace {

/// No file grows beyond so many bytes while this stands.
class SizeLimit {
 public:
  explicit SizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &Old_);
    const rlimit limit{bytes, Old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SizeLimit() { setrlimit(RLIMIT_FSIZE, &Old_); }
  SizeLimit(const SizeLimit &) = delete;
  SizeLimit &operator=(const SizeLimit &) = delete;

 private:
  rlimit Old_{};
};

class AppendTest : public testing::Test {
 protected:
  AppendTest() {
    std::string folder = testing::TempDir() + "cvl-append-XXXXXX";
    Folder = mkdtemp(folder.data());
  }
  ~AppendTest() override { std::filesystem::remove_all(Folder); }

  std::string Contents() const {
    std::ifstream file(Path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string Path() const { return Folder + "/file"; }

  /// Opens, writes and closes, as a line of the log does.
  int Append(const std::string &path, std::string_view bytes, IfMissing if_missing) {
    const Files::Opened opened = Files.OpenForAppend(path, if_missing);
    if (opened.Error != 0) return opened.Error;
    const int error = Files.AppendTo(opened.File, bytes);
    Files.Close(opened.File);
    return error;
  }

  std::string Folder;
  LinuxFiles Files;
};

TEST_F(AppendTest, GoesToTheEndOfTheFile) {
  EXPECT_EQ(Append(Path(), "one ", IfMissing::Create), 0);
  EXPECT_EQ(Append(Path(), "two", IfMissing::Fail), 0);
  EXPECT_EQ(Contents(), "one two");
}

TEST_F(AppendTest, TellsWhenTheFileIsMissing) {
  EXPECT_EQ(Append(Path(), "one", IfMissing::Fail), error_number::FileNotFound);
  EXPECT_FALSE(Files.Exists(Path()));
  EXPECT_EQ(Append(Folder + "/none/file", "one", IfMissing::Create), error_number::FileNotFound);
}

TEST_F(AppendTest, LeavesNothingOfWhatHasNoRoom) {
  const std::string line(60, 'a');
  EXPECT_EQ(Append(Path(), line, IfMissing::Create), 0);
  {
    const SizeLimit limit(100);
    EXPECT_EQ(Append(Path(), std::string(60, 'b'), IfMissing::Fail), error_number::DiskFull);
  }
  EXPECT_EQ(Contents(), line);
  EXPECT_EQ(Append(Path(), "c", IfMissing::Fail), 0);
  EXPECT_EQ(Contents(), line + "c");
}

TEST_F(AppendTest, NeitherWaitsForTheReaderOfAPipeNorWritesToIt) {
  ASSERT_EQ(mkfifo(Path().c_str(), 0600), 0);
  EXPECT_NE(Append(Path(), "one", IfMissing::Fail), 0);

  const int reader = open(Path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);
  EXPECT_EQ(Append(Path(), "one", IfMissing::Fail), error_number::PathFileAccess);
  char byte = 0;
  EXPECT_EQ(read(reader, &byte, 1), 0) << "the pipe is empty and has no writer";
  close(reader);
}

TEST_F(AppendTest, FollowsNoSymbolicLink) {
  const std::string elsewhere = Folder + "/elsewhere";
  std::filesystem::create_symlink(elsewhere, Path());
  EXPECT_EQ(Append(Path(), "one", IfMissing::Create), error_number::PathFileAccess);
  EXPECT_FALSE(Files.Exists(elsewhere)) << "nothing is made where the link points";

  EXPECT_EQ(Append(elsewhere, "theirs", IfMissing::Create), 0);
  EXPECT_EQ(Append(Path(), "one", IfMissing::Fail), error_number::PathFileAccess);
  EXPECT_EQ(std::filesystem::file_size(elsewhere), 6U);
}

}  // namespace
}  // namespace cvl
