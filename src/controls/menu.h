// A menu that opens as a pop-up.

#pragma once

#include <functional>
#include <string>

namespace cvl {

/// An entry of a menu; the caption "-" draws a line.
struct MenuEntry {
  std::string Caption;
  std::function<void()> OnClick;
};

struct Menu {
  std::string Caption;
  /// Whoever shows the menu; nobody in a run without a window.
  std::function<void()> OnPopUp;

  void PopUp() const {
    if (OnPopUp) OnPopUp();
  }
};

}  // namespace cvl
