#include "bench/server_process.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <system_error>

namespace cvl::bench {

namespace {

[[noreturn]] void Become(std::vector<char *> &arguments, int core) {
  StayOnCore(core);
  // A session of its own, as a daemon has: where the machine is busy with other things, the
  // scheduler shares it out among sessions.
  setsid();
  // It ends with us, however we end.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int nowhere = open("/dev/null", O_RDWR);
  dup2(nowhere, STDIN_FILENO);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

ServerProcess::ServerProcess(const std::vector<std::string> &command, int core) : Process_(-1) {
  std::vector<char *> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string &argument : command) {
    arguments.push_back(const_cast<char *>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  Process_ = fork();
  if (Process_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (Process_ == 0) Become(arguments, core);
}

ServerProcess::~ServerProcess() {
  if (Process_ < 0) return;
  kill(Process_, SIGKILL);
  waitpid(Process_, nullptr, 0);
}

bool ServerProcess::IsRunning() {
  if (Process_ < 0) return false;
  if (waitpid(Process_, nullptr, WNOHANG) == 0) return true;
  Process_ = -1;
  return false;
}

std::int64_t ProcessorNsOf(pid_t process) {
  clockid_t clock{};
  timespec used{};
  if (process <= 0 || clock_getcpuclockid(process, &clock) != 0 ||
      clock_gettime(clock, &used) != 0) {
    return 0;
  }
  return static_cast<std::int64_t>(used.tv_sec) * 1000000000 + used.tv_nsec;
}

void StayOnCore(int core) {
  cpu_set_t cores;
  CPU_ZERO(&cores);
  CPU_SET(static_cast<std::size_t>(core), &cores);
  // Without the right to choose, or with one core alone, the scheduler decides.
  sched_setaffinity(0, sizeof cores, &cores);
}

std::string OwnDirectory() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
}

}  // namespace cvl::bench
