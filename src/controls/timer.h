// A timer control: ticks at its interval while it is enabled.

#pragma once

#include <cstdint>
#include <functional>

#include "platform/event_loop.h"

namespace cvl {

class Timer {
 public:
  /// Enabled from the beginning, so that the first tick comes an interval from now.
  Timer(EventLoop &loop, std::int32_t interval_ms);

  std::function<void()> OnTimer;

  std::int32_t Interval() const { return IntervalMs_; }
  bool IsEnabled() const { return Timer_.IsRunning(); }

  /// Switching on a timer that is on changes nothing; off and on again restarts its time.
  void SetEnabled(bool enabled);

 private:
  std::int32_t IntervalMs_;
  LoopTimer Timer_;
};

}  // namespace cvl
