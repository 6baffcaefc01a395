#include "host/command_help.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "base/version.h"

namespace cvl {

namespace {

struct Switch {
  std::string_view Word;
  std::string_view Meaning;
};

constexpr std::array Switches = {
    Switch{"-install", "install the service in the service manager, and exit"},
    Switch{"-uninstall", "remove it from there, and exit"},
    Switch{"-config", "run with the window"},
    Switch{"-debug", "the same"},
    Switch{"-rs", "run without a window, as with no switch"},
    Switch{"--help", "show this text, and exit"},
    Switch{"--version", "show the version, and exit"},
};

constexpr std::string_view Usage = R"(usage: cvlserver [SWITCH]

Keeps the machine's clock in step with remote time servers, and serves the time.

Only the first word counts, in exactly this case. Any other word is ignored.
)";

constexpr std::string_view EnvironmentAndFiles = R"(
Environment:
  CHRONVALE_HOME        program directory; default: the directory of the executable
  CHRONVALE_REGISTRY    settings file; default: registry.reg in the program directory
  CHRONVALE_MAKER_HOST  host of the update check; default: www.chronvale.example
  CHRONVALE_UNIT_DIR    directory of the unit; default: /etc/systemd/system
  CHRONVALE_TRACE       "1" shows each failing system call on standard error

Files in the program directory:
  QRB_CVLS4.CVL         list of upstream servers; without it no port opens
  registry.reg          settings; overwritten when the server stops
  Logs/CVLSddmmyy.LOG   request log of a day
  cvlserver.lock        locked while a server runs in this directory

Exit status: 0 stopped, installed or another instance runs; 1 run-time error, or no
window. Run-time error 6 at a start: see cvlserver(8).
)";

}  // namespace

std::string_view FirstWordOf(std::string_view command_tail) {
  return command_tail.substr(0, command_tail.find(' '));
}

bool IsSwitch(std::string_view word) {
  return std::any_of(Switches.begin(), Switches.end(),
                     [word](const Switch &each) { return each.Word == word; });
}

std::string SwitchLines() {
  constexpr std::size_t Width = 13;
  std::string lines;
  for (const Switch &each : Switches) {
    const std::string padding(Width - each.Word.size(), ' ');
    lines += Joined({"  ", each.Word, padding, each.Meaning, "\n"});
  }
  return lines;
}

std::optional<std::string> TextInsteadOfRun(std::string_view word) {
  if (word == "--help") return Joined({Usage, "\n", SwitchLines(), EnvironmentAndFiles});
  if (word == "--version") return Joined({"cvlserver ", VersionText, "\n"});
  return std::nullopt;
}

}  // namespace cvl
