#include "platform/linux/linux_host.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "base/text.h"
#include "platform/linux/error_table.h"

namespace cvl {

namespace {

constexpr const char *LockName = "/cvlserver.lock";
constexpr mode_t OwnerOnly = 0600;
constexpr int LockFlags = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

/// Opens the lock file; -1 with errno, ENOENT where there is none.
int OpenLock(const std::string &path) {
  const int file = open(path.c_str(), O_RDWR | LockFlags);
  return file >= 0 || errno != EROFS ? file : open(path.c_str(), O_RDONLY | LockFlags);
}

/// Makes the lock file and gives it to the owner of DIRECTORY, so that a start or an
/// installation by root doesn't keep the owner from starting later.
int CreateLock(const std::string &directory, const std::string &path) {
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | LockFlags, OwnerOnly);
  if (file < 0) return file;
  struct stat owner {};
  if (stat(directory.c_str(), &owner) != 0 || owner.st_uid == geteuid()) return file;
  if (fchown(file, owner.st_uid, owner.st_gid) != 0) TraceFailure("fchown", errno);
  return file;
}

/// 0, or an errno value for what can't be the lock file: that has one name. A lock file that
/// others can open is closed to them, as they could hold the lock.
int CheckLock(int file) {
  struct stat found {};
  if (fstat(file, &found) != 0) return errno;
  if (!S_ISREG(found.st_mode)) return EINVAL;
  if (found.st_nlink != 1) return EMLINK;
  if ((found.st_mode & 0777) != OwnerOnly && fchmod(file, OwnerOnly) != 0) {
    TraceFailure("fchmod", errno);
  }
  return 0;
}

}  // namespace

LinuxHost::LinuxHost(std::string program_directory)
    : ProgramDirectory_(std::move(program_directory)) {}

LinuxHost::~LinuxHost() {
  if (Lock_ >= 0) close(Lock_);
}

bool LinuxHost::ClaimSingleInstance() {
  const std::string path = ProgramDirectory_ + LockName;
  Lock_ = OpenLock(path);
  if (Lock_ < 0 && errno == ENOENT) {
    Lock_ = CreateLock(ProgramDirectory_, path);
    if (Lock_ < 0 && errno != EEXIST) return ClaimDirectory();
    if (Lock_ < 0) Lock_ = OpenLock(path);  // another instance has just created it
  }
  return ClaimFile(path);
}

bool LinuxHost::ClaimFile(const std::string &path) {
  const int error = Lock_ < 0 ? errno : CheckLock(Lock_);
  if (error == 0) return TakeLock();
  TraceFailure("open", error);
  ClaimObstacle_ = Joined(
      {"another instance may be running: ", path, " cannot be opened: ", std::strerror(error)});
  return false;
}

bool LinuxHost::ClaimDirectory() {
  TraceFailure("open", errno);
  Lock_ = open(ProgramDirectory_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (Lock_ >= 0) return TakeLock();
  // Without a directory there is nothing that two instances could both write to.
  TraceFailure("open", errno);
  return true;
}

bool LinuxHost::TakeLock() {
  if (flock(Lock_, LOCK_EX | LOCK_NB) == 0) return true;
  const int error = errno;
  TraceFailure("flock", error);
  // A file system without locks has to do without.
  if (error != EWOULDBLOCK) return true;
  ClaimObstacle_ = "another instance is running in " + ProgramDirectory_;
  return false;
}

std::string LinuxHost::UserName() {
  std::array<char, 4096> buffer;
  passwd entry{};
  passwd *found = nullptr;
  const uid_t user = geteuid();
  if (getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr) {
    return entry.pw_name;
  }
  // A service manager can make up a user that the machine's table lacks, and then tells its
  // name this way alone. An empty one would shift what stands behind it in the log.
  const char *told = std::getenv("USER");
  return told != nullptr && *told != '\0' ? told : std::to_string(user);
}

}  // namespace cvl
