#include "host/terminal_report.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace cvl {

namespace {

struct Switch {
  std::string_view Word;
  std::string_view Meaning;
};

constexpr std::array Switches = {
    Switch{"-install", "enters the service into the service manager, and ends"},
    Switch{"-uninstall", "removes it from there, and ends"},
    Switch{"-config", "runs with the window"},
    Switch{"-debug", "the same"},
    Switch{"-rs", "runs without a window, as with no switch at all"},
};

std::string Line(std::string_view label, std::string_view text) {
  constexpr std::size_t LabelWidth = 10;
  std::string line = Joined({"  ", label});
  line.append(label.size() < LabelWidth ? LabelWidth - label.size() : 1, ' ');
  return Joined({line, text, "\n"});
}

std::string NamesOf(const std::vector<PortState> &ports, PortState::Condition condition) {
  std::string names;
  for (const PortState &port : ports) {
    if (port.Is != condition) continue;
    names += Joined({names.empty() ? "" : ", ", port.Name()});
  }
  return names;
}

std::string PortLines(const std::vector<PortState> &ports) {
  const std::string open = NamesOf(ports, PortState::Condition::Open);
  const std::string off = NamesOf(ports, PortState::Condition::Off);
  std::string lines = Line("open:", open.empty() ? "no port" : open);
  for (const PortState &port : ports) {
    if (port.Is != PortState::Condition::Failed) continue;
    lines += Line("not open:", Joined({port.Name(), ": ", port.Reason()}));
  }
  if (!off.empty()) lines += Line("off:", off);
  return lines;
}

std::string SwitchLines(std::string_view word) {
  std::string lines =
      Joined({"\"", word, "\" is no switch, and passed over. The first word may be:\n"});
  for (const Switch &each : Switches) {
    lines += Line(each.Word, Joined({" ", each.Meaning}));
  }
  return lines;
}

}  // namespace

bool IsSwitch(std::string_view word) {
  return std::any_of(Switches.begin(), Switches.end(),
                     [word](const Switch &each) { return each.Word == word; });
}

std::string TerminalReport(const TerminalFacts &facts) {
  std::string report =
      Joined({"Chronvale Server ", facts.Version, " runs in ", facts.ProgramDirectory, "\n"});
  if (!facts.MissingServerFile.empty()) {
    report +=
        Line("servers:",
             Joined({"there is no ", facts.MissingServerFile, "; the maker is asked for one"}));
  }
  if (!facts.SettingsObstacle.empty()) report += Line("settings:", facts.SettingsObstacle);
  report += PortLines(facts.Ports);
  const std::string word = facts.CommandTail.substr(0, facts.CommandTail.find(' '));
  if (!facts.CommandTail.empty() && !IsSwitch(word)) report += SwitchLines(word);
  return report;
}

}  // namespace cvl
