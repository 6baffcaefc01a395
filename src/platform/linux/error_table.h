// The one table that turns errno into the system's own numbers.

#pragma once

#include <string>

namespace cvl {

/// The socket failure that stands for an errno value; 10014 for one that the table lacks.
int SocketErrorOf(int system_error);

/// The file failure that stands for an errno value: 53, 61, 70, 75, ...
int FileErrorOf(int system_error);

/// With CHRONVALE_TRACE=1 in the environment, one line on standard error for a failing
/// call: its name and what the system says. OPERATION is a literal.
void TraceFailure(const char *operation, int system_error);

/// The same for a failure that has no errno. What isn't printable in OPERATION is shown as
/// question marks.
void TraceFailure(std::string operation, const char *reason);

}  // namespace cvl
