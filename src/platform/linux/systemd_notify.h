// What systemd hears of the process that it started. Without it, nobody: every routine here
// then does nothing.

#pragma once

#include <string_view>

#include "platform/event_loop.h"

namespace cvl {

class SystemdNotify {
 public:
  explicit SystemdNotify(EventLoop &loop);

  /// The service has started. If systemd watches over it, signs of life follow from here on,
  /// two in each span that it allows. They come from the loop, so they tell that it turns;
  /// whether the service is paused makes no difference.
  void Ready();

  /// The service is about to end.
  void Stopping();

  /// What the service is at, in one line; systemctl status shows it.
  void Status(std::string_view text);

 private:
  LoopTimer Watchdog_;
};

}  // namespace cvl
