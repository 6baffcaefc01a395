// Files that are opened for reading.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/linux/linux_files.h"
#include "tests/support/expect_error.h"

namespace cvl {
namespace {

class InputFileTest : public testing::Test {
 protected:
  InputFileTest() {
    std::string folder = testing::TempDir() + "cvl-input-XXXXXX";
    Folder = mkdtemp(folder.data());
  }
  ~InputFileTest() override { std::filesystem::remove_all(Folder); }

  std::string ContentsOf(const std::string &path) const {
    const auto file = Files.OpenForInput(path);
    return {std::istreambuf_iterator<char>(*file), {}};
  }
  void Put(const std::string &contents) const {
    std::ofstream(Path(), std::ios::binary) << contents;
  }
  std::string Path() const { return Folder + "/file"; }

  std::string Folder;
  LinuxFiles Files;
};

TEST_F(InputFileTest, ReadsAllBytes) {
  Put(std::string("a\0b\r\n", 5));
  EXPECT_EQ(ContentsOf(Path()), std::string("a\0b\r\n", 5));
}

TEST_F(InputFileTest, ReadsThroughALink) {
  Put("abc");
  std::filesystem::create_symlink("file", Folder + "/link");
  EXPECT_EQ(ContentsOf(Folder + "/link"), "abc");
}

TEST_F(InputFileTest, FailsToOpenWhatIsMissing) {
  ExpectRuntimeError(53, [&] { return Files.OpenForInput(Path()); });
}

TEST_F(InputFileTest, OpensNothingButRegularFiles) {
  ExpectRuntimeError(75, [&] { return Files.OpenForInput(Folder); });
  ExpectRuntimeError(75, [&] { return Files.OpenForInput("/dev/zero"); });
  ASSERT_EQ(mkfifo(Path().c_str(), 0600), 0);
  ExpectRuntimeError(75, [&] { return Files.OpenForInput(Path()); });
}

TEST_F(InputFileTest, ReadsNoMoreThan16MiB) {
  Put("");
  std::filesystem::resize_file(Path(), 16 << 20);
  EXPECT_EQ(ContentsOf(Path()).size(), std::size_t{16} << 20);
  std::filesystem::resize_file(Path(), (16 << 20) + 1);
  ExpectRuntimeError(75, [&] { return Files.OpenForInput(Path()); });
}

}  // namespace
}  // namespace cvl
