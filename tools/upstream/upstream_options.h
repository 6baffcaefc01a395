// The command line of cvlupstream.

#pragma once

#include <string>
#include <vector>

#include "tools/system/endpoint.h"
#include "tools/upstream/behaviour.h"

namespace cvl::tools {

struct UpstreamOptions {
  /// What the program is to do.
  enum class Task { Serve, ShowHelp, ShowVersion };

  Task What = Task::Serve;
  Endpoint Listen{LoopbackAddress, 123};  ///< port 0 takes a free one
  bool Log = false;                       ///< a line for each datagram
  bool Control = false;                   ///< commands come from standard input
  Behaviour Start;
};

/// Reads the arguments, without the name of the program. --help and --version end the
/// reading, whatever follows them. Raises UsageError.
UpstreamOptions ParseUpstreamOptions(const std::vector<std::string> &arguments);

/// The text of --help.
std::string UpstreamHelp();

}  // namespace cvl::tools
