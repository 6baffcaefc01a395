// The desktop of a Linux session: what it opens, and what stands for it without a window.

#pragma once

#include "platform/desktop.h"
#include "platform/program_starter.h"
#include "platform/shell.h"

namespace cvl {

class LinuxDesktop final : public Desktop {
 public:
  explicit LinuxDesktop(ProgramStarter &programs) : Programs_(programs) {}

  std::string Obstacle() override { return "this run has no window module"; }
  void OpenAddress(const std::string &address) override;
  void OpenDateAndTime() override;

 private:
  ProgramStarter &Programs_;
};

/// The tray of a run without a window: there is none.
class NoTray final : public Shell {
 public:
  void Shell_NotifyIcon(TrayMessage, const TrayIcon &) override {}
  void SetForegroundWindow() override {}
};

}  // namespace cvl
