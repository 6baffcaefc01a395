// The layout of the main window.

#pragma once

#include <array>

#include "state/main_window.h"
#include "ui/control_layout.h"

namespace cvl {

/// The main window, its controls tied to those of WINDOW.
WindowLayout MainWindowLayout(MainWindow &window);

/// What a screen reader says of a lamp's state: "on" or "off".
constexpr std::string_view LampState(const Picture &lamp) {
  return lamp.Image == LampLitImage ? "on" : "off";
}

/// The entries of mnuMain, from the top.
std::array<MenuEntry *, 3> MainMenuEntries(MainWindow &window);

}  // namespace cvl
