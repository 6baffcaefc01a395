// The claim of an instance to its program directory.

#include "platform/linux/linux_host.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace cvl {
namespace {

class SingleInstanceTest : public testing::Test {
 protected:
  SingleInstanceTest() {
    std::string folder = testing::TempDir() + "cvl-instance-XXXXXX";
    Folder = mkdtemp(folder.data());
  }
  ~SingleInstanceTest() override { std::filesystem::remove_all(Folder); }

  std::string LockPath() const { return Folder + "/cvlserver.lock"; }

  unsigned ModeOfLock() const {
    struct stat found {};
    return stat(LockPath().c_str(), &found) == 0 ? found.st_mode & 0777U : 0U;
  }

  void ExpectRefused(const std::string &reason) const {
    LinuxHost host(Folder);
    EXPECT_FALSE(host.ClaimSingleInstance());
    EXPECT_EQ(host.ClaimObstacle(),
              "another instance may be running: " + LockPath() + " cannot be opened: " + reason);
  }

  std::string Folder;
};

TEST_F(SingleInstanceTest, RefusesASecondInstanceUntilTheFirstHasGone) {
  LinuxHost second(Folder);
  {
    LinuxHost first(Folder);
    EXPECT_TRUE(first.ClaimSingleInstance());
    EXPECT_EQ(first.ClaimObstacle(), "");
    EXPECT_FALSE(second.ClaimSingleInstance());
    EXPECT_EQ(second.ClaimObstacle(), "another instance is running in " + Folder);
  }
  LinuxHost third(Folder);
  EXPECT_TRUE(third.ClaimSingleInstance());
}

TEST_F(SingleInstanceTest, LocksAFileThatOnlyItsOwnerCanOpen) {
  LinuxHost host(Folder);
  EXPECT_TRUE(host.ClaimSingleInstance());
  EXPECT_EQ(ModeOfLock(), 0600U);
}

TEST_F(SingleInstanceTest, ClosesALockFileThatOthersCanOpen) {
  std::ofstream(LockPath()).close();
  ASSERT_EQ(chmod(LockPath().c_str(), 0666), 0);
  LinuxHost host(Folder);
  EXPECT_TRUE(host.ClaimSingleInstance());
  EXPECT_EQ(ModeOfLock(), 0600U);
}

TEST_F(SingleInstanceTest, IsNotStoppedByALockOnTheDirectory) {
  const int reader = open(Folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  ASSERT_EQ(flock(reader, LOCK_EX | LOCK_NB), 0);
  LinuxHost host(Folder);
  EXPECT_TRUE(host.ClaimSingleInstance());
  close(reader);
}

TEST_F(SingleInstanceTest, LocksTheDirectoryWhereNoFileCanBeCreated) {
  // A directory that takes no files, from root neither.
  const std::string closed = "/proc/" + std::to_string(getpid()) + "/task";
  LinuxHost first(closed);
  EXPECT_TRUE(first.ClaimSingleInstance());
  LinuxHost second(closed);
  EXPECT_FALSE(second.ClaimSingleInstance());
  EXPECT_EQ(second.ClaimObstacle(), "another instance is running in " + closed);
}

TEST_F(SingleInstanceTest, GoesOnWithoutADirectory) {
  LinuxHost host(Folder + "/missing");
  EXPECT_TRUE(host.ClaimSingleInstance());
}

TEST_F(SingleInstanceTest, RefusesToStartWithALockFileThatIsNoFile) {
  ASSERT_EQ(mkfifo(LockPath().c_str(), 0600), 0);
  ExpectRefused("Invalid argument");
  std::filesystem::remove(LockPath());
  std::filesystem::create_directory(LockPath());
  ExpectRefused("Is a directory");
}

TEST_F(SingleInstanceTest, FollowsNoLink) {
  std::filesystem::create_symlink(Folder + "/elsewhere", LockPath());
  ExpectRefused("Too many levels of symbolic links");
  EXPECT_FALSE(std::filesystem::exists(Folder + "/elsewhere"));
}

TEST_F(SingleInstanceTest, TakesNoFileWithASecondName) {
  const std::string theirs = Folder + "/theirs";
  std::ofstream(theirs).close();
  ASSERT_EQ(chmod(theirs.c_str(), 0644), 0);
  ASSERT_EQ(link(theirs.c_str(), LockPath().c_str()), 0);
  ExpectRefused("Too many links");
  EXPECT_EQ(ModeOfLock(), 0644U);
}

TEST_F(SingleInstanceTest, GivesTheLockFileToTheOwnerOfTheDirectory) {
  // Only root can change the owner; to all others the directory belongs already.
  const uid_t owner = geteuid() == 0 ? 4321 : geteuid();
  ASSERT_EQ(chown(Folder.c_str(), owner, static_cast<gid_t>(-1)), 0);
  LinuxHost host(Folder);
  EXPECT_TRUE(host.ClaimSingleInstance());
  struct stat lock {};
  ASSERT_EQ(stat(LockPath().c_str(), &lock), 0);
  EXPECT_EQ(lock.st_uid, owner);
}

TEST_F(SingleInstanceTest, IsNotInheritedByProgramsThatAreStarted) {
  const int next = dup(STDERR_FILENO);
  close(next);
  LinuxHost host(Folder);
  EXPECT_TRUE(host.ClaimSingleInstance());
  EXPECT_NE(fcntl(next, F_GETFD) & FD_CLOEXEC, 0);
}

}  // namespace
}  // namespace cvl
