// The status text of the main window and the tip of its tray entry.

#pragma once

#include "platform/shell.h"
#include "state/fixed_text.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "status/lamps.h"
#include "time/time_engine.h"
#include "ui/panels.h"

namespace cvl {

class StatusTexts {
 public:
  StatusTexts(RunState &state, MainWindow &window, Panels &panels, Lamps &lamps, TimeEngine &time,
              Shell &shell);

  /// Rebuilds StatusText and the panel's text; without a window neither is built. Raises 6
  /// when a sum of counters passes 2147483647. Failures: neither trap nor continue.
  void StatusUp();

  /// Brings the source lamp or, in a minimised window, the tray entry up to date.
  void UpdateSZTIP();

 private:
  RunState &State_;
  MainWindow &Window_;
  Panels &Panels_;
  Lamps &Lamps_;
  TimeEngine &Time_;
  Shell &Shell_;
  FixedText<64> LastTipText_;
};

}  // namespace cvl
