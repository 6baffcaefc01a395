#include "platform/linux/durable_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "platform/linux/error_table.h"

namespace cvl {

namespace {

/// The mode of a file that is being written: others can't open it, and so can't lock it.
constexpr mode_t OwnerOnly = 0600;

/// No link is followed, and a pipe doesn't hold the program up.
constexpr int SafeFlags = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

/// An open descriptor, closed with its scope.
class Descriptor {
 public:
  explicit Descriptor(int number) : Number_(number) {}
  ~Descriptor() {
    if (Number_ >= 0) close(Number_);
  }
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;

  int Number() const { return Number_; }
  bool IsOpen() const { return Number_ >= 0; }

 private:
  int Number_;
};

int Failed(const char *operation) {
  const int error = errno;
  TraceFailure(operation, error);
  return error;
}

/// The file itself where PATH is a link, so that the link stays one.
std::string TargetOf(const std::string &path) {
  char resolved[PATH_MAX];
  return realpath(path.c_str(), resolved) != nullptr ? resolved : path;
}

/// Whether something is at PATH that isn't a regular file. A masked unit, for one, is a link
/// to /dev/null, which must not be replaced.
bool IsOtherThanFile(const std::string &path) {
  struct stat found {};
  return stat(path.c_str(), &found) == 0 && !S_ISREG(found.st_mode);
}

std::string DirectoryOf(const std::string &path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

/// Removes what is at PATH. EWOULDBLOCK where another process of this user is writing it. Files
/// of other users and files with a second name are never written there, so their locks don't
/// count.
int RemoveLeftover(const std::string &path) {
  struct stat found {};
  if (lstat(path.c_str(), &found) != 0) return errno == ENOENT ? 0 : Failed("lstat");
  const bool is_ours = S_ISREG(found.st_mode) && found.st_uid == geteuid() && found.st_nlink == 1;
  const Descriptor file(is_ours ? open(path.c_str(), O_RDONLY | SafeFlags) : -1);
  if (file.IsOpen() && flock(file.Number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    return EWOULDBLOCK;
  }
  return unlink(path.c_str()) == 0 || errno == ENOENT ? 0 : Failed("unlink");
}

/// Whether FILE is still the one at PATH.
bool IsAt(int file, const std::string &path) {
  struct stat opened {};
  struct stat found {};
  return fstat(file, &opened) == 0 && lstat(path.c_str(), &found) == 0 &&
         opened.st_dev == found.st_dev && opened.st_ino == found.st_ino;
}

int WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return Failed("write");
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

/// The mode of a new file: readable by all, as far as the process's mask allows.
mode_t UsualMode() {
  const mode_t mask = umask(OwnerOnly);
  umask(mask);
  return 0644 & ~mask;
}

/// Gives FILE the mode and, as far as this process may, the owner of the one at TARGET.
int TakeOverMode(int file, const std::string &target) {
  struct stat old {};
  old.st_mode = UsualMode();
  if (stat(target.c_str(), &old) != 0) {
    if (errno != ENOENT) return Failed("stat");
  } else {
    if (faccessat(AT_FDCWD, target.c_str(), W_OK, 0) != 0) return Failed("access");
    if (fchown(file, old.st_uid, old.st_gid) != 0) TraceFailure("fchown", errno);
  }
  return fchmod(file, old.st_mode & 07777) == 0 ? 0 : Failed("fchmod");
}

int FillAndMove(int file, const std::string &beside, const std::string &target,
                std::string_view bytes) {
  if (const int error = WriteAll(file, bytes); error != 0) return error;
  if (const int error = TakeOverMode(file, target); error != 0) return error;
  if (fsync(file) != 0) return Failed("fsync");
  if (renameat(AT_FDCWD, beside.c_str(), AT_FDCWD, target.c_str()) != 0) return Failed("rename");
  return 0;
}

}  // namespace

int ReadWholeFile(const std::string &path, std::size_t most, std::string &bytes) {
  // Without O_NONBLOCK a pipe of that name would hold the program up.
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!file.IsOpen()) return Failed("open");
  struct stat found {};
  if (fstat(file.Number(), &found) != 0) return Failed("fstat");
  if (!S_ISREG(found.st_mode)) return EINVAL;
  bytes.clear();
  char piece[16384];
  while (bytes.size() <= most) {
    const ssize_t length = read(file.Number(), piece, sizeof piece);
    if (length < 0 && errno == EINTR) continue;
    if (length < 0) return Failed("read");
    if (length == 0) return 0;
    bytes.append(piece, static_cast<std::size_t>(length));
  }
  return EFBIG;
}

int ReplaceFile(const std::string &path, std::string_view bytes) {
  const std::string target = TargetOf(path);
  if (IsOtherThanFile(target)) return EINVAL;
  const std::string beside = target + ".new";
  if (const int error = RemoveLeftover(beside); error != 0) return error;
  const Descriptor file(open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | SafeFlags, OwnerOnly));
  if (!file.IsOpen()) return errno == EEXIST ? EWOULDBLOCK : Failed("open");
  // Another process may have taken the new file for a leftover before it was locked. A file
  // system without locks has to do without.
  if (flock(file.Number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return EWOULDBLOCK;
  if (!IsAt(file.Number(), beside)) return EWOULDBLOCK;
  if (const int error = FillAndMove(file.Number(), beside, target, bytes); error != 0) {
    unlink(beside.c_str());
    return error;
  }
  const Descriptor directory(open(DirectoryOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory.IsOpen()) return Failed("open");
  return fsync(directory.Number()) == 0 ? 0 : Failed("fsync");
}

}  // namespace cvl
