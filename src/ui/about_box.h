// The about box: the product's name and version, and the way to its help.

#pragma once

#include <functional>
#include <string>

#include "controls/label.h"
#include "platform/event_loop.h"
#include "state/main_window.h"
#include "ui/button/qrb_buttons.h"
#include "ui/control_layout.h"

namespace cvl {

struct AboutBox {
  /// Loads the window. MAKER_HOST is where the help pages stand.
  AboutBox(EventLoop &loop, const MainWindow &main, const std::string &maker_host);

  std::string Caption;
  bool Visible = false;
  /// Called when it is shown once more, to bring it to the front.
  std::function<void()> OnShow;

  Label ROT;
  QRBButtons Help;
};

WindowLayout AboutBoxLayout(AboutBox &window);

}  // namespace cvl
