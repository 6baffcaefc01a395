// The machine and the process that the program runs in.

#pragma once

#include <string>

namespace cvl {

class Host {
 public:
  virtual ~Host() = default;

  /// Claims the program directory for this process, until it ends. False when another
  /// instance has claimed it or may have; ClaimObstacle then gives the reason.
  [[nodiscard]] virtual bool ClaimSingleInstance() = 0;

  /// Why the claim failed, in one line for the operator; empty unless it has failed.
  virtual std::string ClaimObstacle() const = 0;

  /// Name of the user that the process runs as; empty if the system has none.
  virtual std::string UserName() = 0;
};

}  // namespace cvl
