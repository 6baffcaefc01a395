// All that one painting of a button depends on.

#pragma once

#include <functional>

#include "ui/button/button_layout.h"
#include "ui/button/button_properties.h"
#include "ui/button/canvas.h"

namespace cvl {

/// The picture of what a button stands on, and where the button stands on it, in pixels.
struct Backdrop {
  RasterRef Picture;  ///< or none
  int Left = 0;
  int Top = 0;
};

struct ButtonScene {
  const ButtonProperties &Properties;
  ButtonLayout Layout;
  ButtonFont Font;
  RasterRef CurrentPicture;
  bool Enabled = true;
  bool HasFocus = false;
  bool IsDown = false;
  bool IsHover = false;
  bool IsDefault = false;  ///< the form's default button
  bool DesignMode = false;

  bool IsLifted() const { return IsHover && !IsDown; }
};

}  // namespace cvl
