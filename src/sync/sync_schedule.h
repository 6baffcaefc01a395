// When the next exchange with a remote time server starts.

#pragma once

#include <cstdint>
#include <functional>

#include "base/numbers.h"
#include "controls/timer.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "status/status_texts.h"
#include "ui/panels.h"

namespace cvl {

class SyncSchedule {
 public:
  /// SYNC_NOW is the scheduler's one-second timer.
  SyncSchedule(RunState &state, MainWindow &window, Timer &sync_now, StatusTexts &texts,
               const Panels &panels);

  /// Starts an exchange.
  std::function<void()> SyncTimeNow;

  /// Recomputes the interval from the boxes SyncN and SyncIntC. The count goes on. Raises 6
  /// when the interval doesn't fit 32 bits. Failures: neither trap nor continue.
  void CalcIntC();

  /// The tick of SyncNow: counts, starts an exchange when it is time, and brings the status
  /// labels up to date. Failures: continue.
  void Tick();

  /// Drops what makes the text of SyncN no number, from its end.
  void FilterSyncN();

  /// Puts the count to the interval less LEFT, so that the next tick starts an exchange
  /// with LEFT 0 or 1. Raises 6 when the difference doesn't fit 32 bits.
  void Hasten(std::int32_t left) { SyncCount_ = SubtractLong(SyncSeconds_, left); }

  /// The interval in seconds, and the ticks since the last exchange started.
  std::int32_t SyncSeconds() const { return SyncSeconds_; }
  std::int32_t SyncCount() const { return SyncCount_; }

 private:
  RunState &State_;
  MainWindow &Window_;
  Timer &SyncNow_;
  StatusTexts &Texts_;
  const Panels &Panels_;
  std::int32_t SyncNumber_ = 0;
  std::int32_t SyncSeconds_ = 0;
  std::int32_t SyncCount_ = 0;
};

}  // namespace cvl
