// What a view shows: the models of the windows, and what they are part of.

#pragma once

#include <array>
#include <functional>
#include <string>

#include "platform/event_loop.h"
#include "state/main_window.h"
#include "status/tray_entry.h"
#include "ui/control_layout.h"
#include "ui/secondary_windows.h"

namespace cvl {

struct WindowModels {
  EventLoop &Loop;
  MainWindow &Window;
  WindowLayout Layout;
  std::array<MenuEntry *, 3> Menu;
  TrayEntry &Tray;
  SecondaryWindows &Others;
  WindowLayout (*ConfigurationLayout)(ConfigurationWindow &);
  WindowLayout (*AboutLayout)(AboutBox &);
  /// Opens an address on the desktop.
  std::function<void(const std::string &)> OpenAddress;
  /// The main window's close button was pressed.
  std::function<void()> OnClose;
  /// The desktop session ends, or its display is gone.
  std::function<void()> OnSessionEnd;
};

}  // namespace cvl
