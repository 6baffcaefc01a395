#include "ui/button/button_frame.h"

#include "ui/button/xp_button.h"

namespace cvl {

namespace {

/// From this width on an edge is a shaded one; below it is two lines.
constexpr int LeastWideBevel = 2;

bool IsWide(const ButtonScene &scene) {
  return scene.Properties.BEVEL >= LeastWideBevel;
}

/// The second box reaches beyond the surface, so that only its top and left sides show.
void PlainEdge(Canvas &canvas, Colour lower_right, Colour upper_left) {
  const int w = canvas.Width();
  const int h = canvas.Height();
  canvas.Frame({0, 0, w, h}, lower_right);
  canvas.Frame({0, 0, w + 1, h + 1}, upper_left);
}

/// Each loop begins at the base colour and adds its step again and again.
void WideEdge(Canvas &canvas, const ButtonProperties &properties, int depth) {
  const int w = canvas.Width();
  const int h = canvas.Height();
  Colour colour = properties.BackColor;
  for (int i = properties.BEVEL; i >= 0; --i) {
    colour = ColorShift(colour, -depth);
    canvas.Frame({0, 0, w - i, h - i}, colour);
  }
  colour = properties.BackColor;
  for (int i = properties.BEVEL; i >= 0; --i) {
    colour = ColorShift(colour, depth);
    canvas.Line({i, i}, {w - i, i}, colour);
    canvas.Line({i, i}, {i, h - i}, colour);
  }
}

void RaisedEdge(Canvas &canvas, const ButtonScene &scene) {
  if (IsWide(scene)) {
    WideEdge(canvas, scene.Properties, scene.Properties.BEVELDEPTH);
  } else {
    PlainEdge(canvas, system_colour::ButtonShadow, system_colour::Highlight3D);
  }
}

void SunkenEdge(Canvas &canvas, const ButtonScene &scene) {
  if (IsWide(scene)) {
    WideEdge(canvas, scene.Properties, -scene.Properties.BEVELDEPTH);
  } else {
    PlainEdge(canvas, system_colour::Highlight3D, system_colour::ButtonShadow);
  }
}

/// The dark sides stand on the last row and column; the box that they belong to begins
/// outside, so that its other two sides don't show.
void DarkOutline(Canvas &canvas) {
  const int w = canvas.Width();
  const int h = canvas.Height();
  canvas.Frame({0, 0, w - 1, h - 1}, system_colour::ButtonShadow);
  canvas.Frame({0, 0, w + 1, h + 1}, system_colour::Highlight3D);
  canvas.Line({0, h - 1}, {w, h - 1}, system_colour::DarkShadow3D);
  canvas.Line({w - 1, 0}, {w - 1, h}, system_colour::DarkShadow3D);
}

bool HasDarkOutline(const ButtonScene &scene) {
  if (IsWide(scene)) return false;
  const bool shows_focus =
      scene.Properties.ButtonStyle == button_style::Standard && scene.HasFocus && !scene.IsDown;
  return scene.IsDefault || shows_focus;
}

/// The edge of Standard and Flat.
void EdgeOfState(Canvas &canvas, const ButtonScene &scene) {
  if (scene.IsDown) {
    SunkenEdge(canvas, scene);
  } else if (scene.IsHover || scene.Properties.ButtonStyle == button_style::Standard) {
    RaisedEdge(canvas, scene);
  }
  if (HasDarkOutline(scene)) DarkOutline(canvas);
}

void MenuFrame(Canvas &canvas, const ButtonScene &scene) {
  const ButtonProperties &properties = scene.Properties;
  if (scene.DesignMode) canvas.Fill(properties.BackColor);
  if (scene.DesignMode || scene.IsDown || scene.IsHover || properties.XPShowBorderAlways) {
    canvas.Frame(canvas.Bounds(), properties.ForeColor);
  }
}

void RoundedFace(Canvas &canvas, const ButtonScene &scene) {
  if (scene.DesignMode) {
    DrawXPButton(canvas, scene, XPState::Normal, XPHover::Off);
  } else if (scene.IsDown) {
    DrawXPButton(canvas, scene, XPState::Pressed, XPHover::Off);
  } else {
    DrawXPButton(canvas, scene, XPState::Normal, scene.IsHover ? XPHover::On : XPHover::Off);
  }
}

}  // namespace

void DrawFrame(Canvas &canvas, const ButtonScene &scene) {
  switch (scene.Properties.ButtonStyle) {
    case button_style::Standard:
    case button_style::Flat:
      if (scene.DesignMode) {
        RaisedEdge(canvas, scene);
      } else {
        EdgeOfState(canvas, scene);
      }
      break;
    case button_style::Menu:
      MenuFrame(canvas, scene);
      break;
    case button_style::Rounded:
      RoundedFace(canvas, scene);
      break;
    default:
      break;
  }
}

}  // namespace cvl
