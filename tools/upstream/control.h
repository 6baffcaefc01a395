// Control input: commands that change a running upstream, one a line.

#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tools/upstream/behaviour.h"

namespace cvl::tools {

/// What became of a command.
struct ControlOutcome {
  std::string Reply;  ///< "ok", or "error: " and the reason
  bool Quit = false;
};

/// Obeys one line without its line end: a word of Behaviour with its value, "normal" for
/// a fresh Behaviour, or "quit". Blanks around the words don't matter. On an error
/// `behaviour` is as it was.
ControlOutcome ObeyControlLine(std::string_view line, Behaviour &behaviour);

/// Cuts what arrives in pieces into lines.
class LineCutter {
 public:
  /// Adds text and calls `take` for each line that it completes. A line of more than
  /// 1000 characters is kept to 1001 of them, which no command has.
  void Add(std::string_view text, const std::function<void(std::string_view line)> &take);

 private:
  std::string Pending_;
};

}  // namespace cvl::tools
