#include "tests/platform_registry/system_calls.h"

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <vector>

namespace cvl {

namespace {

constexpr int SetUpFailed = 255;

int ResultOf(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status)) << "the child was killed by signal " << WTERMSIG(status);
  EXPECT_NE(WEXITSTATUS(status), SetUpFailed) << "the child couldn't be set up";
  return WEXITSTATUS(status);
}

/// A child process that stands before WORK.
pid_t StartTraced(const std::function<void()> &work) {
  const pid_t child = fork();
  if (child == 0) {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(SetUpFailed);
    raise(SIGSTOP);
    work();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSTOPPED(status)) << "the child can't be traced";
  ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD);
  return child;
}

/// Lets a child go on to the next beginning or end of a system call; false when it has ended.
bool RunToNextStop(pid_t child) {
  int status = 0;
  ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
  waitpid(child, &status, 0);
  return WIFSTOPPED(status);
}

}  // namespace

bool RunUntilStop(int stop, const std::function<void()> &work) {
  const pid_t child = StartTraced(work);
  bool is_running = true;
  for (int stops = 0; is_running && stops < stop; ++stops) {
    is_running = RunToNextStop(child);
  }
  if (!is_running) return false;
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  return true;
}

std::vector<long> SystemCallsOf(const std::function<void()> &work) {
  std::vector<long> calls;
  const pid_t child = StartTraced(work);
  while (RunToNextStop(child)) {
    __ptrace_syscall_info info{};
    ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
    if (info.op == PTRACE_SYSCALL_INFO_ENTRY) calls.push_back(static_cast<long>(info.entry.nr));
  }
  return calls;
}

int RunFailing(std::initializer_list<long> calls, int system_error,
               const std::function<int()> &work) {
  const pid_t child = fork();
  if (child == 0) {
    std::vector<sock_filter> filter;
    filter.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
    for (const long call : calls) {
      filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<__u32>(call), 0, 1));
      filter.push_back(
          BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<__u32>(system_error)));
    }
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
      _exit(SetUpFailed);
    }
    _exit(work());
  }
  return ResultOf(child);
}

int RunWithRoomFor(unsigned long most, const std::function<int()> &work) {
  const pid_t child = fork();
  if (child == 0) {
    const rlimit limit{most, most};
    signal(SIGXFSZ, SIG_IGN);
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(SetUpFailed);
    _exit(work());
  }
  return ResultOf(child);
}

}  // namespace cvl
