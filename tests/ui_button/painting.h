// Paints a button of any size, properties and state, without the control around it.

#pragma once

#include <functional>
#include <string>

#include "tests/ui_button/fake_text.h"
#include "tests/ui_button/sketch.h"
#include "ui/button/button_painter.h"

namespace cvl {

/// State that a test sets, and the surface that comes of it.
class Painting {
 public:
  Painting(int width, int height, std::int32_t style) : Width(width), Height(height) {
    Properties.ButtonStyle = style;
  }

  const int Width;
  const int Height;
  ButtonProperties Properties;  ///< without a caption
  RasterRef CurrentPicture;
  bool Enabled = true;
  bool HasFocus = false;
  bool IsDown = false;
  bool IsHover = false;
  bool IsDefault = false;
  bool DesignMode = false;
  std::function<Backdrop()> Behind = [] { return Backdrop(); };

  FakeText Text;
  Canvas Surface;

  const Canvas &Paint() {
    Surface.Resize(Width, Height);
    const ButtonScene scene{
        .Properties = Properties,
        .Layout = CalcLayout(Width, Height, Properties, {}, Text),
        .Font = {},
        .CurrentPicture = CurrentPicture,
        .Enabled = Enabled,
        .HasFocus = HasFocus,
        .IsDown = IsDown,
        .IsHover = IsHover,
        .IsDefault = IsDefault,
        .DesignMode = DesignMode,
    };
    PaintButton(Surface, scene, Text, Behind);
    return Surface;
  }

  Sketch Blank(std::uint32_t ground) const { return {Width, Height, ground}; }
};

/// The classic scheme, as 0xRRGGBB.
constexpr std::uint32_t Face = 0xC0C0C0;
constexpr std::uint32_t Shadow = 0x808080;
constexpr std::uint32_t Light = 0xFFFFFF;
constexpr std::uint32_t Dark = 0x000000;

}  // namespace cvl
