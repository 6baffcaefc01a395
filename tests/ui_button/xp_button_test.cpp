#include "ui/button/xp_button.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/ui_button/painting.h"

namespace cvl {
namespace {

// The face drawn a second time: line by line, as a list.

struct FaceSize {
  int Width;
  int Height;
};
constexpr FaceSize FaceSizes[] = {{10, 10}, {20, 14}, {13, 50}, {81, 25}, {150, 33}};

/// I * SPAN / H to the nearest whole number, a half to the even one, by whole numbers alone.
int Rounded(int i, int span, int h) {
  const int doubled = 2 * i * span;
  const int down = doubled / (2 * h);
  const int rest = doubled % (2 * h);
  if (rest == h) return down + down % 2;
  return rest > h ? down + 1 : down;
}

void BoxAndDots(Sketch &sheet, std::uint32_t box, std::uint32_t dots) {
  const int w = sheet.Width;
  const int h = sheet.Height;
  sheet.Box(0, 0, w, h, box);
  sheet.Dot(1, 1, dots);
  sheet.Dot(1, h - 2, dots);
  sheet.Dot(w - 2, 1, dots);
  sheet.Dot(w - 2, h - 2, dots);
}

void Disabled(Sketch &sheet, std::uint32_t base) {
  sheet.Area(0, 0, sheet.Width, sheet.Height, Brighter(base, -24));
  BoxAndDots(sheet, Brighter(base, -84), Brighter(base, -72));
}

void Pressed(Sketch &sheet, std::uint32_t base) {
  const int w = sheet.Width;
  const int h = sheet.Height;
  const std::uint32_t b = Brighter(base, -32);
  for (int i = 1; i <= h; ++i) {
    sheet.Stroke(0, h - i, w, h - i, Brighter(b, -Rounded(i, 15, h)));
  }
  BoxAndDots(sheet, Dark, Dark);
  sheet.Stroke(2, h - 2, w - 2, h - 2, Brighter(b, 16));
  sheet.Stroke(1, h - 3, w - 2, h - 3, Brighter(b, 10));
  sheet.Stroke(w - 2, 2, w - 2, h - 2, Brighter(b, 5));
  sheet.Stroke(w - 3, 3, w - 3, h - 3, b);
  sheet.Stroke(2, 1, w - 2, 1, Brighter(b, -32));
  sheet.Stroke(1, 2, w - 2, 2, Brighter(b, -24));
  sheet.Stroke(1, 2, 1, h - 2, Brighter(b, -32));
  sheet.Stroke(2, 2, 2, h - 2, Brighter(b, -22));
}

void Gradient(Sketch &sheet, std::uint32_t base) {
  const int w = sheet.Width;
  const int h = sheet.Height;
  for (int i = 1; i <= h; ++i) {
    sheet.Stroke(0, i - 1, w, i - 1, Brighter(base, -Rounded(i, 25, h)));
  }
  BoxAndDots(sheet, Dark, Dark);
}

void Unfocused(Sketch &sheet, std::uint32_t base) {
  const int w = sheet.Width;
  const int h = sheet.Height;
  sheet.Stroke(2, h - 2, w - 2, h - 2, Brighter(base, -48));
  sheet.Stroke(1, h - 3, w - 2, h - 3, Brighter(base, -32));
  sheet.Stroke(w - 2, 2, w - 2, h - 2, Brighter(base, -36));
  sheet.Stroke(w - 3, 3, w - 3, h - 3, Brighter(base, -24));
  sheet.Stroke(2, 1, w - 2, 1, Brighter(base, 16));
  sheet.Stroke(1, 2, w - 2, 2, Brighter(base, 10));
  sheet.Stroke(1, 2, 1, h - 2, Brighter(base, -5));
  sheet.Stroke(2, 3, 2, h - 3, Brighter(base, -10));
}

void Focused(Sketch &sheet, std::uint32_t colour) {
  const int w = sheet.Width;
  const int h = sheet.Height;
  sheet.Box(1, 2, w - 1, h - 2, colour);
  sheet.Stroke(2, h - 2, w - 2, h - 2, Brighter(colour, -33));
  sheet.Stroke(2, 1, w - 2, 1, Brighter(colour, 65));
  sheet.Stroke(1, 2, w - 1, 2, Brighter(colour, 50));
  sheet.Stroke(2, 3, 2, h - 3, Brighter(colour, 31));
  sheet.Stroke(w - 3, 3, w - 3, h - 3, Brighter(colour, 31));
}

void Hovered(Sketch &sheet, std::uint32_t colour) {
  const int w = sheet.Width;
  const int h = sheet.Height;
  sheet.Box(1, 2, w - 1, h - 2, colour);
  sheet.Stroke(2, h - 2, w - 2, h - 2, Brighter(colour, -40));
  sheet.Stroke(2, 1, w - 2, 1, Brighter(colour, 90));
  sheet.Stroke(1, 2, w - 1, 2, Brighter(colour, 35));
  sheet.Stroke(2, 3, 2, h - 3, Brighter(colour, 20));
  sheet.Stroke(w - 3, 3, w - 3, h - 3, Brighter(colour, 20));
}

/// Button face, 48 brighter.
constexpr std::uint32_t Base = 0xF0F0F0;
constexpr std::uint32_t FocusColour = 0x8CAAE6;  // 140, 170, 230
constexpr std::uint32_t HoverColour = 0xE19947;  // 225, 153, 71

TEST(XPButton, IsAGradientInADarkBox) {
  for (const FaceSize &size : FaceSizes) {
    Painting painting(size.Width, size.Height, button_style::Rounded);
    Sketch expected = painting.Blank(0);
    Gradient(expected, Base);
    Unfocused(expected, Base);
    ExpectLooks(painting.Paint(), expected);
  }
}

TEST(XPButton, GrowsDarkerFromTopToBottom) {
  Painting painting(20, 50, button_style::Rounded);
  painting.Paint();
  // Half a step and one and a half are rounded to the even neighbours, 0 and 2.
  EXPECT_EQ(painting.Surface.At(10, 0), 0xFF000000U) << "the box";
  EXPECT_EQ(painting.Surface.At(10, 4), 0xFFEEEEEEU) << "5 * 25 / 50 = 2.5";
  EXPECT_EQ(painting.Surface.At(10, 6), 0xFFECECECU) << "7 * 25 / 50 = 3.5";
  EXPECT_EQ(painting.Surface.At(10, 45), 0xFFD9D9D9U) << "46 * 25 / 50 = 23";
}

TEST(XPButton, HasAnInnerFrameForFocusInPlaceOfItsEdge) {
  for (const FaceSize &size : FaceSizes) {
    Painting painting(size.Width, size.Height, button_style::Rounded);
    painting.HasFocus = true;
    Sketch expected = painting.Blank(0);
    Gradient(expected, Base);
    Focused(expected, FocusColour);
    ExpectLooks(painting.Paint(), expected);
  }
}

TEST(XPButton, HasAnInnerFrameForHoveringOverItsEdge) {
  for (const FaceSize &size : FaceSizes) {
    Painting painting(size.Width, size.Height, button_style::Rounded);
    painting.IsHover = true;
    Sketch expected = painting.Blank(0);
    Gradient(expected, Base);
    Unfocused(expected, Base);
    Hovered(expected, HoverColour);
    ExpectLooks(painting.Paint(), expected);
  }
}

TEST(XPButton, LaysTheFrameOfHoveringOverThatOfFocus) {
  for (const FaceSize &size : FaceSizes) {
    Painting painting(size.Width, size.Height, button_style::Rounded);
    painting.IsHover = true;
    painting.HasFocus = true;
    Sketch expected = painting.Blank(0);
    Gradient(expected, Base);
    Focused(expected, FocusColour);
    Hovered(expected, HoverColour);
    ExpectLooks(painting.Paint(), expected);
  }
}

TEST(XPButton, IsDarkerAndUpsideDownWhenPressed) {
  for (const FaceSize &size : FaceSizes) {
    for (const bool is_hover : {false, true}) {
      Painting painting(size.Width, size.Height, button_style::Rounded);
      painting.IsDown = true;
      painting.IsHover = is_hover;
      painting.HasFocus = true;
      Sketch expected = painting.Blank(0);
      Pressed(expected, Base);
      ExpectLooks(painting.Paint(), expected);
    }
  }
}

TEST(XPButton, HasOneFaceWhenDisabled) {
  for (const FaceSize &size : FaceSizes) {
    for (int state = 0; state < 8; ++state) {
      Painting painting(size.Width, size.Height, button_style::Rounded);
      painting.Enabled = false;
      painting.IsDown = (state & 1) != 0;
      painting.IsHover = (state & 2) != 0;
      painting.HasFocus = (state & 4) != 0;
      Sketch expected = painting.Blank(0);
      Disabled(expected, Base);
      ExpectLooks(painting.Paint(), expected);
    }
  }
}

TEST(XPButton, TakesItsBaseFromBackColor) {
  Painting painting(20, 14, button_style::Rounded);
  painting.Properties.BackColor = Rgb(0x20, 0xE0, 0x80);
  Sketch expected = painting.Blank(0);
  Gradient(expected, 0x50FFB0);
  Unfocused(expected, 0x50FFB0);
  ExpectLooks(painting.Paint(), expected);

  painting.IsDown = true;
  Sketch pressed = painting.Blank(0);
  Pressed(pressed, 0x50FFB0);
  ExpectLooks(painting.Paint(), pressed);

  painting.Enabled = false;
  Sketch disabled = painting.Blank(0);
  Disabled(disabled, 0x50FFB0);
  ExpectLooks(painting.Paint(), disabled);
}

TEST(XPButton, TakesTheColoursOfItsFramesFromThePropertiesIfTheyCount) {
  Painting painting(20, 14, button_style::Rounded);
  painting.Properties.XPColor_Pressed = Rgb(0x10, 0x20, 0x30);
  painting.Properties.XPColor_Hover = system_colour::Highlight;
  painting.Properties.XPDefaultColors = false;
  painting.HasFocus = true;
  Sketch focused = painting.Blank(0);
  Gradient(focused, Base);
  Focused(focused, 0x102030);
  ExpectLooks(painting.Paint(), focused);

  painting.HasFocus = false;
  painting.IsHover = true;
  Sketch hovered = painting.Blank(0);
  Gradient(hovered, Base);
  Unfocused(hovered, Base);
  Hovered(hovered, 0x000080);
  ExpectLooks(painting.Paint(), hovered);
}

TEST(XPButton, IsIdleInDesignMode) {
  Painting painting(20, 14, button_style::Rounded);
  painting.DesignMode = true;
  painting.IsDown = true;
  painting.IsHover = true;
  Sketch expected = painting.Blank(0);
  Gradient(expected, Base);
  Unfocused(expected, Base);
  ExpectLooks(painting.Paint(), expected);
}

TEST(XPButton, IsTheSameForAnyBevelAndAsDefaultButton) {
  Painting painting(20, 14, button_style::Rounded);
  painting.Properties.BEVEL = 6;
  painting.IsDefault = true;
  Sketch expected = painting.Blank(0);
  Gradient(expected, Base);
  Unfocused(expected, Base);
  ExpectLooks(painting.Paint(), expected);
}

TEST(XPRegion, LacksThreePixelsAtEachCorner) {
  for (const FaceSize &size : FaceSizes) {
    const Region region = MakeXPRegion(size.Width, size.Height);
    int inside = 0;
    for (int y = -1; y <= size.Height; ++y) {
      for (int x = -1; x <= size.Width; ++x)
        inside += region.Contains(x, y) ? 1 : 0;
    }
    EXPECT_EQ(inside, size.Width * size.Height - 12);
  }
}

TEST(XPRegion, IsRounded) {
  const std::vector<std::string> shape = {"  ######  ", " ######## ", "##########",
                                          "##########", " ######## ", "  ######  "};
  const Region region = MakeXPRegion(10, 6);
  for (int y = 0; y < 6; ++y) {
    for (int x = 0; x < 10; ++x) {
      const bool is_inside = shape[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#';
      EXPECT_EQ(region.Contains(x, y), is_inside) << x << ", " << y;
    }
  }
}

}  // namespace
}  // namespace cvl
