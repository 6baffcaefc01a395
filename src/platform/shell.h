// The desktop's tray.

#pragma once

#include <string>

namespace cvl {

/// What is to be done with the tray entry; the numbers are the shell's.
enum class TrayMessage { Add = 0, Modify = 1, Remove = 2 };

/// What a hand does to the tray entry; the numbers are the shell's.
enum class TrayEvent { LeftUp = 514, LeftDoubleClick = 515, RightUp = 517 };

/// The entry. An icon is a number of the image table, 0 for the window's own.
struct TrayIcon {
  int Icon = 0;
  std::string Tip;
};

class Shell {
 public:
  virtual ~Shell() = default;

  /// Results are of no interest to anybody: there may be no tray.
  virtual void Shell_NotifyIcon(TrayMessage message, const TrayIcon &icon) = 0;

  /// Gives the keyboard to the main window, so that a menu that opens without a window
  /// closes when the hand goes elsewhere.
  virtual void SetForegroundWindow() = 0;
};

}  // namespace cvl
