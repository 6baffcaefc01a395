// What a run says where standard error is a terminal: a few lines for whoever has started
// the program by hand.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/port_state.h"

namespace cvl {

struct TerminalFacts {
  std::string Version;  ///< "5.1.1"
  std::string ProgramDirectory;
  std::vector<PortState> Ports;
  std::string MissingServerFile;  ///< its path, when there is none
  std::string SettingsObstacle;   ///< what keeps the settings from being read
  std::string CommandTail;
};

/// The lines, each with its end. An unknown first word of the command line adds the switches.
std::string TerminalReport(const TerminalFacts &facts);

}  // namespace cvl
