// The entry point: makes the platform and the server, and lets the loop run.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/failure_modes.h"
#include "host/command_help.h"
#include "host/cvl_server.h"
#include "platform/platform.h"
#include "view/native_window.h"

namespace {

/// The program's arguments, with a blank between each two.
std::string CommandTail(int count, char **arguments) {
  std::string tail;
  for (int at = 1; at < count; ++at) {
    if (at > 1) tail += ' ';
    tail += arguments[at];
  }
  return tail;
}

[[noreturn]] void EndWith(int number, const char *description) {
  std::fprintf(stderr, "cvlserver: run-time error %d: %s\n", number, description);
  std::fflush(nullptr);
  std::_Exit(EXIT_FAILURE);
}

/// Whether the run changes the machine's services, which takes all the rights it has.
bool IsInstallation(const std::string &command_tail) {
  const std::string_view word = cvl::FirstWordOf(command_tail);
  return word == "-install" || word == "-uninstall";
}

int Serve(const std::string &command_tail) {
  cvl::NativePlatform native;
  if (!IsInstallation(command_tail)) native.GiveUpRights();
  cvl::NativeWindow window(native.Interfaces());
  const cvl::Platform platform = window.Interfaces();
  platform.Loop.OnFatal = [](const cvl::RuntimeError &error) {
    EndWith(error.Number(), error.what());
  };
  cvl::CVL_Server server(platform, command_tail);
  switch (server.Load()) {
    case cvl::Loaded::Running:
      native.ShowAtTerminal(server.TerminalReport(native.SettingsObstacle()));
      if (server.State.Flags.Interactive) {
        window.Run(server);
      } else {
        platform.Loop.Run();
      }
      return EXIT_SUCCESS;
    case cvl::Loaded::NoWindow:
      std::fprintf(stderr, "cvlserver: no window: %s\n", server.Obstacle().c_str());
      return EXIT_FAILURE;
    case cvl::Loaded::AnotherInstance:
      native.ShowAtTerminal("cvlserver: " + server.Obstacle() + "\n");
      return EXIT_SUCCESS;
    case cvl::Loaded::Ended:
      return EXIT_SUCCESS;
  }
  return EXIT_SUCCESS;
}

}  // namespace

int main(int count, char **arguments) {
  const std::string command_tail = CommandTail(count, arguments);
  if (const auto text = cvl::TextInsteadOfRun(cvl::FirstWordOf(command_tail))) {
    std::fputs(text->c_str(), stdout);
    return EXIT_SUCCESS;
  }
  int status = EXIT_SUCCESS;
  const cvl::Failure failure = cvl::Trap([&] { status = Serve(command_tail); });
  if (failure) EndWith(failure.Number, failure.Description.c_str());
  return status;
}
