#include "platform/linux/run_program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

#include "platform/linux/error_table.h"

namespace cvl {

namespace {

/// What a new process starts with, freed with its scope.
class SpawnSettings {
 public:
  SpawnSettings() {
    posix_spawn_file_actions_init(&Files_);
    posix_spawn_file_actions_addopen(&Files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&Files_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&Files_, STDOUT_FILENO, STDERR_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&Files_, STDERR_FILENO + 1);

    sigset_t signals;
    posix_spawnattr_init(&Attributes_);
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&Attributes_, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&Attributes_, &signals);
    posix_spawnattr_setflags(&Attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnSettings() {
    posix_spawnattr_destroy(&Attributes_);
    posix_spawn_file_actions_destroy(&Files_);
  }
  SpawnSettings(const SpawnSettings &) = delete;
  SpawnSettings &operator=(const SpawnSettings &) = delete;

  const posix_spawn_file_actions_t *Files() const { return &Files_; }
  const posix_spawnattr_t *Attributes() const { return &Attributes_; }

 private:
  posix_spawn_file_actions_t Files_;
  posix_spawnattr_t Attributes_;
};

}  // namespace

int SpawnProgram(std::vector<std::string> words, pid_t &process) {
  std::vector<char *> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string &word : words) {
    arguments.push_back(word.data());
  }
  arguments.push_back(nullptr);

  const SpawnSettings settings;
  const int error = posix_spawnp(&process, arguments[0], settings.Files(), settings.Attributes(),
                                 arguments.data(), environ);
  if (error != 0) TraceFailure("posix_spawn", error);
  return error;
}

int RunProgram(std::vector<std::string> words) {
  pid_t process = 0;
  if (SpawnProgram(std::move(words), process) != 0) return -1;
  int status = 0;
  while (waitpid(process, &status, 0) < 0) {
    if (errno == EINTR) continue;
    TraceFailure("waitpid", errno);
    return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace cvl
