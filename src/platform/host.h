// The machine and the process that the program runs in.

#pragma once

#include <string>

namespace cvl {

class Host {
 public:
  virtual ~Host() = default;

  /// Claims the program directory for this process, until it ends. False when another
  /// instance has it.
  [[nodiscard]] virtual bool ClaimSingleInstance() = 0;

  /// Name of the user that the process runs as; empty if the system has none.
  virtual std::string UserName() = 0;
};

}  // namespace cvl
