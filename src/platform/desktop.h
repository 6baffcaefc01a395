// The desktop that a run with a window shows itself on.

#pragma once

#include <string>

namespace cvl {

class Desktop {
 public:
  virtual ~Desktop() = default;

  /// What stands in the way of a window, in one line for the user; empty when nothing does.
  virtual std::string Obstacle() = 0;

  /// Opens an address, "http:" or "mailto:", in the program that the user has chosen for
  /// such. A failure is of no interest to anybody.
  virtual void OpenAddress(const std::string &address) = 0;

  /// Opens the system's dialog for date, time and zone. The same of failures.
  virtual void OpenDateAndTime() = 0;
};

}  // namespace cvl
