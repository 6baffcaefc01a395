#include "platform/linux/linux_host.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>

#include "platform/linux/error_table.h"

namespace cvl {

LinuxHost::LinuxHost(std::string program_directory)
    : ProgramDirectory_(std::move(program_directory)) {}

LinuxHost::~LinuxHost() {
  if (Directory_ >= 0) close(Directory_);
}

bool LinuxHost::ClaimSingleInstance() {
  Directory_ = open(ProgramDirectory_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (Directory_ < 0) {
    // Without a directory to hold there is nothing that two instances could fight over.
    TraceFailure("open", errno);
    return true;
  }
  if (flock(Directory_, LOCK_EX | LOCK_NB) == 0) return true;
  const int error = errno;
  TraceFailure("flock", error);
  return error != EWOULDBLOCK;
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
