// The desktop that a run with a window shows itself on.

#pragma once

#include <string>

namespace cvl {

class Desktop {
 public:
  virtual ~Desktop() = default;

  /// What stands in the way of a window, in one line for the user; empty when nothing does.
  virtual std::string Obstacle() = 0;
};

}  // namespace cvl
