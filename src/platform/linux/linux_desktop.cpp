#include "platform/linux/linux_desktop.h"

#include <vector>

namespace cvl {

namespace {

/// Dialogs for date, time and zone: the program and its arguments. Each desktop has its own;
/// the first that is installed is taken.
std::vector<std::vector<std::string>> DateAndTimeDialogs() {
  return {
      {"gnome-control-center", "datetime"},
      {"kcmshell6", "kcm_clock"},
      {"kcmshell5", "clock"},
      {"cinnamon-settings", "calendar"},
      {"mate-time-admin"},
      {"lxqt-admin-time"},
      {"budgie-control-center", "datetime"},
      {"time-admin"},
  };
}

}  // namespace

void LinuxDesktop::OpenAddress(const std::string &address) {
  static_cast<void>(Programs_.Start("xdg-open", {address}));
}

void LinuxDesktop::OpenDateAndTime() {
  for (const std::vector<std::string> &dialog : DateAndTimeDialogs()) {
    if (Programs_.Start(dialog.front(), {dialog.begin() + 1, dialog.end()}) == 0) return;
  }
}

}  // namespace cvl
