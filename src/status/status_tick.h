// The one-second tick of the timer SvrTime: lamps out, zone and clock up to date.

#pragma once

#include <cstdint>

#include "platform/event_loop.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "status/lamps.h"
#include "time/time_engine.h"

namespace cvl {

class StatusTick {
 public:
  StatusTick(RunState &state, MainWindow &window, Lamps &lamps, TimeEngine &time, EventLoop &loop);

  void OnTimer();

 private:
  /// Ticks from one reading of the zone to the next.
  static constexpr std::int32_t TicksPerBias = 10;

  void KeepBaseDates();
  void ShowClock();

  RunState &State_;
  MainWindow &Window_;
  Lamps &Lamps_;
  TimeEngine &Time_;
  EventLoop &Loop_;
  std::int32_t BiasTicks_ = 0;
};

}  // namespace cvl
