#include "host/terminal_report.h"

#include "base/text.h"
#include "host/command_help.h"

namespace cvl {

namespace {

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

}  // namespace

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
  const std::string_view word = FirstWordOf(facts.CommandTail);
  if (!facts.CommandTail.empty() && !IsSwitch(word)) {
    report += Joined(
        {"\"", word, "\" is not a switch and is ignored. The first word may be:\n", SwitchLines()});
  }
  return report;
}

}  // namespace cvl
