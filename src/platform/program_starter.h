// Starting other programs.

#pragma once

#include <string>
#include <vector>

namespace cvl {

class ProgramStarter {
 public:
  virtual ~ProgramStarter() = default;

  /// Starts PROGRAM, a path, with its window in front if it has one, and doesn't wait for
  /// it. It gets ARGUMENTS one by one; where programs get a line of text, that line is the
  /// path and the arguments with a blank between each two and nothing quoted.
  ///
  /// Returns 0, or the number of the failure; 53 when there is no such program.
  [[nodiscard]] virtual int Start(const std::string &program,
                                  const std::vector<std::string> &arguments) = 0;
};

}  // namespace cvl
