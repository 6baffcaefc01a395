#include "ui/button/property_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/expect_error.h"

namespace cvl {
namespace {

using testing::ElementsAre;

TEST(PropertyStore, KeepsAValueThatDiffersFromItsDefault) {
  PropertyStore store;
  store.Write("BEVEL", std::int16_t{3}, std::int16_t{1});
  EXPECT_EQ(store.Read("BEVEL", std::int16_t{1}), 3);
}

TEST(PropertyStore, DoesNotStoreADefault) {
  PropertyStore store;
  store.Write("BEVEL", std::int16_t{1}, std::int16_t{1});
  EXPECT_TRUE(store.Values.empty());
}

TEST(PropertyStore, ForgetsAValueThatBecameTheDefault) {
  PropertyStore store;
  store.Write("URL", std::string("x"), std::string());
  store.Write("URL", std::string(), std::string());
  EXPECT_TRUE(store.Values.empty());
}

TEST(PropertyStore, ReadsTheDefaultWhereNothingIsStored) {
  EXPECT_EQ(PropertyStore().Read("URL", std::string("default")), "default");
}

TEST(PropertyStore, TellsNamesApartByTheirCase) {
  PropertyStore store;
  store.Write("url", std::string("x"), std::string());
  EXPECT_EQ(store.Read("URL", std::string()), "");
}

TEST(PropertyStore, RefusesAValueOfAnotherType) {
  PropertyStore store;
  store.Values["BEVEL"] = std::int32_t{3};
  ExpectRuntimeError(13, [&] { return store.Read("BEVEL", std::int16_t{1}); });
}

TEST(ButtonProperties, HaveTheirNamesInOrder) {
  std::vector<std::string> names;
  ForEachButtonProperty([&](const auto &property) { names.emplace_back(property.Name); });
  EXPECT_THAT(
      names,
      ElementsAre("BackColor", "ForeColor", "ShowFocusRect", "Caption", "PicturePosition",
                  "ButtonStyle", "Picture", "PictureWidth", "PictureHeight", "PictureSize",
                  "OriginalPicSizeW", "OriginalPicSizeH", "Font", "PictureHover", "MouseIcon",
                  "MousePointer", "URL", "XPColor_Pressed", "XPColor_Hover", "XPDefaultColors",
                  "SoundOver", "SoundClick", "DefCurHand", "XPShowBorderAlways", "MaskColor",
                  "TransparentBG", "BEVEL", "BEVELDEPTH"));
}

TEST(ButtonProperties, HaveTheirDefaults) {
  const ButtonProperties defaults;
  EXPECT_EQ(defaults.BackColor, 0x8000000FU);
  EXPECT_EQ(defaults.ForeColor, 0x80000012U);
  EXPECT_TRUE(defaults.ShowFocusRect);
  EXPECT_EQ(defaults.PicturePosition, 1);
  EXPECT_EQ(defaults.ButtonStyle, 2);
  EXPECT_EQ(defaults.Picture, nullptr);
  EXPECT_EQ(defaults.PictureWidth, 32);
  EXPECT_EQ(defaults.PictureHeight, 32);
  EXPECT_EQ(defaults.PictureSize, 1);
  EXPECT_EQ(defaults.OriginalPicSizeW, 32);
  EXPECT_EQ(defaults.OriginalPicSizeH, 32);
  EXPECT_EQ(defaults.Font, std::nullopt);
  EXPECT_EQ(defaults.PictureHover, nullptr);
  EXPECT_EQ(defaults.MouseIcon, nullptr);
  EXPECT_EQ(defaults.MousePointer, 0);
  EXPECT_EQ(defaults.URL, "");
  EXPECT_EQ(defaults.XPColor_Pressed, 0x80000014U);
  EXPECT_EQ(defaults.XPColor_Hover, 0x80000016U);
  EXPECT_TRUE(defaults.XPDefaultColors);
  EXPECT_EQ(defaults.SoundOver, ".\\resources\\over.wav");
  EXPECT_EQ(defaults.SoundClick, ".\\resources\\click.wav");
  EXPECT_TRUE(defaults.DefCurHand);
  EXPECT_FALSE(defaults.XPShowBorderAlways);
  EXPECT_EQ(defaults.MaskColor, 0U);
  EXPECT_FALSE(defaults.TransparentBG);
  EXPECT_EQ(defaults.BEVEL, 1);
  EXPECT_EQ(defaults.BEVELDEPTH, 8);
}

}  // namespace
}  // namespace cvl
