#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include "tools/system/arguments.h"
#include "tools/system/clock.h"
#include "tools/system/descriptor.h"
#include "tools/upstream/upstream.h"
#include "tools/upstream/upstream_options.h"

namespace {

using namespace cvl::tools;

enum Status : int { Good = 0, SystemFailure = 1, Usage = 2 };

/// A descriptor that becomes readable on SIGTERM and SIGINT, which no longer do
/// anything else.
Descriptor WatchEndSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  Descriptor watch{signalfd(-1, &signals, SFD_CLOEXEC)};
  if (!watch.IsOpen()) {
    RaiseSystemError(errno, "cannot watch for signals");
  }
  return watch;
}

void Serve(const UpstreamOptions &options) {
  const Descriptor stop = WatchEndSignals();
  const UpstreamInputs inputs{options.Control ? STDIN_FILENO : -1, stop.Number()};
  const SystemClock clock;
  Upstream upstream{options, inputs, clock, std::cout, std::cerr};
  std::cout << "listening on " << EndpointText(upstream.Local()) << std::endl;
  while (upstream.Pass(-1)) {
  }
}

}  // namespace

int main(int argc, char **argv) {
  try {
    const UpstreamOptions options =
        ParseUpstreamOptions(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
    switch (options.What) {
      case UpstreamOptions::Task::ShowHelp:
        std::cout << UpstreamHelp();
        break;
      case UpstreamOptions::Task::ShowVersion:
        std::cout << VersionLine("cvlupstream");
        break;
      case UpstreamOptions::Task::Serve:
        Serve(options);
        break;
    }
    return Good;
  } catch (const UsageError &error) {
    std::cerr << "cvlupstream: " << error.what() << "\nTry cvlupstream --help.\n";
    return Usage;
  } catch (const std::system_error &error) {
    std::cerr << "cvlupstream: " << error.what() << '\n';
    return SystemFailure;
  }
}
