#include "ui/button/button_painter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/runtime_error.h"
#include "tests/ui_button/painting.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t Styles[] = {button_style::Standard, button_style::Flat, button_style::Menu,
                                   button_style::Rounded, button_style::Bare};

/// 40 by 30 pixels; no style but Bare leaves the surface alone in every state.
Painting Bare() {
  return {40, 30, button_style::Bare};
}

// Background.

/// Every pixel tells where it stands: column in red, row in green.
RasterRef Map() {
  std::vector<std::uint32_t> pixels;
  for (std::uint32_t y = 0; y < 100; ++y) {
    for (std::uint32_t x = 0; x < 100; ++x)
      pixels.push_back(x << 16 | y << 8);
  }
  return MakeRaster(RasterKind::Bitmap, 100, 100, std::move(pixels));
}

Sketch MapFrom(const Painting &painting, int left, int top) {
  Sketch sheet = painting.Blank(0);
  for (int y = 0; y < painting.Height; ++y) {
    for (int x = 0; x < painting.Width; ++x) {
      sheet.Dot(x, y, static_cast<std::uint32_t>((left + x) << 16 | (top + y) << 8));
    }
  }
  return sheet;
}

TEST(ButtonBackground, IsBackColor) {
  Painting painting = Bare();
  ExpectLooks(painting.Paint(), painting.Blank(Face));
  painting.Properties.BackColor = Rgb(1, 2, 3);
  ExpectLooks(painting.Paint(), painting.Blank(0x010203));
}

TEST(ButtonBackground, IsACopyOfTheParentsPicture) {
  for (const std::int32_t style : {button_style::Flat, button_style::Menu, button_style::Bare}) {
    Painting painting(40, 30, style);
    painting.Properties.TransparentBG = true;
    painting.Behind = [] { return Backdrop{Map(), 7, 11}; };
    ExpectLooks(painting.Paint(), MapFrom(painting, 7, 11));
  }
}

TEST(ButtonBackground, IsNotAskedForUnlessItIsShown) {
  for (const std::int32_t style : Styles) {
    Painting painting(40, 30, style);
    painting.Behind = []() -> Backdrop {
      ADD_FAILURE() << "nobody sees the parent";
      return {};
    };
    painting.Paint();
  }
}

TEST(ButtonBackground, IsBackColorWhereTheParentsPictureEnds) {
  Painting painting = Bare();
  painting.Properties.TransparentBG = true;
  painting.Behind = [] { return Backdrop{Map(), 90, 95}; };
  Sketch expected = painting.Blank(Face);
  for (int y = 0; y < 5; ++y) {
    for (int x = 0; x < 10; ++x) {
      expected.Dot(x, y, static_cast<std::uint32_t>((90 + x) << 16 | (95 + y) << 8));
    }
  }
  ExpectLooks(painting.Paint(), expected);
}

TEST(ButtonBackground, IsBackColorWhenTheParentHasNoPictureOrFails) {
  Painting painting = Bare();
  painting.Properties.TransparentBG = true;
  ExpectLooks(painting.Paint(), painting.Blank(Face));
  painting.Behind = []() -> Backdrop { throw RuntimeError(error_number::InvalidPropertyValue); };
  ExpectLooks(painting.Paint(), painting.Blank(Face));
}

TEST(ButtonBackground, OfStyleRoundedIsNeverTheParents) {
  Painting painting(40, 30, button_style::Rounded);
  painting.Paint();
  const std::uint32_t before = painting.Surface.At(20, 15);
  painting.Properties.TransparentBG = true;
  painting.Behind = [] { return Backdrop{Map(), 0, 0}; };
  EXPECT_EQ(painting.Paint().At(20, 15), before);
}

TEST(ButtonBackground, OfStyleStandardIsTheParentsInsideTheEdge) {
  Painting painting(40, 30, button_style::Standard);
  painting.Properties.TransparentBG = true;
  painting.IsDown = true;
  painting.Behind = [] { return Backdrop{Map(), 0, 0}; };
  EXPECT_EQ(painting.Paint().At(20, 15), 0xFF140F00U);
}

/// The colour in the middle of a button of style Menu.
std::uint32_t MenuFill(const std::function<void(Painting &)> &set) {
  Painting painting(40, 30, button_style::Menu);
  painting.Properties.XPColor_Hover = Rgb(1, 2, 3);
  painting.Properties.XPColor_Pressed = Rgb(4, 5, 6);
  painting.Behind = [] { return Backdrop{Map(), 0, 0}; };
  set(painting);
  return painting.Paint().At(20, 15);
}

TEST(MenuBackground, IsTheHighlightMadeLighter) {
  EXPECT_EQ(MenuFill([](Painting &p) { p.IsHover = true; }), 0xFFAB9AECU);
  EXPECT_EQ(MenuFill([](Painting &p) { p.IsDown = true; }), 0xFF9C8BECU);
  EXPECT_EQ(MenuFill([](Painting &p) { p.IsDown = p.IsHover = true; }), 0xFF9C8BECU);
  EXPECT_EQ(MenuFill([](Painting &) {}), 0xFFC0C0C0U);
}

TEST(MenuBackground, IsThatOfThePropertiesIfTheyCount) {
  EXPECT_EQ(MenuFill([](Painting &p) {
              p.Properties.XPDefaultColors = false;
              p.IsHover = true;
            }),
            0xFF010203U);
  EXPECT_EQ(MenuFill([](Painting &p) {
              p.Properties.XPDefaultColors = false;
              p.IsDown = true;
            }),
            0xFF040506U);
}

TEST(MenuBackground, CoversTheParentsPictureWhileHoveredOrPressed) {
  EXPECT_EQ(MenuFill([](Painting &p) {
              p.Properties.TransparentBG = true;
              p.IsHover = true;
            }),
            0xFFAB9AECU);
  EXPECT_EQ(MenuFill([](Painting &p) {
              p.Properties.TransparentBG = true;
              p.IsDown = true;
              p.Behind = []() -> Backdrop {
                ADD_FAILURE() << "a pressed button doesn't show its parent";
                return {};
              };
            }),
            0xFF9C8BECU);
}

// Focus rectangle.

TEST(FocusRectangle, IsDottedThreePixelsInside) {
  Painting painting = Bare();
  painting.HasFocus = true;
  Sketch expected = painting.Blank(Face);
  for (int y = 3; y < 27; ++y) {
    for (int x = 3; x < 37; ++x) {
      const bool on_edge = x == 3 || x == 36 || y == 3 || y == 26;
      if (on_edge && (x + y) % 2 == 0) expected.Dot(x, y, 0x3F3F3F);
    }
  }
  ExpectLooks(painting.Paint(), expected);
}

TEST(FocusRectangle, IsNoneWithoutFocusOrWhenItIsNotWanted) {
  Painting painting = Bare();
  ExpectLooks(painting.Paint(), painting.Blank(Face));
  painting.HasFocus = true;
  painting.Properties.ShowFocusRect = false;
  ExpectLooks(painting.Paint(), painting.Blank(Face));
}

TEST(FocusRectangle, BelongsToAllStylesButRounded) {
  for (const std::int32_t style : Styles) {
    Painting with(40, 30, style);
    with.HasFocus = true;
    Painting without(40, 30, style);
    without.HasFocus = true;
    without.Properties.ShowFocusRect = false;
    const bool is_shown = with.Paint().At(3, 3) != without.Paint().At(3, 3);
    EXPECT_EQ(is_shown, style != button_style::Rounded) << style;
  }
}

// Picture.

/// A picture of 2 by 2 in the middle of 40 by 30: its place is (19, 14) to (21, 16).
Painting WithPicture(std::int32_t style) {
  Painting painting(40, 30, style);
  painting.Properties.Picture =
      MakeRaster(RasterKind::Bitmap, 2, 2, {0x010000, 0x020000, 0x030000, 0x000000});
  painting.CurrentPicture = painting.Properties.Picture;
  painting.Properties.PictureWidth = 2;
  painting.Properties.PictureHeight = 2;
  return painting;
}

/// The three pixels that aren't masked.
void Three(Sketch &sheet, int x, int y) {
  sheet.Dot(x, y, 0x010000);
  sheet.Dot(x + 1, y, 0x020000);
  sheet.Dot(x, y + 1, 0x030000);
}

void ThreeIn(Sketch &sheet, int x, int y, std::uint32_t colour) {
  sheet.Dot(x, y, colour);
  sheet.Dot(x + 1, y, colour);
  sheet.Dot(x, y + 1, colour);
}

TEST(ButtonPicture, StandsAtItsPlaceWithoutThePixelsOfTheMask) {
  Painting painting = WithPicture(button_style::Bare);
  Sketch expected = painting.Blank(Face);
  Three(expected, 19, 14);
  ExpectLooks(painting.Paint(), expected);

  painting.Properties.MaskColor = Rgb(0xFF, 0, 0xFF);
  expected.Dot(20, 15, 0x000000);
  ExpectLooks(painting.Paint(), expected);
}

TEST(ButtonPicture, IsNoneWhenNoneIsInUse) {
  Painting painting = WithPicture(button_style::Bare);
  painting.CurrentPicture = nullptr;
  ExpectLooks(painting.Paint(), painting.Blank(Face));
}

TEST(ButtonPicture, IsTheOneInUse) {
  Painting painting = WithPicture(button_style::Bare);
  painting.CurrentPicture = MakeRaster(RasterKind::Bitmap, 1, 1, {0xFF0000});
  Sketch expected = painting.Blank(Face);
  expected.Area(19, 14, 21, 16, 0xFF0000);
  ExpectLooks(painting.Paint(), expected);
}

TEST(ButtonPicture, MovesByAPixelWhenPressed) {
  Painting painting = WithPicture(button_style::Bare);
  painting.IsDown = true;
  Sketch expected = painting.Blank(Face);
  Three(expected, 20, 15);
  ExpectLooks(painting.Paint(), expected);
  painting.IsHover = true;
  ExpectLooks(painting.Paint(), expected);
}

TEST(ButtonPicture, DoesNotMoveWhenHoveredOutsideOfMenu) {
  Painting painting = WithPicture(button_style::Bare);
  painting.IsHover = true;
  Sketch expected = painting.Blank(Face);
  Three(expected, 19, 14);
  ExpectLooks(painting.Paint(), expected);
}

TEST(ButtonPicture, IsLiftedOverItsShadowInMenu) {
  Painting painting = WithPicture(button_style::Menu);
  painting.IsHover = true;
  Sketch expected = painting.Blank(0xAB9AEC);
  expected.Box(0, 0, 40, 30, Dark);
  ThreeIn(expected, 20, 15, 0xB0B0B0);
  Three(expected, 17, 12);
  ExpectLooks(painting.Paint(), expected);
}

TEST(ButtonPicture, StaysAtItsPlaceWhenMenuIsPressedOrIdle) {
  Painting painting = WithPicture(button_style::Menu);
  Sketch idle = painting.Blank(Face);
  Three(idle, 19, 14);
  ExpectLooks(painting.Paint(), idle);

  painting.IsDown = true;
  painting.IsHover = true;
  Sketch pressed = painting.Blank(0x9C8BEC);
  pressed.Box(0, 0, 40, 30, Dark);
  Three(pressed, 19, 14);
  ExpectLooks(painting.Paint(), pressed);
}

TEST(ButtonPicture, IsEmbossedWhenDisabled) {
  Painting painting = WithPicture(button_style::Bare);
  painting.Enabled = false;
  Sketch expected = painting.Blank(Face);
  ThreeIn(expected, 20, 15, Light);
  ThreeIn(expected, 19, 14, Shadow);
  ExpectLooks(painting.Paint(), expected);
}

TEST(ButtonPicture, IsEmbossedWithoutAShadowWhenMenuIsHovered) {
  Painting painting = WithPicture(button_style::Menu);
  painting.Enabled = false;
  painting.IsHover = true;
  Sketch expected = painting.Blank(0xAB9AEC);
  expected.Box(0, 0, 40, 30, Dark);
  ThreeIn(expected, 18, 13, Light);
  ThreeIn(expected, 17, 12, Shadow);
  ExpectLooks(painting.Paint(), expected);
}

TEST(ButtonPicture, IsStretchedToItsDrawnSize) {
  Painting painting = WithPicture(button_style::Bare);
  painting.Properties.PictureWidth = 4;
  painting.Properties.PictureHeight = 6;
  Sketch expected = painting.Blank(Face);
  expected.Area(18, 12, 20, 15, 0x010000);
  expected.Area(20, 12, 22, 15, 0x020000);
  expected.Area(18, 15, 20, 18, 0x030000);
  ExpectLooks(painting.Paint(), expected);
}

TEST(ButtonPicture, MayBeAnIcon) {
  Painting painting = WithPicture(button_style::Bare);
  painting.CurrentPicture =
      MakeRaster(RasterKind::Icon, 2, 1, {0xFF000000, 0x00FFFFFF});  // the mask doesn't count
  Sketch expected = painting.Blank(Face);
  expected.Area(19, 14, 20, 16, 0x000000);
  ExpectLooks(painting.Paint(), expected);
}

TEST(ButtonPicture, LiesUnderTheFocusRectangle) {
  Painting painting = WithPicture(button_style::Bare);
  painting.Properties.PictureWidth = 40;
  painting.Properties.PictureHeight = 30;
  painting.HasFocus = true;
  EXPECT_EQ(painting.Paint().At(3, 3), 0xFFFEFFFFU) << "1, 0, 0 turned to its opposite";
}

// Caption.

/// 24 by 13 in the middle of 40 by 30, whose working area is 4 to 37 and 4 to 27.
Painting WithCaption(std::int32_t style) {
  Painting painting(40, 30, style);
  painting.Properties.Caption = "Te&xt";
  painting.Properties.ForeColor = Rgb(1, 2, 3);
  return painting;
}

constexpr Box Place = {8, 9, 32, 22};

DrawnText Drawn(const Box &where, Colour ink) {
  return {"Text", 2, "MS Sans Serif", where, ink};
}

TEST(ButtonCaption, IsDrawnInForeColor) {
  for (const std::int32_t style : Styles) {
    Painting painting = WithCaption(style);
    painting.Paint();
    EXPECT_THAT(painting.Text.Drawn, ElementsAre(Drawn(Place, Rgb(1, 2, 3)))) << style;
  }
}

TEST(ButtonCaption, IsDrawnInNoColourThatHasToBeLookedUp) {
  Painting painting = WithCaption(button_style::Standard);
  painting.Properties.ForeColor = system_colour::Highlight;
  painting.Paint();
  EXPECT_THAT(painting.Text.Drawn, ElementsAre(Drawn(Place, 0x800000)));
}

TEST(ButtonCaption, IsNotDrawnWhenItIsEmpty) {
  Painting painting(40, 30, button_style::Standard);
  painting.Paint();
  painting.Enabled = false;
  painting.Paint();
  EXPECT_THAT(painting.Text.Drawn, IsEmpty());
}

TEST(ButtonCaption, MovesByAPixelWhenPressedUnlessInMenu) {
  for (const std::int32_t style : Styles) {
    Painting painting = WithCaption(style);
    painting.IsDown = true;
    painting.Paint();
    const Box place = style == button_style::Menu ? Place : Place.Moved(1, 1);
    EXPECT_THAT(painting.Text.Drawn, ElementsAre(Drawn(place, Rgb(1, 2, 3)))) << style;
  }
}

TEST(ButtonCaption, MovesForOnePaintingOnly) {
  Painting painting = WithCaption(button_style::Standard);
  painting.IsDown = true;
  painting.Paint();
  painting.Paint();
  painting.IsDown = false;
  painting.Paint();
  EXPECT_THAT(painting.Text.Drawn,
              ElementsAre(Drawn(Place.Moved(1, 1), Rgb(1, 2, 3)),
                          Drawn(Place.Moved(1, 1), Rgb(1, 2, 3)), Drawn(Place, Rgb(1, 2, 3))));
}

TEST(ButtonCaption, IsEngravedWhenDisabled) {
  Painting painting = WithCaption(button_style::Standard);
  painting.Enabled = false;
  painting.Paint();
  EXPECT_THAT(painting.Text.Drawn,
              ElementsAre(Drawn(Place.Moved(1, 1), 0xFFFFFF), Drawn(Place, 0x808080)));
}

TEST(ButtonCaption, IsEngravedAtItsMovedPlaceWhenDisabledAndPressed) {
  Painting painting = WithCaption(button_style::Standard);
  painting.Enabled = false;
  painting.IsDown = true;
  painting.Paint();
  EXPECT_THAT(painting.Text.Drawn,
              ElementsAre(Drawn(Place.Moved(2, 2), 0xFFFFFF), Drawn(Place.Moved(1, 1), 0x808080)));
}

}  // namespace
}  // namespace cvl
