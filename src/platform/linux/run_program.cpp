#include "platform/linux/run_program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <utility>

#include "platform/linux/error_table.h"

namespace cvl {

namespace {

/// What a new process starts with, freed with its scope.
class SpawnSettings {
 public:
  /// Standard output goes to OUTPUT, or nowhere if that is no descriptor.
  explicit SpawnSettings(int output) {
    posix_spawn_file_actions_init(&Files_);
    posix_spawn_file_actions_addopen(&Files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&Files_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&Files_, STDOUT_FILENO, STDERR_FILENO);
    if (output >= 0) posix_spawn_file_actions_adddup2(&Files_, output, STDOUT_FILENO);
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

int Spawn(std::vector<std::string> words, int output, pid_t &process) {
  std::vector<char *> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string &word : words) {
    arguments.push_back(word.data());
  }
  arguments.push_back(nullptr);

  const SpawnSettings settings(output);
  const int error = posix_spawnp(&process, arguments[0], settings.Files(), settings.Attributes(),
                                 arguments.data(), environ);
  if (error != 0) TraceFailure("posix_spawn", error);
  return error;
}

/// The status of a process that has ended, or ends now; -1 if it had none.
int StatusOf(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0) {
    if (errno == EINTR) continue;
    TraceFailure("waitpid", errno);
    return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// Reads FILE to its end and returns the first MOST bytes.
std::string StartOf(int file, std::size_t most) {
  std::string bytes;
  char piece[4096];
  while (true) {
    const ssize_t length = read(file, piece, sizeof piece);
    if (length < 0 && errno == EINTR) continue;
    if (length <= 0) return bytes;
    const auto read_bytes = static_cast<std::size_t>(length);
    bytes.append(piece, std::min(read_bytes, most - bytes.size()));
  }
}

}  // namespace

int SpawnProgram(std::vector<std::string> words, pid_t &process) {
  return Spawn(std::move(words), -1, process);
}

int RunProgram(std::vector<std::string> words) {
  pid_t process = 0;
  return SpawnProgram(std::move(words), process) == 0 ? StatusOf(process) : -1;
}

int RunProgram(std::vector<std::string> words, std::string &output) {
  constexpr std::size_t Most = 65536;
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) {
    TraceFailure("pipe2", errno);
    return -1;
  }
  pid_t process = 0;
  const bool is_running = Spawn(std::move(words), ends[1], process) == 0;
  close(ends[1]);
  output = StartOf(ends[0], Most);
  close(ends[0]);
  return is_running ? StatusOf(process) : -1;
}

}  // namespace cvl
