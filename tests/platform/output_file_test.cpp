// Files that stay open for writing.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "base/runtime_error.h"
#include "platform/linux/linux_files.h"
#include "tests/support/expect_error.h"

namespace cvl {
namespace {

class OutputFileTest : public testing::Test {
 protected:
  OutputFileTest() {
    std::string folder = testing::TempDir() + "cvl-output-XXXXXX";
    Folder = mkdtemp(folder.data());
  }
  ~OutputFileTest() override { std::filesystem::remove_all(Folder); }

  std::string Contents() const {
    std::ifstream file(Path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Put(const std::string &contents) const {
    std::ofstream(Path(), std::ios::binary) << contents;
  }
  std::string Path() const { return Folder + "/file"; }

  std::string Folder;
  LinuxFiles Files;
};

TEST_F(OutputFileTest, MakesAFileThatIsMissing) {
  const auto file = Files.OpenForBinary(Path());
  EXPECT_TRUE(Files.Exists(Path()));
  EXPECT_EQ(file->Write("abc"), 0);
  EXPECT_EQ(Contents(), "abc");
}

TEST_F(OutputFileTest, GoesOnWhereTheLastWriteEnded) {
  const auto file = Files.OpenForBinary(Path());
  EXPECT_EQ(file->Write("ab"), 0);
  EXPECT_EQ(file->Write(""), 0);
  EXPECT_EQ(file->Write(std::string("c\0\r\n", 4)), 0);
  EXPECT_EQ(Contents(), std::string("abc\0\r\n", 6));
}

TEST_F(OutputFileTest, WritesOverAnOldFileAndLeavesItsTail) {
  Put("0123456789");
  const auto file = Files.OpenForBinary(Path());
  EXPECT_EQ(Contents(), "0123456789");
  EXPECT_EQ(file->Write("abc"), 0);
  EXPECT_EQ(Contents(), "abc3456789");
}

TEST_F(OutputFileTest, ReportsAFullDisk) {
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const auto signal_before = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit room{4, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &room);
  const int result = Files.OpenForBinary(Path())->Write("abcdef");
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, signal_before);
  EXPECT_EQ(result, error_number::DiskFull);
  EXPECT_EQ(Contents(), "abcd");
}

TEST_F(OutputFileTest, FollowsNoLink) {
  const std::string victim = Folder + "/victim";
  std::ofstream(victim) << "untouched";
  std::filesystem::create_symlink(victim, Path());
  ExpectRuntimeError(75, [&] { return Files.OpenForBinary(Path()); });
  std::filesystem::remove(Path());
  std::filesystem::create_hard_link(victim, Path());
  ExpectRuntimeError(75, [&] { return Files.OpenForBinary(Path()); });
  EXPECT_EQ(Contents(), "untouched");
}

TEST_F(OutputFileTest, DoesNotWaitForTheReaderOfAPipe) {
  ASSERT_EQ(mkfifo(Path().c_str(), 0600), 0);
  ExpectRuntimeError(75, [&] { return Files.OpenForBinary(Path()); });
  const int reader = open(Path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ExpectRuntimeError(75, [&] { return Files.OpenForBinary(Path()); });
  close(reader);
}

TEST_F(OutputFileTest, FailsToOpenWithoutItsDirectory) {
  ExpectRuntimeError(53, [&] { return Files.OpenForBinary(Folder + "/none/file"); });
  ExpectRuntimeError(75, [&] { return Files.OpenForBinary(Folder); });
}

TEST_F(OutputFileTest, IsOfNoConcernToProgramsThatAreStarted) {
  const int next = dup(STDERR_FILENO);
  close(next);
  const auto file = Files.OpenForBinary(Path());
  EXPECT_NE(fcntl(next, F_GETFD) & FD_CLOEXEC, 0);
}

TEST_F(OutputFileTest, GivesItsDescriptorBack) {
  const int next = dup(STDERR_FILENO);
  close(next);
  Files.OpenForBinary(Path()).reset();
  EXPECT_EQ(fcntl(next, F_GETFD), -1);
}

}  // namespace
}  // namespace cvl
