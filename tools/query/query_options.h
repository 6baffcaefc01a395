// The command line of cvlquery.

#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/query/describe.h"
#include "tools/query/service.h"

namespace cvl::tools {

struct QueryOptions {
  /// What the program is to do.
  enum class Task { Ask, ShowHelp, ShowVersion };

  Task What = Task::Ask;
  std::optional<Service> Of;      ///< nothing for "all"
  std::optional<Transport> Over;  ///< nothing for both
  std::optional<std::uint16_t> Port;
  std::chrono::milliseconds Timeout{2000};
  Form Shown = Form::Readable;
  std::string Host;
};

/// Reads the arguments, without the name of the program. --help and --version end the
/// reading, whatever follows them. Raises UsageError.
QueryOptions ParseQueryOptions(const std::vector<std::string> &arguments);

/// The text of --help.
std::string QueryHelp();

}  // namespace cvl::tools
