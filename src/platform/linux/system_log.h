// The system's log, as the place of what nobody is there to read.

#pragma once

#include <string_view>

namespace cvl {

/// Writes a message with a priority of syslog, under the name of the service and with the
/// facility of daemons.
void WriteSystemLog(int priority, std::string_view text);

}  // namespace cvl
