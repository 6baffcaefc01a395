// The desktop of a Linux session, and the tray on it.

#pragma once

#include "platform/desktop.h"
#include "platform/shell.h"

namespace cvl {

class LinuxDesktop final : public Desktop {
 public:
  std::string Obstacle() override { return "this build has no window module"; }
};

/// The tray of a run without a window: there is none.
class NoTray final : public Shell {
 public:
  void Shell_NotifyIcon(TrayMessage, const TrayIcon &) override {}
};

}  // namespace cvl
