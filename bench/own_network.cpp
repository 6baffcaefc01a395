#include "bench/own_network.h"

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <vector>

namespace cvl::bench {

namespace {

constexpr const char *Mark = "CHRONVALE_BENCH_NETWORK";

[[noreturn]] void RaiseSystemError(const char *what) {
  throw std::system_error(errno, std::generic_category(), what);
}

void BringLoopbackUp() {
  const int any_socket = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (any_socket < 0) RaiseSystemError("socket");
  ifreq request{};
  std::strcpy(request.ifr_name, "lo");
  request.ifr_flags = IFF_UP | IFF_RUNNING;
  if (ioctl(any_socket, SIOCSIFFLAGS, &request) != 0) RaiseSystemError("loopback");
  close(any_socket);
}

}  // namespace

bool IsInOwnNetwork() {
  return std::getenv(Mark) != nullptr;
}

void EnterOwnNetwork(char **arguments) {
  if (IsInOwnNetwork()) {
    BringLoopbackUp();
    return;
  }
  setenv(Mark, "1", 1);
  char self[] = "/proc/self/exe";
  char path[4096] = {};
  if (readlink(self, path, sizeof path - 1) < 0) RaiseSystemError(self);
  std::vector<const char *> command{"unshare", "--user", "--map-root-user", "--net",
                                    "--pid",   "--fork", "--kill-child",    path};
  for (char **argument = arguments + 1; *argument != nullptr; ++argument) {
    command.push_back(*argument);
  }
  command.push_back(nullptr);
  execvp(command[0], const_cast<char **>(command.data()));
  RaiseSystemError("unshare");
}

}  // namespace cvl::bench
