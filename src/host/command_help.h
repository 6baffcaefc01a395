// The first word of the command line: which words are switches, and the texts of --help and
// --version.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cvl {

/// The first word of COMMAND_TAIL, up to its first blank; empty if it begins with one.
std::string_view FirstWordOf(std::string_view command_tail);

/// Whether WORD is a switch; the comparison is exact, with its case.
bool IsSwitch(std::string_view word);

/// The switches, one on a line, with their meanings.
std::string SwitchLines();

/// What "--help" and "--version" print to standard output instead of a run; nothing for any
/// other word.
std::optional<std::string> TextInsteadOfRun(std::string_view word);

}  // namespace cvl
