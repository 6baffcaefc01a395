// The program cvlart without its entry point.

#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace cvl::tools {

/// Does what the arguments (without the program's name) ask for and returns the exit
/// status: 0 when it is done, 1 when a picture is wrong or the result can't be written,
/// 2 for arguments that make no sense. What went wrong stands on `errors`, in one line.
int RunArt(const std::vector<std::string> &arguments, std::ostream &errors);

}  // namespace cvl::tools
