#include "platform/linux/linux_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <sstream>
#include <utility>

#include "base/runtime_error.h"
#include "platform/linux/durable_file.h"
#include "platform/linux/error_table.h"

namespace cvl {

namespace {

/// A larger file is not read, so that the memory for it is bounded.
constexpr std::size_t MostInputBytes = std::size_t{16} << 20;

std::string DirectoryOfExecutable() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  if (length <= 0) return ".";
  const std::string executable(path, static_cast<std::size_t>(length));
  const std::size_t slash = executable.rfind('/');
  return slash == 0 ? "/" : executable.substr(0, slash);
}

int Failed(const char *operation) {
  const int error = errno;
  TraceFailure(operation, error);
  return FileErrorOf(error);
}

class LinuxOutputFile final : public OutputFile {
 public:
  explicit LinuxOutputFile(int file) : File_(file) {}
  ~LinuxOutputFile() override { close(File_); }
  LinuxOutputFile(const LinuxOutputFile &) = delete;
  LinuxOutputFile &operator=(const LinuxOutputFile &) = delete;

  /// Whether this is a regular file without a second name. One with two names may belong to
  /// another directory, where the server must not write.
  bool IsOwnRegularFile() const {
    struct stat found {};
    return fstat(File_, &found) == 0 && S_ISREG(found.st_mode) && found.st_nlink <= 1;
  }

  [[nodiscard]] int Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t written = write(File_, bytes.data(), bytes.size());
      if (written < 0) return Failed("write");
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
  }

 private:
  int File_;
};

}  // namespace

LinuxFiles::LinuxFiles() {
  const char *home = std::getenv("CHRONVALE_HOME");
  ProgramDirectory_ = home != nullptr && *home != '\0' ? home : DirectoryOfExecutable();
}

std::string LinuxFiles::InProgramDirectory(std::string_view name) const {
  std::string path = ProgramDirectory_;
  path += '/';
  path += name;
  return path;
}

bool LinuxFiles::Exists(const std::string &path) const {
  return Length(path).has_value();
}

std::optional<std::int64_t> LinuxFiles::Length(const std::string &path) const {
  struct stat file {};
  if (stat(path.c_str(), &file) != 0 || S_ISDIR(file.st_mode)) return std::nullopt;
  return file.st_size;
}

std::unique_ptr<std::istream> LinuxFiles::OpenForInput(const std::string &path) const {
  std::string bytes;
  const int error = ReadWholeFile(path, MostInputBytes, bytes);
  if (error == EFBIG) throw RuntimeError(error_number::PathFileAccess);
  if (error != 0) throw RuntimeError(FileErrorOf(error));
  return std::make_unique<std::istringstream>(std::move(bytes));
}

std::unique_ptr<OutputFile> LinuxFiles::OpenForBinary(const std::string &path) {
  // Without O_NONBLOCK the open of a pipe would wait for its reader.
  constexpr int Flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const int number = open(path.c_str(), Flags, 0644);
  if (number < 0) throw RuntimeError(Failed("open"));
  auto file = std::make_unique<LinuxOutputFile>(number);
  if (!file->IsOwnRegularFile()) throw RuntimeError(error_number::PathFileAccess);
  return file;
}

Files::Opened LinuxFiles::OpenForAppend(const std::string &path, IfMissing if_missing) {
  const int create = if_missing == IfMissing::Create ? O_CREAT : 0;
  // Without O_NONBLOCK a pipe of that name would block the program.
  constexpr int Flags = O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const int file = open(path.c_str(), Flags | create, 0644);
  if (file < 0) return {Failed("open"), FileHandle::None};
  return {0, FileHandle{file}};
}

int LinuxFiles::AppendTo(FileHandle file, std::string_view bytes) {
  const int descriptor = static_cast<int>(file);
  // With O_APPEND the offset is ignored. pwrite, unlike write, refuses pipes, sockets and
  // terminals, so no call is needed to find out what kind of file this is.
  const ssize_t written = pwrite(descriptor, bytes.data(), bytes.size(), 0);
  if (written < 0) return Failed("pwrite");
  if (static_cast<std::size_t>(written) == bytes.size()) return 0;
  // Half a line would run into the next one.
  const off_t end = lseek(descriptor, 0, SEEK_END);
  if (end < written || ftruncate(descriptor, end - written) != 0) TraceFailure("ftruncate", errno);
  return error_number::DiskFull;
}

void LinuxFiles::Close(FileHandle file) {
  if (close(static_cast<int>(file)) != 0) TraceFailure("close", errno);
}

int LinuxFiles::MakeDirectory(const std::string &path) {
  return mkdir(path.c_str(), 0755) == 0 ? 0 : Failed("mkdir");
}

}  // namespace cvl
