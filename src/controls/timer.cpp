#include "controls/timer.h"

namespace cvl {

Timer::Timer(EventLoop &loop, std::int32_t interval_ms)
    : IntervalMs_(interval_ms), Timer_(loop, [this] {
        if (OnTimer) OnTimer();
      }) {
  SetEnabled(true);
}

void Timer::SetEnabled(bool enabled) {
  if (!enabled) {
    Timer_.Stop();
  } else if (!Timer_.IsRunning()) {
    Timer_.Start(IntervalMs_, LoopTimer::Repeat::Yes);
  }
}

}  // namespace cvl
