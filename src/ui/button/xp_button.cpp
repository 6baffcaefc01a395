#include "ui/button/xp_button.h"

#include <span>

#include "base/numbers.h"

namespace cvl {

namespace {

/// A coordinate that is counted from the near side, or from the far one.
struct From {
  bool FarSide;
  int Distance;

  int On(int length) const { return FarSide ? length - Distance : Distance; }
};

constexpr From Near(int distance) {
  return {false, distance};
}
constexpr From Far(int distance) {
  return {true, distance};
}

struct Shade {
  From X1, Y1, X2, Y2;
  int Shift;
};

constexpr Shade PressedEdge[] = {
    {Near(2), Far(2), Far(2), Far(2), 16},    {Near(1), Far(3), Far(2), Far(3), 10},
    {Far(2), Near(2), Far(2), Far(2), 5},     {Far(3), Near(3), Far(3), Far(3), 0},
    {Near(2), Near(1), Far(2), Near(1), -32}, {Near(1), Near(2), Far(2), Near(2), -24},
    {Near(1), Near(2), Near(1), Far(2), -32}, {Near(2), Near(2), Near(2), Far(2), -22},
};

constexpr Shade NormalEdge[] = {
    {Near(2), Far(2), Far(2), Far(2), -48},  {Near(1), Far(3), Far(2), Far(3), -32},
    {Far(2), Near(2), Far(2), Far(2), -36},  {Far(3), Near(3), Far(3), Far(3), -24},
    {Near(2), Near(1), Far(2), Near(1), 16}, {Near(1), Near(2), Far(2), Near(2), 10},
    {Near(1), Near(2), Near(1), Far(2), -5}, {Near(2), Near(3), Near(2), Far(3), -10},
};

constexpr Shade FocusEdge[] = {
    {Near(2), Far(2), Far(2), Far(2), -33},  {Near(2), Near(1), Far(2), Near(1), 65},
    {Near(1), Near(2), Far(1), Near(2), 50}, {Near(2), Near(3), Near(2), Far(3), 31},
    {Far(3), Near(3), Far(3), Far(3), 31},
};

constexpr Shade HoverEdge[] = {
    {Near(2), Far(2), Far(2), Far(2), -40},  {Near(2), Near(1), Far(2), Near(1), 90},
    {Near(1), Near(2), Far(1), Near(2), 35}, {Near(2), Near(3), Near(2), Far(3), 20},
    {Far(3), Near(3), Far(3), Far(3), 20},
};

constexpr Colour DefaultFocusColour = Rgb(140, 170, 230);
constexpr Colour DefaultHoverColour = Rgb(225, 153, 71);

void Shades(Canvas &canvas, std::span<const Shade> shades, Colour base) {
  const int w = canvas.Width();
  const int h = canvas.Height();
  for (const Shade &shade : shades) {
    canvas.Line({shade.X1.On(w), shade.Y1.On(h)}, {shade.X2.On(w), shade.Y2.On(h)},
                ColorShift(base, shade.Shift));
  }
}

/// The pixels that round the corners inside.
void Corners(Canvas &canvas, Colour colour) {
  const int w = canvas.Width();
  const int h = canvas.Height();
  canvas.SetPixel(1, 1, colour);
  canvas.SetPixel(1, h - 2, colour);
  canvas.SetPixel(w - 2, 1, colour);
  canvas.SetPixel(w - 2, h - 2, colour);
}

void BoxAndCorners(Canvas &canvas) {
  canvas.Frame(canvas.Bounds(), system_colour::DarkShadow3D);
  Corners(canvas, system_colour::DarkShadow3D);
}

/// How much darker the I-th of H lines is when all of them together come to SPAN.
int Darkening(int i, int span, int h) {
  return ToLong(static_cast<double>(i) * span / h);
}

void DisabledFace(Canvas &canvas, Colour base) {
  canvas.Fill(ColorShift(base, -24));
  canvas.Frame(canvas.Bounds(), ColorShift(base, -84));
  Corners(canvas, ColorShift(base, -72));
}

void PressedFace(Canvas &canvas, Colour base) {
  const int w = canvas.Width();
  const int h = canvas.Height();
  for (int i = 1; i <= h; ++i) {
    canvas.Line({0, h - i}, {w, h - i}, ColorShift(base, -Darkening(i, 15, h)));
  }
  BoxAndCorners(canvas);
  Shades(canvas, PressedEdge, base);
}

void NormalFace(Canvas &canvas, Colour base) {
  const int w = canvas.Width();
  const int h = canvas.Height();
  for (int i = 1; i <= h; ++i) {
    canvas.Line({0, i - 1}, {w, i - 1}, ColorShift(base, -Darkening(i, 25, h)));
  }
  BoxAndCorners(canvas);
}

void InnerFrame(Canvas &canvas, Colour colour, std::span<const Shade> shades) {
  canvas.Frame({1, 2, canvas.Width() - 1, canvas.Height() - 2}, colour);
  Shades(canvas, shades, colour);
}

}  // namespace

void DrawXPButton(Canvas &canvas, const ButtonScene &scene, XPState state, XPHover hover) {
  const ButtonProperties &properties = scene.Properties;
  const Colour base = ColorShift(properties.BackColor, 48);
  if (!scene.Enabled) {
    DisabledFace(canvas, base);
    return;
  }
  if (state == XPState::Pressed) {
    PressedFace(canvas, ColorShift(base, -32));
    return;
  }
  const bool fixed = properties.XPDefaultColors;
  NormalFace(canvas, base);
  if (scene.HasFocus) {
    InnerFrame(canvas, fixed ? DefaultFocusColour : properties.XPColor_Pressed, FocusEdge);
  } else {
    Shades(canvas, NormalEdge, base);
  }
  if (hover == XPHover::On) {
    InnerFrame(canvas, fixed ? DefaultHoverColour : properties.XPColor_Hover, HoverEdge);
  }
}

Region MakeXPRegion(int width, int height) {
  const int w = width;
  const int h = height;
  Region region({0, 0, w, h});
  region.Remove({0, 0, 2, 1});
  region.Remove({0, h - 1, 2, h});
  region.Remove({w - 2, 0, w, 1});
  region.Remove({w - 2, h - 1, w, h});
  region.Remove({0, 1, 1, 2});
  region.Remove({0, h - 2, 1, h - 1});
  region.Remove({w - 1, 1, w, 2});
  region.Remove({w - 1, h - 2, w, h - 1});
  return region;
}

}  // namespace cvl
