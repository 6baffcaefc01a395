// What a button stores of its properties, and what it reads back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/expect_error.h"
#include "tests/ui_button/fake_view.h"
#include "ui/button/qrb_buttons.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ButtonStoreTest : public ButtonTest {};

TEST_F(ButtonStoreTest, StoresNothingWhenItIsNew) {
  PropertyStore store;
  QRBButtons(Loop, "cfgsvrOK").WriteProperties(store);
  EXPECT_THAT(store.Values, IsEmpty());
}

TEST_F(ButtonStoreTest, IsCaptionedWithItsNameByDefault) {
  EXPECT_EQ(QRBButtons(Loop, "SelTimeZone").Caption(), "SelTimeZone");
  Button.ReadProperties({});
  EXPECT_EQ(Button.Caption(), "cfgsvrOK");
}

void SetAll(QRBButtons &button) {
  button.SetBackColor(1);
  button.SetForeColor(2);
  button.SetShowFocusRect(false);
  button.SetCaption("&All");
  button.SetPicturePosition(3);
  button.SetButtonStyle(1);
  button.SetPicture(PictureOf(3, 4));
  button.SetPictureSize(3);
  button.SetPictureWidth(5);
  button.SetPictureHeight(6);
  button.SetFont({.Name = "Arial", .Points = 12, .Bold = true});
  button.SetPictureHover(PictureOf(7, 8));
  button.SetURL("mailto:x");
  button.SetXPColor_Pressed(3);
  button.SetXPColor_Hover(4);
  button.SetXPDefaultColors(false);
  button.SetSoundOver("over");
  button.SetSoundClick("");
  button.SetDefCurHand(false);
  button.SetMouseIcon(PictureOf(1, 1));
  button.SetMousePointer(2);
  button.SetXPShowBorderAlways(true);
  button.SetMaskColor(5);
  button.SetTransparentBG(true);
  button.SetBEVEL(6);
  button.SetBEVELDEPTH(7);
  button.SetEnabled(false);
}

TEST_F(ButtonStoreTest, StoresWhatDiffersFromTheDefaults) {
  SetAll(Button);
  PropertyStore store;
  Button.WriteProperties(store);
  EXPECT_EQ(store.Values.size(), 29U);
  EXPECT_EQ(store.Read("BEVELDEPTH", std::int16_t{0}), 7);
  EXPECT_EQ(store.Read("OriginalPicSizeH", std::int32_t{0}), 4);
  EXPECT_EQ(store.Read("Enabled", true), false);
  EXPECT_EQ(store.Read("SoundClick", std::string("x")), "");
}

TEST_F(ButtonStoreTest, ReadsWhatItStored) {
  SetAll(Button);
  PropertyStore store;
  Button.WriteProperties(store);
  QRBButtons other(Loop, "other");
  other.ReadProperties(store);

  PropertyStore again;
  other.WriteProperties(again);
  EXPECT_EQ(again.Values, store.Values);
  EXPECT_EQ(other.AccessKey(), "a");
  EXPECT_EQ(other.CurrentPicture(), Button.Picture());
  EXPECT_FALSE(other.Enabled);
  EXPECT_EQ(other.Font().Points, 12);
}

TEST_F(ButtonStoreTest, ReadsDefaultsForWhatIsNotStored) {
  SetAll(Button);
  Button.ReadProperties({});
  PropertyStore store;
  Button.WriteProperties(store);
  EXPECT_THAT(store.Values, IsEmpty());
  EXPECT_TRUE(Button.Enabled);
  EXPECT_EQ(Button.CurrentPicture(), nullptr);
}

TEST_F(ButtonStoreTest, StoresOnlyTheOnePropertyThatWasWritten) {
  QRBButtons button(Loop, "b");
  button.SetButtonStyle(0);
  PropertyStore store;
  button.WriteProperties(store);
  ASSERT_EQ(store.Values.size(), 1U);
  EXPECT_EQ(store.Read("ButtonStyle", std::int32_t{2}), 0);
}

TEST_F(ButtonStoreTest, KeepsTransparencyOfALoadedStyleRoundedUntilTheStyleIsWritten) {
  PropertyStore store;
  store.Values["ButtonStyle"] = std::int32_t{3};
  store.Values["TransparentBG"] = true;
  Button.ReadProperties(store);
  EXPECT_TRUE(Button.TransparentBG());
  EXPECT_TRUE(Button.Shape().has_value());
  Button.SetButtonStyle(button_style::Rounded);
  EXPECT_FALSE(Button.TransparentBG());
}

TEST_F(ButtonStoreTest, StaysAsItIsWhenAStoredValueIsOfAnotherType) {
  PropertyStore store;
  store.Values["Caption"] = std::string("new");
  store.Values["Enabled"] = std::string("no");
  ExpectRuntimeError(13, [&] { Button.ReadProperties(store); });
  EXPECT_EQ(Button.Caption(), "");
}

}  // namespace
}  // namespace cvl
