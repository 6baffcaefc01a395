// A text on the window, and a lamp or picture of the image table.

#pragma once

#include <functional>
#include <string>

#include "controls/control.h"

namespace cvl {

struct Label : Control {
  std::string Caption;
  /// Raised when a hand clicks on it.
  std::function<void()> OnClick;
};

/// A picture by its number in the image table.
struct Picture : Control {
  int Image = 0;
};

}  // namespace cvl
