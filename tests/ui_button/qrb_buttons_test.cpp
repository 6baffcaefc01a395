#include "ui/button/qrb_buttons.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ui_button/fake_view.h"
#include "ui/button/hand_cursor.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QRBButtonsTest : public ButtonTest {};

// Size and surface.

TEST_F(QRBButtonsTest, GrowsFromAWidthOfFiveTo150ContainerUnits) {
  Button.Resize(5, 30);
  EXPECT_EQ(Button.Width(), 10);
  EXPECT_EQ(Button.Height(), 30);
  EXPECT_THAT(Happened(), ElementsAre("corrected 10 30", "paint"));
}

TEST_F(QRBButtonsTest, GrowsInEitherDirectionBelowTen) {
  Button.Resize(10, 9);
  EXPECT_EQ(Button.Height(), 10);
  Button.Resize(-3, 0);
  EXPECT_EQ(Button.Width(), 10);
  EXPECT_EQ(Button.Height(), 10);
}

TEST_F(QRBButtonsTest, GrowsByTheMeasureOfItsContainer) {
  View.TwipsPerPixel = 1;
  Button.Resize(5, 30);
  EXPECT_EQ(Button.Width(), 150);
}

TEST_F(QRBButtonsTest, TakesTenPixelsAsTheyAre) {
  Button.Resize(10, 10);
  EXPECT_EQ(Button.Width(), 10);
  EXPECT_THAT(Happened(), ElementsAre("paint"));
}

TEST_F(QRBButtonsTest, LaysItselfOutAnewWithItsSize) {
  Button.SetCaption("Text");
  Button.Resize(107, 57);
  EXPECT_EQ(Button.Layout().Caption, (Box{42, 22, 66, 35}));
  EXPECT_EQ(Button.Layout().Focus, (Box{3, 3, 104, 54}));
}

TEST_F(QRBButtonsTest, HasAShapeInStyleRoundedOnly) {
  EXPECT_EQ(Button.Shape(), std::nullopt);
  Button.SetButtonStyle(button_style::Rounded);
  ASSERT_TRUE(Button.Shape().has_value());
  EXPECT_FALSE(Button.Shape()->Contains(0, 0));
  EXPECT_FALSE(Button.Shape()->Contains(39, 28));
  EXPECT_TRUE(Button.Shape()->Contains(38, 28));
  Button.Resize(50, 30);
  EXPECT_TRUE(Button.Shape()->Contains(39, 28));
  EXPECT_FALSE(Button.Shape()->Contains(49, 28));
  Button.SetButtonStyle(button_style::Flat);
  EXPECT_EQ(Button.Shape(), std::nullopt);
}

TEST_F(QRBButtonsTest, RepaintsWhenItsSurroundingsChange) {
  View.IsDefault = true;
  Button.AmbientChanged();
  EXPECT_EQ(Button.Surface().At(39, 29), 0xFF000000U);
  EXPECT_THAT(Happened(), ElementsAre("paint"));

  View.IsDefault = false;
  View.Designs = true;
  Button.SetButtonStyle(button_style::Flat);
  EXPECT_EQ(Button.Surface().At(0, 0), 0xFFFFFFFFU);
}

TEST_F(QRBButtonsTest, LaysItselfOutWhenItsFontChanges) {
  Button.SetCaption("Text");
  View.MeasuredWidths.clear();
  Happened();
  Button.FontChanged();
  EXPECT_THAT(View.MeasuredWidths, ElementsAre(33));
  EXPECT_THAT(Happened(), ElementsAre("paint"));
}

TEST_F(QRBButtonsTest, ShowsWhatLiesBehind) {
  View.Behind = [] { return Backdrop{PictureOf(100, 100), 0, 0}; };
  Button.SetTransparentBG(true);
  EXPECT_EQ(Button.Surface().At(20, 15), 0xFF000001U);
}

TEST_F(QRBButtonsTest, WorksUnseen) {
  QRBButtons unseen(Loop, "unseen");
  EXPECT_EQ(unseen.Width(), 10);
  EXPECT_EQ(unseen.Height(), 10);
  EXPECT_EQ(unseen.hWnd(), 0U);
  unseen.SetCaption("Text");
  unseen.SetURL("http://x/");
  unseen.Resize(40, 30);
  unseen.OnMouseMove(0, 0, 5, 5);
  unseen.OnMouseDown(1, 0, 5, 5);
  unseen.OnDoubleClick();
  unseen.OnMouseUp(1, 0, 5, 5);
  unseen.SetTransparentBG(true);
  EXPECT_EQ(unseen.Surface().At(20, 15), 0xFFAB9AECU) << "hovered";
  EXPECT_EQ(unseen.Caption(), "Text");
}

TEST_F(QRBButtonsTest, IsLaidOutAndShownByTheViewThatItGets) {
  QRBButtons button(Loop, "Text");
  button.Resize(107, 57);
  Happened();
  View.Drawn.clear();
  button.Attach(&View);
  EXPECT_EQ(button.Layout().Caption, (Box{42, 22, 66, 35}));
  EXPECT_EQ(View.Drawn.size(), 1U);
  EXPECT_EQ(button.hWnd(), 4711U);

  button.Attach(nullptr);
  Happened();
  button.Refresh();
  EXPECT_THAT(Happened(), IsEmpty());
}

TEST_F(QRBButtonsTest, IsAControl) {
  Control &control = Button;
  EXPECT_TRUE(control.Visible);
  control.Enabled = false;
  EXPECT_FALSE(Button.Enabled);
}

TEST_F(QRBButtonsTest, PaintsOnceWhenItWasDisabledThroughItsField) {
  Control &control = Button;
  Button.RefreshIfStale();
  EXPECT_THAT(Happened(), IsEmpty());
  control.Enabled = false;
  Button.RefreshIfStale();
  EXPECT_THAT(Happened(), ElementsAre("paint"));
  Button.RefreshIfStale();
  EXPECT_THAT(Happened(), IsEmpty());
}

// Writes.

TEST_F(QRBButtonsTest, TellsAndRepaintsWithEachWriteThatShows) {
  Button.SetBackColor(1);
  EXPECT_THAT(Happened(), ElementsAre("property BackColor", "paint"));
  Button.SetForeColor(1);
  EXPECT_THAT(Happened(), ElementsAre("property ForeColor", "paint"));
  Button.SetShowFocusRect(false);
  EXPECT_THAT(Happened(), ElementsAre("property ShowFocusRect", "paint"));
  Button.SetXPColor_Pressed(1);
  EXPECT_THAT(Happened(), ElementsAre("property XPColor_Pressed", "paint"));
  Button.SetXPColor_Hover(1);
  EXPECT_THAT(Happened(), ElementsAre("property XPColor_Hover", "paint"));
  Button.SetXPDefaultColors(false);
  EXPECT_THAT(Happened(), ElementsAre("property XPDefaultColors", "paint"));
  Button.SetXPShowBorderAlways(true);
  EXPECT_THAT(Happened(), ElementsAre("property XPShowBorderAlways", "paint"));
  Button.SetMaskColor(1);
  EXPECT_THAT(Happened(), ElementsAre("property MaskColor", "paint"));
  Button.SetTransparentBG(true);
  EXPECT_THAT(Happened(), ElementsAre("property TransparentBG", "paint"));
  Button.SetBEVEL(3);
  EXPECT_THAT(Happened(), ElementsAre("property BEVEL", "paint"));
  Button.SetBEVELDEPTH(3);
  EXPECT_THAT(Happened(), ElementsAre("property BEVELDEPTH", "paint"));
  Button.SetEnabled(false);
  EXPECT_THAT(Happened(), ElementsAre("property Enabled", "paint"));
}

TEST_F(QRBButtonsTest, OnlyTellsOfAWriteThatDoesNotShow) {
  Button.SetURL("x");
  EXPECT_THAT(Happened(), ElementsAre("property URL"));
  Button.SetSoundOver("x");
  EXPECT_THAT(Happened(), ElementsAre("property SoundOver"));
  Button.SetSoundClick("x");
  EXPECT_THAT(Happened(), ElementsAre("property SoundClick"));
  Button.SetMousePointer(2);
  EXPECT_THAT(Happened(), ElementsAre("property MousePointer"));
  Button.SetMouseIcon(PictureOf(1, 1));
  EXPECT_THAT(Happened(), ElementsAre("property MouseIcon"));
  Button.SetDefCurHand(false);
  EXPECT_THAT(Happened(), ElementsAre("property DefCurHand"));
}

TEST_F(QRBButtonsTest, LaysItselfOutWithEachWriteThatMovesSomething) {
  Button.SetCaption("Text");
  const std::vector<std::pair<const char *, std::function<void()>>> writes = {
      {"Caption", [&] { Button.SetCaption("Other"); }},
      {"Font", [&] { Button.SetFont({.Name = "Arial"}); }},
      {"PicturePosition", [&] { Button.SetPicturePosition(2); }},
      {"Picture", [&] { Button.SetPicture(PictureOf(3, 3)); }},
      {"PictureHover", [&] { Button.SetPictureHover(PictureOf(3, 3)); }},
      {"PictureWidth", [&] { Button.SetPictureWidth(7); }},
      {"PictureHeight", [&] { Button.SetPictureHeight(7); }},
      {"PictureSize", [&] { Button.SetPictureSize(0); }},
      {"OriginalPicSizeW", [&] { Button.SetOriginalPicSizeW(7); }},
      {"OriginalPicSizeH", [&] { Button.SetOriginalPicSizeH(7); }},
      {"ButtonStyle", [&] { Button.SetButtonStyle(1); }},
  };
  for (const auto &[name, write] : writes) {
    Happened();
    View.MeasuredWidths.clear();
    write();
    EXPECT_THAT(Happened(), ElementsAre(Joined({"property ", name}), "paint"));
    EXPECT_THAT(View.MeasuredWidths, ElementsAre(33)) << name;
  }
}

TEST_F(QRBButtonsTest, HasThePropertySetWhenItTellsOfIt) {
  std::string seen;
  View.Look = [&] {
    seen = Button.Caption();
    return std::string();
  };
  Button.SetCaption("new");
  EXPECT_EQ(seen, "new");
}

TEST_F(QRBButtonsTest, SwitchesTransparencyOffWithStyleRounded) {
  Button.SetTransparentBG(true);
  Button.SetButtonStyle(button_style::Menu);
  EXPECT_TRUE(Button.TransparentBG());
  Button.SetButtonStyle(button_style::Rounded);
  EXPECT_FALSE(Button.TransparentBG());
}

TEST_F(QRBButtonsTest, MayBecomeTransparentAgainInStyleRounded) {
  Button.SetButtonStyle(button_style::Rounded);
  Button.SetTransparentBG(true);
  EXPECT_TRUE(Button.TransparentBG());
}

TEST_F(QRBButtonsTest, UsesTheFontOfItsContainerUntilItHasItsOwn) {
  View.Font.Name = "Tahoma";
  EXPECT_EQ(Button.Font().Name, "Tahoma");
  Button.SetCaption("Text");
  EXPECT_EQ(View.Drawn.back().FontName, "Tahoma");
  Button.SetFont({.Name = "Arial", .Bold = true});
  EXPECT_EQ(Button.Font().Name, "Arial");
  EXPECT_EQ(View.Drawn.back().FontName, "Arial");
  Button.SetFont(View.Font);
  View.Font.Name = "Verdana";
  EXPECT_EQ(Button.Font().Name, "Verdana");
}

// Sizes of the picture.

struct DrawnSize {
  int Width;
  int Height;
  bool operator==(const DrawnSize &) const = default;
};

DrawnSize SizeOf(const QRBButtons &button) {
  return {button.PictureWidth(), button.PictureHeight()};
}

TEST_F(QRBButtonsTest, SizesItsPicture) {
  Button.SetPicture(PictureOf(20, 24));
  EXPECT_EQ(SizeOf(Button), (DrawnSize{32, 32}));
  Button.SetPictureSize(picture_size::Small);
  EXPECT_EQ(SizeOf(Button), (DrawnSize{16, 16}));
  Button.SetPictureSize(picture_size::Large);
  EXPECT_EQ(SizeOf(Button), (DrawnSize{64, 64}));
  Button.SetPictureSize(picture_size::Own);
  EXPECT_EQ(SizeOf(Button), (DrawnSize{20, 24}));
  Button.SetPictureSize(picture_size::Normal);
  EXPECT_EQ(SizeOf(Button), (DrawnSize{32, 32}));
}

TEST_F(QRBButtonsTest, KeepsTheSizeThatItWasGiven) {
  Button.SetPictureSize(picture_size::Custom);
  Button.SetPictureWidth(7);
  Button.SetPictureHeight(9);
  Button.SetPicture(PictureOf(20, 24));
  Button.SetPictureSize(picture_size::Custom);
  EXPECT_EQ(SizeOf(Button), (DrawnSize{7, 9}));
  Button.SetPictureSize(5);
  EXPECT_EQ(SizeOf(Button), (DrawnSize{7, 9}));
}

TEST_F(QRBButtonsTest, GivesAPictureItsOwnSize) {
  Button.SetPictureSize(picture_size::Own);
  EXPECT_EQ(SizeOf(Button), (DrawnSize{32, 32})) << "there is none";
  Button.SetPicture(PictureOf(20, 24));
  EXPECT_EQ(SizeOf(Button), (DrawnSize{20, 24}));
  EXPECT_EQ(Button.OriginalPicSizeW(), 20);
  EXPECT_EQ(Button.OriginalPicSizeH(), 24);
  Button.SetPicture(nullptr);
  EXPECT_EQ(SizeOf(Button), (DrawnSize{32, 32}));
  EXPECT_EQ(Button.OriginalPicSizeW(), 32);
}

TEST_F(QRBButtonsTest, ShowsANewPictureAtOnce) {
  Button.SetPicture(PictureOf(1, 1));
  EXPECT_EQ(Button.CurrentPicture(), Button.Picture());
  Button.SetMaskColor(0xFF);
  EXPECT_EQ(Button.Surface().At(20, 15), 0xFF000001U);
}

// Cursor.

TEST_F(QRBButtonsTest, PointsWithItsHandAtFirst) {
  EXPECT_TRUE(Button.DefCurHand());
  EXPECT_EQ(Button.MouseIcon(), nullptr);
  EXPECT_EQ(Button.MousePointer(), 0);
  EXPECT_EQ(Button.Cursor(), HandCursor());
}

TEST_F(QRBButtonsTest, MakesTheHandItsMouseIcon) {
  Button.SetDefCurHand(true);
  EXPECT_EQ(Button.MouseIcon(), HandCursor());
  EXPECT_EQ(Button.MousePointer(), 99);
  EXPECT_EQ(Button.Cursor(), HandCursor());
}

TEST_F(QRBButtonsTest, ClearsItsMouseIconWithoutTheHand) {
  Button.SetDefCurHand(true);
  Button.SetDefCurHand(false);
  EXPECT_EQ(Button.MouseIcon(), nullptr);
  EXPECT_EQ(Button.MousePointer(), 99);
  EXPECT_EQ(Button.Cursor(), nullptr);
}

TEST_F(QRBButtonsTest, PointsWithAPictureOfItsOwn) {
  Button.SetDefCurHand(false);
  Button.SetMouseIcon(PictureOf(3, 3));
  EXPECT_EQ(Button.Cursor(), nullptr);
  Button.SetMousePointer(99);
  EXPECT_EQ(Button.Cursor(), Button.MouseIcon());
  Button.SetMousePointer(11);
  EXPECT_EQ(Button.Cursor(), nullptr);
}

TEST(HandCursor, IsAnIconThatPointsWithItsFinger) {
  const RasterRef hand = HandCursor();
  EXPECT_EQ(hand->Kind, RasterKind::Icon);
  EXPECT_EQ(hand->Width, 32);
  EXPECT_EQ(hand->Height, 32);
  EXPECT_EQ(hand->Pixels.size(), 32U * 32U);
  EXPECT_NE(hand->At(hand->HotX, hand->HotY), 0U);
  EXPECT_EQ(hand->At(31, 31), 0U);
}

TEST_F(QRBButtonsTest, TellsItsVersion) {
  EXPECT_EQ(QRBButtons::Version(), "5.1.1");
}

}  // namespace
}  // namespace cvl
