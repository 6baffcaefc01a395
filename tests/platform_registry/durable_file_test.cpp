#include "platform/linux/durable_file.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "tests/platform_registry/scratch_directory.h"
#include "tests/platform_registry/system_calls.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t Most = 1000;

class DurableFile : public testing::Test {
 protected:
  ScratchDirectory Directory;
  const std::string Path = Directory.PathOf("file");
};

class ReadWholeFileTest : public DurableFile {};

TEST_F(ReadWholeFileTest, ReadsAllBytes) {
  const std::string bytes("a\0b\r\n", 5);
  Directory.Write("file", bytes);
  std::string read = "before";
  EXPECT_EQ(ReadWholeFile(Path, Most, read), 0);
  EXPECT_EQ(read, bytes);
}

TEST_F(ReadWholeFileTest, ReadsUpToItsLimit) {
  std::string read;
  Directory.Write("file", std::string(Most, 'x'));
  EXPECT_EQ(ReadWholeFile(Path, Most, read), 0);
  Directory.Write("file", std::string(Most + 1, 'x'));
  EXPECT_EQ(ReadWholeFile(Path, Most, read), EFBIG);
}

TEST_F(ReadWholeFileTest, TellsThatThereIsNoFile) {
  std::string read;
  EXPECT_EQ(ReadWholeFile(Path, Most, read), ENOENT);
  EXPECT_EQ(ReadWholeFile(Directory.PathOf("missing/file"), Most, read), ENOENT);
}

TEST_F(ReadWholeFileTest, TakesNeitherADirectoryNorAPipeForAFile) {
  std::string read;
  EXPECT_EQ(ReadWholeFile(Directory.Path(), Most, read), EINVAL);
  ASSERT_EQ(mkfifo(Path.c_str(), 0600), 0);
  EXPECT_EQ(ReadWholeFile(Path, Most, read), EINVAL);
}

class ReplaceFileTest : public DurableFile {};

TEST_F(ReplaceFileTest, MakesAFileAndLeavesNothingBesideIt) {
  EXPECT_EQ(ReplaceFile(Path, "new"), 0);
  EXPECT_EQ(Directory.Read("file"), "new");
  EXPECT_THAT(Directory.Names(), ElementsAre("file"));
}

TEST_F(ReplaceFileTest, PutsAShorterFileInThePlaceOfALongerOne) {
  Directory.Write("file", "the old file");
  EXPECT_EQ(ReplaceFile(Path, "new"), 0);
  EXPECT_EQ(Directory.Read("file"), "new");
}

TEST_F(ReplaceFileTest, TakesOverWhatAKilledProcessLeftBehind) {
  Directory.Write("file", "old");
  Directory.Write("file.new", "half a file, and longer than the new one");
  EXPECT_EQ(ReplaceFile(Path, "new"), 0);
  EXPECT_EQ(Directory.Read("file"), "new");
  EXPECT_THAT(Directory.Names(), ElementsAre("file"));
}

TEST_F(ReplaceFileTest, WritesThroughNoLinkThatIsInItsWay) {
  Directory.Write("victim", "untouched");
  ASSERT_EQ(symlink(Directory.PathOf("victim").c_str(), Directory.PathOf("file.new").c_str()), 0);
  EXPECT_EQ(ReplaceFile(Path, "new"), 0);
  EXPECT_EQ(Directory.Read("file"), "new");
  EXPECT_EQ(Directory.Read("victim"), "untouched");
}

TEST_F(ReplaceFileTest, WritesToNoFileThatHasASecondName) {
  Directory.Write("victim", "untouched");
  ASSERT_EQ(link(Directory.PathOf("victim").c_str(), Directory.PathOf("file.new").c_str()), 0);
  EXPECT_EQ(ReplaceFile(Path, "new"), 0);
  EXPECT_EQ(Directory.Read("file"), "new");
  EXPECT_EQ(Directory.Read("victim"), "untouched");
  EXPECT_THAT(Directory.Names(), ElementsAre("file", "victim"));
}

TEST_F(ReplaceFileTest, DoesNotWaitForTheReaderOfAPipe) {
  ASSERT_EQ(mkfifo(Directory.PathOf("file.new").c_str(), 0600), 0);
  EXPECT_EQ(ReplaceFile(Path, "new"), 0);
  EXPECT_EQ(Directory.Read("file"), "new");
  EXPECT_THAT(Directory.Names(), ElementsAre("file"));
}

TEST_F(ReplaceFileTest, FailsWhereTheNewFileWouldBeADirectory) {
  ASSERT_EQ(mkdir(Directory.PathOf("file.new").c_str(), 0700), 0);
  EXPECT_EQ(ReplaceFile(Path, "new"), EISDIR);
  EXPECT_THAT(Directory.Names(), ElementsAre("file.new"));
}

TEST_F(ReplaceFileTest, GivesANewFileTheUsualMode) {
  const mode_t mask = umask(027);
  EXPECT_EQ(ReplaceFile(Path, "new"), 0);
  EXPECT_EQ(umask(mask), 027U);
  struct stat found {};
  ASSERT_EQ(stat(Path.c_str(), &found), 0);
  EXPECT_EQ(found.st_mode & 07777U, 0640U);
}

TEST_F(ReplaceFileTest, KeepsTheFileFromOthersWhileItIsWritten) {
  Directory.Write("file", "old");
  const std::string beside = Directory.PathOf("file.new");
  int seen = 0;
  for (int stop = 0; RunUntilStop(stop, [this] { static_cast<void>(ReplaceFile(Path, "new")); });
       ++stop) {
    struct stat found {};
    if (stat(beside.c_str(), &found) != 0 || found.st_size != 0) continue;
    EXPECT_EQ(found.st_mode & 07777U, 0600U) << stop;
    ++seen;
  }
  EXPECT_GT(seen, 0);
}

TEST_F(ReplaceFileTest, KeepsALinkToTheFileALink) {
  Directory.Write("file", "old");
  const std::string link = Directory.PathOf("link");
  ASSERT_EQ(symlink("file", link.c_str()), 0);
  EXPECT_EQ(ReplaceFile(link, "new"), 0);
  EXPECT_EQ(Directory.Read("file"), "new");
  EXPECT_THAT(Directory.Names(), ElementsAre("file", "link"));
  struct stat found {};
  ASSERT_EQ(lstat(link.c_str(), &found), 0);
  EXPECT_TRUE(S_ISLNK(found.st_mode));
}

TEST_F(ReplaceFileTest, ReplacesNothingButRegularFiles) {
  ASSERT_EQ(mkfifo(Path.c_str(), 0600), 0);
  ASSERT_EQ(symlink("file", Directory.PathOf("link").c_str()), 0);
  EXPECT_EQ(ReplaceFile(Path, "new"), EINVAL);
  EXPECT_EQ(ReplaceFile(Directory.PathOf("link"), "new"), EINVAL);
  EXPECT_EQ(ReplaceFile(Directory.Path(), "new"), EINVAL);
  struct stat found {};
  ASSERT_EQ(stat(Path.c_str(), &found), 0);
  EXPECT_TRUE(S_ISFIFO(found.st_mode));
  EXPECT_THAT(Directory.Names(), ElementsAre("file", "link"));
}

TEST_F(ReplaceFileTest, KeepsTheModeOfTheOldFile) {
  Directory.Write("file", "old");
  ASSERT_EQ(chmod(Path.c_str(), 0640), 0);
  EXPECT_EQ(ReplaceFile(Path, "new"), 0);
  struct stat found {};
  ASSERT_EQ(stat(Path.c_str(), &found), 0);
  EXPECT_EQ(found.st_mode & 07777U, 0640U);
}

TEST_F(ReplaceFileTest, HasTheFileOnTheDiskBeforeItMovesAndItsNameBehind) {
  std::vector<long> calls = SystemCallsOf([this] { static_cast<void>(ReplaceFile(Path, "new")); });
  std::erase_if(calls, [](long call) {
    return call != SYS_write && call != SYS_fsync && call != SYS_renameat;
  });
  EXPECT_THAT(calls, ElementsAre(SYS_write, SYS_fsync, SYS_renameat, SYS_fsync));
}

TEST_F(ReplaceFileTest, WaitsForNobodyWhoIsWriting) {
  Directory.Write("file", "old");
  const int other = open(Directory.PathOf("file.new").c_str(), O_WRONLY | O_CREAT, 0600);
  ASSERT_EQ(flock(other, LOCK_EX), 0);
  EXPECT_EQ(ReplaceFile(Path, "new"), EWOULDBLOCK);
  EXPECT_EQ(Directory.Read("file"), "old");
  close(other);
  EXPECT_EQ(ReplaceFile(Path, "new"), 0);
}

TEST_F(ReplaceFileTest, FailsWithoutItsDirectory) {
  EXPECT_EQ(ReplaceFile(Directory.PathOf("missing/file"), "new"), ENOENT);
  EXPECT_THAT(Directory.Names(), IsEmpty());
}

TEST_F(ReplaceFileTest, LeavesTheOldFileWholeWhenTheDiskIsFull) {
  Directory.Write("file", "old");
  const std::string bytes(20000, 'x');
  // Not one byte, some bytes, all but one.
  for (const unsigned long room : {0UL, 4096UL, 19999UL}) {
    EXPECT_EQ(RunWithRoomFor(room, [&] { return ReplaceFile(Path, bytes); }), EFBIG);
    EXPECT_EQ(Directory.Read("file"), "old");
    EXPECT_THAT(Directory.Names(), ElementsAre("file"));
  }
  EXPECT_EQ(RunWithRoomFor(20000, [&] { return ReplaceFile(Path, bytes); }), 0);
  EXPECT_EQ(Directory.Read("file"), bytes);
}

TEST_F(ReplaceFileTest, LeavesTheOldFileWholeWhicheverStepFails) {
  Directory.Write("file", "old");
  for (const long call : {SYS_openat, SYS_fchmod, SYS_write, SYS_fsync, SYS_renameat}) {
    EXPECT_EQ(RunFailing({call}, ENOSPC, [&] { return ReplaceFile(Path, "new"); }), ENOSPC) << call;
    EXPECT_EQ(Directory.Read("file"), "old") << call;
    EXPECT_THAT(Directory.Names(), ElementsAre("file")) << call;
  }
}

TEST_F(ReplaceFileTest, DoesWithoutLocksAndOwnersWhereThereAreNone) {
  const int result =
      RunFailing({SYS_flock, SYS_fchown}, ENOSYS, [&] { return ReplaceFile(Path, "new"); });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(Directory.Read("file"), "new");
}

}  // namespace
}  // namespace cvl
