#include <gtest/gtest.h>

#include "tests/ui_button/painting.h"

namespace cvl {
namespace {

// Each expectation is drawn here a second time, on a sheet of its own.

void Raised(Sketch &sheet) {
  const int w = sheet.Width;
  const int h = sheet.Height;
  sheet.Box(0, 0, w, h, Shadow);
  sheet.Area(0, 0, w, 1, Light);
  sheet.Area(0, 0, 1, h, Light);
}

void Sunken(Sketch &sheet) {
  const int w = sheet.Width;
  const int h = sheet.Height;
  sheet.Box(0, 0, w, h, Light);
  sheet.Area(0, 0, w, 1, Shadow);
  sheet.Area(0, 0, 1, h, Shadow);
}

void Outlined(Sketch &sheet) {
  const int w = sheet.Width;
  const int h = sheet.Height;
  sheet.Area(0, h - 2, w - 1, h - 1, Shadow);
  sheet.Area(w - 2, 0, w - 1, h - 1, Shadow);
  sheet.Area(0, 0, w, 1, Light);
  sheet.Area(0, 0, 1, h, Light);
  sheet.Area(0, h - 1, w, h, Dark);
  sheet.Area(w - 1, 0, w, h, Dark);
}

void Wide(Sketch &sheet, int bevel, int depth, std::uint32_t ground) {
  const int w = sheet.Width;
  const int h = sheet.Height;
  std::uint32_t colour = ground;
  for (int i = bevel; i >= 0; --i) {
    colour = Brighter(colour, -depth);
    sheet.Box(0, 0, w - i, h - i, colour);
  }
  colour = ground;
  for (int i = bevel; i >= 0; --i) {
    colour = Brighter(colour, depth);
    sheet.Stroke(i, i, w - i, i, colour);
    sheet.Stroke(i, i, i, h - i, colour);
  }
}

struct Size {
  int Width;
  int Height;
};
constexpr Size Sizes[] = {{10, 10}, {20, 12}, {11, 40}, {81, 25}};

/// Nothing but edges: no focus rectangle.
Painting Edge(const Size &size, std::int32_t style) {
  Painting painting(size.Width, size.Height, style);
  painting.Properties.ShowFocusRect = false;
  return painting;
}

TEST(StandardEdge, IsRaisedWhenIdleAndWhenHovered) {
  for (const Size &size : Sizes) {
    Painting painting = Edge(size, button_style::Standard);
    Sketch expected = painting.Blank(Face);
    Raised(expected);
    ExpectLooks(painting.Paint(), expected);
    painting.IsHover = true;
    ExpectLooks(painting.Paint(), expected);
  }
}

TEST(StandardEdge, IsSunkenWhenPressed) {
  for (const Size &size : Sizes) {
    Painting painting = Edge(size, button_style::Standard);
    painting.IsDown = true;
    Sketch expected = painting.Blank(Face);
    Sunken(expected);
    ExpectLooks(painting.Paint(), expected);
    painting.IsHover = true;
    ExpectLooks(painting.Paint(), expected);
  }
}

TEST(StandardEdge, HasItsCornersInTheColourOfTheUpperLeft) {
  Painting painting = Edge({20, 12}, button_style::Standard);
  painting.Paint();
  EXPECT_EQ(painting.Surface.At(19, 0), 0xFFFFFFFFU);
  EXPECT_EQ(painting.Surface.At(0, 11), 0xFFFFFFFFU);
  EXPECT_EQ(painting.Surface.At(19, 1), 0xFF808080U);
  EXPECT_EQ(painting.Surface.At(1, 11), 0xFF808080U);
  EXPECT_EQ(painting.Surface.At(1, 1), 0xFFC0C0C0U);
}

TEST(StandardEdge, HasADarkOutlineWithFocus) {
  for (const Size &size : Sizes) {
    Painting painting = Edge(size, button_style::Standard);
    painting.HasFocus = true;
    Sketch expected = painting.Blank(Face);
    Raised(expected);
    Outlined(expected);
    ExpectLooks(painting.Paint(), expected);
    painting.IsHover = true;
    ExpectLooks(painting.Paint(), expected);
  }
}

TEST(StandardEdge, ShowsTheRightAndBottomSideOfTheOutlineOnly) {
  Painting painting = Edge({20, 12}, button_style::Standard);
  painting.HasFocus = true;
  painting.Paint();
  EXPECT_EQ(painting.Surface.At(19, 5), 0xFF000000U);
  EXPECT_EQ(painting.Surface.At(5, 11), 0xFF000000U);
  EXPECT_EQ(painting.Surface.At(19, 0), 0xFF000000U);
  EXPECT_EQ(painting.Surface.At(0, 11), 0xFF000000U);
  EXPECT_EQ(painting.Surface.At(0, 5), 0xFFFFFFFFU);
  EXPECT_EQ(painting.Surface.At(5, 0), 0xFFFFFFFFU);
  EXPECT_EQ(painting.Surface.At(18, 5), 0xFF808080U);
  EXPECT_EQ(painting.Surface.At(5, 10), 0xFF808080U);
}

TEST(StandardEdge, HasNoOutlineWhenPressedWithFocus) {
  Painting painting = Edge({20, 12}, button_style::Standard);
  painting.HasFocus = true;
  painting.IsDown = true;
  Sketch expected = painting.Blank(Face);
  Sunken(expected);
  ExpectLooks(painting.Paint(), expected);
}

TEST(StandardEdge, HasAnOutlineAsDefaultButtonInAnyState) {
  for (const bool is_down : {false, true}) {
    for (const bool is_hover : {false, true}) {
      Painting painting = Edge({20, 12}, button_style::Standard);
      painting.IsDefault = true;
      painting.IsDown = is_down;
      painting.IsHover = is_hover;
      Sketch expected = painting.Blank(Face);
      is_down ? Sunken(expected) : Raised(expected);
      Outlined(expected);
      ExpectLooks(painting.Paint(), expected);
    }
  }
}

TEST(StandardEdge, IsTheSameWhenDisabled) {
  Painting painting = Edge({20, 12}, button_style::Standard);
  painting.Enabled = false;
  Sketch expected = painting.Blank(Face);
  Raised(expected);
  ExpectLooks(painting.Paint(), expected);
}

TEST(StandardEdge, IsAlwaysRaisedInDesignMode) {
  for (const std::int32_t style : {button_style::Standard, button_style::Flat}) {
    Painting painting = Edge({20, 12}, style);
    painting.DesignMode = true;
    Sketch expected = painting.Blank(Face);
    Raised(expected);
    ExpectLooks(painting.Paint(), expected);
    painting.IsDefault = true;
    painting.IsDown = true;
    ExpectLooks(painting.Paint(), expected);
  }
}

TEST(StandardEdge, StandsOnBackColor) {
  Painting painting = Edge({20, 12}, button_style::Standard);
  painting.Properties.BackColor = Rgb(0x12, 0x34, 0x56);
  Sketch expected = painting.Blank(0x123456);
  Raised(expected);
  ExpectLooks(painting.Paint(), expected);
}

TEST(StandardEdge, IsPlainForAnyBevelBelowTwo) {
  for (const int bevel : {1, 0, -1, -32768}) {
    Painting painting = Edge({20, 12}, button_style::Standard);
    painting.Properties.BEVEL = static_cast<std::int16_t>(bevel);
    Sketch expected = painting.Blank(Face);
    Raised(expected);
    ExpectLooks(painting.Paint(), expected);
  }
}

TEST(FlatEdge, IsNoneWhenIdle) {
  Painting painting = Edge({20, 12}, button_style::Flat);
  ExpectLooks(painting.Paint(), painting.Blank(Face));
}

TEST(FlatEdge, IsRaisedWhenHovered) {
  Painting painting = Edge({20, 12}, button_style::Flat);
  painting.IsHover = true;
  Sketch expected = painting.Blank(Face);
  Raised(expected);
  ExpectLooks(painting.Paint(), expected);
}

TEST(FlatEdge, IsSunkenWhenPressed) {
  Painting painting = Edge({20, 12}, button_style::Flat);
  painting.IsDown = true;
  Sketch expected = painting.Blank(Face);
  Sunken(expected);
  ExpectLooks(painting.Paint(), expected);
}

TEST(FlatEdge, HasNoOutlineForFocusButForTheDefaultButton) {
  Painting painting = Edge({20, 12}, button_style::Flat);
  painting.HasFocus = true;
  ExpectLooks(painting.Paint(), painting.Blank(Face));

  painting.IsDefault = true;
  Sketch expected = painting.Blank(Face);
  Outlined(expected);
  ExpectLooks(painting.Paint(), expected);
}

TEST(WideEdge, StandsInSteps) {
  Painting painting = Edge({20, 12}, button_style::Standard);
  painting.Properties.BEVEL = 2;
  painting.Properties.BEVELDEPTH = 16;
  painting.Paint();
  // From the right side inwards: the last step, darkest, first.
  EXPECT_EQ(painting.Surface.At(19, 6), 0xFF909090U);
  EXPECT_EQ(painting.Surface.At(18, 6), 0xFFA0A0A0U);
  EXPECT_EQ(painting.Surface.At(17, 6), 0xFFB0B0B0U);
  EXPECT_EQ(painting.Surface.At(16, 6), 0xFFC0C0C0U);
  EXPECT_EQ(painting.Surface.At(5, 11), 0xFF909090U);
  EXPECT_EQ(painting.Surface.At(5, 9), 0xFFB0B0B0U);
  // From the left side inwards: the second loop begins anew at the base.
  EXPECT_EQ(painting.Surface.At(0, 6), 0xFFF0F0F0U);
  EXPECT_EQ(painting.Surface.At(1, 6), 0xFFE0E0E0U);
  EXPECT_EQ(painting.Surface.At(2, 6), 0xFFD0D0D0U);
  EXPECT_EQ(painting.Surface.At(3, 6), 0xFFC0C0C0U);
  // Where they meet, the light line ends one pixel inside of its box.
  EXPECT_EQ(painting.Surface.At(19, 0), 0xFFF0F0F0U);
  EXPECT_EQ(painting.Surface.At(18, 1), 0xFFE0E0E0U);
  EXPECT_EQ(painting.Surface.At(19, 1), 0xFF909090U);
}

TEST(WideEdge, IsRaisedOfAnyWidthAndDepth) {
  for (const Size &size : Sizes) {
    for (const int bevel : {2, 3, 5}) {
      for (const int depth : {8, 1, 60, 0, -8}) {
        Painting painting = Edge(size, button_style::Standard);
        painting.Properties.BEVEL = static_cast<std::int16_t>(bevel);
        painting.Properties.BEVELDEPTH = static_cast<std::int16_t>(depth);
        Sketch expected = painting.Blank(Face);
        Wide(expected, bevel, depth, Face);
        ExpectLooks(painting.Paint(), expected);
      }
    }
  }
}

TEST(WideEdge, SwapsLightAndDarkWhenPressed) {
  for (const std::int32_t style : {button_style::Standard, button_style::Flat}) {
    Painting painting = Edge({20, 12}, style);
    painting.Properties.BEVEL = 3;
    painting.IsDown = true;
    Sketch expected = painting.Blank(Face);
    Wide(expected, 3, -8, Face);
    ExpectLooks(painting.Paint(), expected);
  }
}

TEST(WideEdge, TakesItsColourFromBackColor) {
  Painting painting = Edge({20, 12}, button_style::Standard);
  painting.Properties.BEVEL = 2;
  painting.Properties.BackColor = Rgb(0xF8, 0x40, 0x04);
  Sketch expected = painting.Blank(0xF84004);
  Wide(expected, 2, 8, 0xF84004);
  ExpectLooks(painting.Paint(), expected);
}

TEST(WideEdge, HasNoDarkOutline) {
  Painting painting = Edge({20, 12}, button_style::Standard);
  painting.Properties.BEVEL = 2;
  painting.HasFocus = true;
  painting.IsDefault = true;
  Sketch expected = painting.Blank(Face);
  Wide(expected, 2, 8, Face);
  ExpectLooks(painting.Paint(), expected);
}

TEST(WideEdge, IsRaisedInDesignMode) {
  Painting painting = Edge({20, 12}, button_style::Flat);
  painting.Properties.BEVEL = 2;
  painting.DesignMode = true;
  Sketch expected = painting.Blank(Face);
  Wide(expected, 2, 8, Face);
  ExpectLooks(painting.Paint(), expected);
}

TEST(WideEdge, IsNoneWhereTheStyleHasNoEdge) {
  Painting painting = Edge({20, 12}, button_style::Flat);
  painting.Properties.BEVEL = 4;
  ExpectLooks(painting.Paint(), painting.Blank(Face));
}

// A box that is inset by more than half of a side is upside down, and so are its lines.
TEST(WideEdge, MayBeWiderThanTheButton) {
  for (const int bevel : {6, 11, 13, 25, 60}) {
    Painting painting = Edge({20, 12}, button_style::Standard);
    painting.Properties.BEVEL = static_cast<std::int16_t>(bevel);
    painting.Properties.BEVELDEPTH = 3;
    Sketch expected = painting.Blank(Face);
    Wide(expected, bevel, 3, Face);
    ExpectLooks(painting.Paint(), expected);
  }
}

TEST(WideEdge, StopsAtWhiteAndBlack) {
  Painting painting = Edge({20, 12}, button_style::Standard);
  painting.Properties.BEVEL = 3;
  painting.Properties.BEVELDEPTH = 32767;
  painting.Paint();
  EXPECT_EQ(painting.Surface.At(0, 6), 0xFFFFFFFFU);
  EXPECT_EQ(painting.Surface.At(3, 6), 0xFFFFFFFFU);
  EXPECT_EQ(painting.Surface.At(16, 6), 0xFF000000U);
  EXPECT_EQ(painting.Surface.At(19, 6), 0xFF000000U);
}

TEST(MenuEdge, IsAFrameInForeColorWhileHoveredOrPressed) {
  for (const Size &size : Sizes) {
    for (const bool is_down : {false, true}) {
      Painting painting = Edge(size, button_style::Menu);
      painting.Properties.ForeColor = Rgb(0xFF, 0, 0);
      painting.IsDown = is_down;
      painting.IsHover = !is_down;
      // 0, 0, 128 with 171, 154, 108 or 156, 139, 108 added.
      Sketch expected = painting.Blank(is_down ? 0x9C8BEC : 0xAB9AEC);
      expected.Box(0, 0, size.Width, size.Height, 0xFF0000);
      ExpectLooks(painting.Paint(), expected);
    }
  }
}

TEST(MenuEdge, IsNoneWhenIdleUnlessItIsAlwaysShown) {
  Painting painting = Edge({20, 12}, button_style::Menu);
  ExpectLooks(painting.Paint(), painting.Blank(Face));

  painting.Properties.XPShowBorderAlways = true;
  Sketch expected = painting.Blank(Face);
  expected.Box(0, 0, 20, 12, Dark);
  ExpectLooks(painting.Paint(), expected);
}

TEST(MenuEdge, IsTheSameForFocusDefaultButtonAndAnyBevel) {
  Painting painting = Edge({20, 12}, button_style::Menu);
  painting.HasFocus = true;
  painting.IsDefault = true;
  painting.Properties.BEVEL = 5;
  ExpectLooks(painting.Paint(), painting.Blank(Face));
}

TEST(MenuEdge, IsFilledAndFramedInDesignMode) {
  Painting painting = Edge({20, 12}, button_style::Menu);
  painting.DesignMode = true;
  painting.Properties.BackColor = Rgb(1, 2, 3);
  painting.Properties.ForeColor = Rgb(4, 5, 6);
  painting.Properties.TransparentBG = true;
  painting.Behind = [] {
    return Backdrop{MakeRaster(RasterKind::Bitmap, 20, 12,
                               std::vector<std::uint32_t>(std::size_t{20} * 12, 0xFFFFFF))};
  };
  Sketch expected = painting.Blank(0x010203);
  expected.Box(0, 0, 20, 12, 0x040506);
  ExpectLooks(painting.Paint(), expected);
}

TEST(BareEdge, IsNoneInAnyState) {
  for (int state = 0; state < 32; ++state) {
    Painting painting = Edge({20, 12}, button_style::Bare);
    painting.IsDown = (state & 1) != 0;
    painting.IsHover = (state & 2) != 0;
    painting.HasFocus = (state & 4) != 0;
    painting.IsDefault = (state & 8) != 0;
    painting.DesignMode = (state & 16) != 0;
    painting.Properties.BEVEL = 3;
    painting.Properties.XPShowBorderAlways = true;
    ExpectLooks(painting.Paint(), painting.Blank(Face));
  }
}

TEST(UnknownStyle, HasNoEdge) {
  for (const std::int32_t style : {-1, 5, INT32_MAX, INT32_MIN}) {
    Painting painting = Edge({20, 12}, style);
    painting.IsDown = true;
    painting.IsDefault = true;
    ExpectLooks(painting.Paint(), painting.Blank(Face));
  }
}

}  // namespace
}  // namespace cvl
