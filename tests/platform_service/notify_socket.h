// The service manager's end of the notifications, played by the test.

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/platform_service/scratch.h"

namespace cvl {

/// While it lives, the process looks as if a service manager had started it.
class NotifySocket {
 public:
  NotifySocket();
  ~NotifySocket();
  NotifySocket(const NotifySocket &) = delete;
  NotifySocket &operator=(const NotifySocket &) = delete;

  /// The messages since the last call.
  std::vector<std::string> Take();

 private:
  ScratchDirectory Directory_;
  int Socket_ = -1;
  std::unique_ptr<ScopedVariable> Variable_;
};

}  // namespace cvl
