// Other programs, started or run to their end.

#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace cvl {

/// Starts a program of the search path. WORDS are its name, or its path, and its arguments;
/// no shell sees them. It starts with no signal blocked or ignored, has none of our
/// descriptors, and says nothing: its standard streams are the null device.
///
/// Returns 0 and the process, for whoever waits for it, or the system's error.
[[nodiscard]] int SpawnProgram(std::vector<std::string> words, pid_t &process);

/// Starts a program in the same way and waits for it. Returns its exit status; -1 if it
/// couldn't be started, or was ended by a signal.
[[nodiscard]] int RunProgram(std::vector<std::string> words);

/// The same, with the first 64 kB of its standard output in OUTPUT. Waits until the output has
/// been closed, too.
[[nodiscard]] int RunProgram(std::vector<std::string> words, std::string &output);

}  // namespace cvl
