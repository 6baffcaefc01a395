#include "tests/support/net_namespace.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace cvl {

namespace {

constexpr int PassedStatus = 0;
constexpr int FailedStatus = 1;
constexpr int RefusedStatus = 2;

bool WriteFile(const char *path, const std::string &text) {
  const int file = open(path, O_WRONLY | O_CLOEXEC);
  if (file < 0) return false;
  const bool written = write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  close(file);
  return written;
}

bool BringUpLoopback() {
  const int any = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ifreq request{};
  std::strcpy(request.ifr_name, "lo");
  request.ifr_flags = IFF_UP;
  const bool is_up = ioctl(any, SIOCSIFFLAGS, &request) == 0;
  close(any);
  return is_up;
}

bool EnterNamespaces() {
  const uid_t user = getuid();
  const gid_t group = getgid();
  if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) return false;
  return WriteFile("/proc/self/setgroups", "deny") &&
         WriteFile("/proc/self/uid_map", "0 " + std::to_string(user) + " 1") &&
         WriteFile("/proc/self/gid_map", "0 " + std::to_string(group) + " 1") && BringUpLoopback();
}

int RunInChild(const std::function<void()> &work) {
  if (!EnterNamespaces()) return RefusedStatus;
  try {
    work();
  } catch (const std::exception &error) {
    ADD_FAILURE() << error.what();
  }
  return testing::Test::HasFailure() ? FailedStatus : PassedStatus;
}

}  // namespace

void ExpectInNetworkNamespace(const std::function<void()> &work) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    const int status = RunInChild(work);
    std::fflush(nullptr);
    _exit(status);
  }
  ASSERT_GT(child, 0);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
  ASSERT_NE(WEXITSTATUS(status), RefusedStatus) << "no namespaces on this system";
  EXPECT_EQ(WEXITSTATUS(status), PassedStatus);
}

}  // namespace cvl
