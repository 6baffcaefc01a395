#include "ui/button/button_layout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ui_button/fake_text.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A button of 107 by 57: its working area is 4 to 104 across and 4 to 54 down. "Text" takes
/// 24 by 13, the picture 20 by 10.
class ButtonLayoutTest : public testing::Test {
 protected:
  ButtonLayoutTest() {
    Properties.Caption = "Text";
    Properties.Picture = MakeRaster(RasterKind::Bitmap, 1, 1, {0});
    Properties.PictureWidth = 20;
    Properties.PictureHeight = 10;
  }

  ButtonLayout Lay(int width = 107, int height = 57) {
    return CalcLayout(width, height, Properties, {}, Text);
  }

  ButtonProperties Properties;
  FakeText Text;
};

TEST_F(ButtonLayoutTest, CentresTheCaptionWhenThereIsNoPicture) {
  Properties.Picture = nullptr;
  EXPECT_EQ(Lay().Caption, (Box{42, 22, 66, 35}));
}

TEST_F(ButtonLayoutTest, CentresThePictureWhenThereIsNoCaption) {
  Properties.Caption = "";
  EXPECT_EQ(Lay().Picture, (Box{44, 24, 64, 34}));
  EXPECT_THAT(Text.MeasuredWidths, IsEmpty());
}

TEST_F(ButtonLayoutTest, MeasuresTheCaptionInTheWorkingArea) {
  Lay();
  EXPECT_THAT(Text.MeasuredWidths, ElementsAre(100));
}

TEST_F(ButtonLayoutTest, PutsThePictureToTheLeft) {
  Properties.PicturePosition = 1;
  const ButtonLayout layout = Lay();
  EXPECT_EQ(layout.Picture, (Box{30, 24, 50, 34}));
  EXPECT_EQ(layout.Caption, (Box{54, 22, 78, 35}));
}

TEST_F(ButtonLayoutTest, PutsThePictureToTheRight) {
  Properties.PicturePosition = 2;
  const ButtonLayout layout = Lay();
  EXPECT_EQ(layout.Caption, (Box{30, 22, 54, 35}));
  EXPECT_EQ(layout.Picture, (Box{58, 24, 78, 34}));
}

TEST_F(ButtonLayoutTest, PutsThePictureAbove) {
  Properties.PicturePosition = 0;
  const ButtonLayout layout = Lay();
  // 10, 4 and 13 are 27 of 50.
  EXPECT_EQ(layout.Picture, (Box{44, 15, 64, 25}));
  EXPECT_EQ(layout.Caption, (Box{42, 29, 66, 42}));
}

TEST_F(ButtonLayoutTest, PutsThePictureBelow) {
  Properties.PicturePosition = 3;
  const ButtonLayout layout = Lay();
  EXPECT_EQ(layout.Caption, (Box{42, 15, 66, 28}));
  EXPECT_EQ(layout.Picture, (Box{44, 32, 64, 42}));
}

TEST_F(ButtonLayoutTest, TakesAnyOtherPositionForTheLeft) {
  Properties.PicturePosition = 1;
  const ButtonLayout left = Lay();
  for (const std::int32_t position : {-1, 4, INT32_MAX, INT32_MIN}) {
    Properties.PicturePosition = position;
    EXPECT_EQ(Lay().Picture, left.Picture) << position;
    EXPECT_EQ(Lay().Caption, left.Caption) << position;
  }
}

TEST_F(ButtonLayoutTest, HalvesWholeNumbersTowardsZero) {
  Properties.Caption = "";
  Properties.PictureWidth = 99;  // one pixel is left over
  EXPECT_EQ(Lay().Picture.Left, 4);
  Properties.PictureWidth = 103;  // three are missing
  EXPECT_EQ(Lay().Picture.Left, 3);
}

TEST_F(ButtonLayoutTest, LetsAGroupThatIsTooLargeStickOutOnBothSides) {
  Properties.PictureWidth = 200;  // 228 of 100 pixels
  const ButtonLayout layout = Lay();
  EXPECT_EQ(layout.Picture, (Box{-60, 24, 140, 34}));
  EXPECT_EQ(layout.Caption, (Box{144, 22, 168, 35}));
}

TEST_F(ButtonLayoutTest, GivesABrokenCaptionItsLines) {
  Properties.Picture = nullptr;
  Properties.Caption = "Check for Updates";  // nine characters fit into 60 pixels
  EXPECT_EQ(Lay(67, 57).Caption, (Box{7, 16, 61, 42}));
}

TEST_F(ButtonLayoutTest, MeasuresWithoutTheMarkOfTheAccessKey) {
  Properties.Picture = nullptr;
  Properties.Caption = "Te&xt";
  EXPECT_EQ(Lay().Caption.Width(), 24);
}

TEST_F(ButtonLayoutTest, PutsTheShadowOnePixelFromThePicture) {
  const ButtonLayout layout = Lay();
  EXPECT_EQ(layout.Shadow, (Box{31, 25, 51, 35}));
}

TEST_F(ButtonLayoutTest, InsetsTheFocusRectangleByThree) {
  EXPECT_EQ(Lay().Focus, (Box{3, 3, 104, 54}));
}

TEST_F(ButtonLayoutTest, KeepsAPlaceForAPictureThatOnlyHoveringBrings) {
  Properties.Picture = nullptr;
  EXPECT_EQ(Lay().Picture, (Box{44, 24, 64, 34}));
}

TEST_F(ButtonLayoutTest, SurvivesSizesBeyondAllMeasure) {
  Properties.PictureWidth = INT32_MAX;
  Properties.PictureHeight = INT32_MIN;
  const ButtonLayout layout = Lay();
  EXPECT_EQ(layout.Picture.Width(), 32767);
  EXPECT_EQ(layout.Picture.Height(), 0);
}

}  // namespace
}  // namespace cvl
