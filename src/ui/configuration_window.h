// The window of the advanced settings: region, request log, updates, the system's clock.

#pragma once

#include <functional>
#include <string>

#include "controls/check_box.h"
#include "controls/combo_box.h"
#include "platform/event_loop.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "ui/button/qrb_buttons.h"
#include "ui/control_layout.h"

namespace cvl {

struct ConfigurationWindow {
  /// Loads the window: title, regions, and what the run state holds of them.
  ConfigurationWindow(EventLoop &loop, const MainWindow &main, const RunState &state);

  std::string Caption;
  bool Visible = false;
  /// Called when it is shown once more, to bring it to the front.
  std::function<void()> OnShow;

  ComboBox Regions{"North America NA"};
  CheckBox wc3Logs;
  /// Shown, and without any effect, like the settings that they seem to stand for.
  CheckBox OpenMin;
  CheckBox RunCVL;
  QRBButtons CheckUpdate;
  QRBButtons SelTimeZone;
  QRBButtons cfgsvrOK;
};

WindowLayout ConfigurationWindowLayout(ConfigurationWindow &window);

}  // namespace cvl
