#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ui_button/fake_view.h"

namespace cvl {
namespace {

using testing::ElementsAre;

class ButtonMouse : public ButtonTest {};

TEST_F(ButtonMouse, PressesWithTheLeftButton) {
  Button.OnMouseDown(1, 2, 5, 6);
  EXPECT_THAT(Happened(), ElementsAre("paint down", "MouseDown 1 2 5 6"));
  EXPECT_TRUE(Button.IsDown());
}

TEST_F(ButtonMouse, PressesWithTheMiddleButtonToo) {
  Button.OnMouseDown(4, 0, 5, 6);
  EXPECT_THAT(Happened(), ElementsAre("paint down", "MouseDown 4 0 5 6"));
}

TEST_F(ButtonMouse, ClicksWhenTheButtonIsReleasedInside) {
  Button.OnMouseDown(1, 0, 5, 6);
  Happened();
  Button.OnMouseUp(1, 4, 7, 8);
  EXPECT_THAT(Happened(), ElementsAre("paint", "Click", "MouseUp 1 4 7 8"));
  EXPECT_FALSE(Button.IsDown());
}

TEST_F(ButtonMouse, NeitherPressesNorClicksWithTheRightButton) {
  Button.SetURL("http://x/");
  Happened();
  Button.OnMouseDown(2, 0, 5, 6);
  EXPECT_FALSE(Button.IsDown());
  Button.OnMouseUp(2, 0, 5, 6);
  EXPECT_THAT(Happened(), ElementsAre("MouseDown 2 0 5 6", "MouseUp 2 0 5 6"));
}

TEST_F(ButtonMouse, ReleasesWithTheRightButtonUnpainted) {
  Button.OnMouseDown(1, 0, 5, 6);
  Happened();
  Button.OnMouseUp(2, 0, 5, 6);
  EXPECT_FALSE(Button.IsDown());
  EXPECT_THAT(Happened(), ElementsAre("MouseUp 2 0 5 6"));
}

TEST_F(ButtonMouse, DoesNotClickWhenReleasedOutside) {
  struct Place {
    int X;
    int Y;
  };
  Button.SetURL("http://x/");
  for (const Place at : {Place{-1, 5}, Place{40, 5}, Place{5, -1}, Place{5, 30}}) {
    Button.OnMouseDown(1, 0, 5, 6);
    Happened();
    Button.OnMouseUp(1, 0, at.X, at.Y);
    const std::string up =
        Joined({"MouseUp 1 0 ", std::to_string(at.X), " ", std::to_string(at.Y)});
    EXPECT_THAT(Happened(), ElementsAre("paint", up));
  }
}

TEST_F(ButtonMouse, ClicksOnItsVeryEdges) {
  for (const auto &[x, y] : {std::pair(0, 0), std::pair(39, 29)}) {
    Button.OnMouseUp(1, 0, x, y);
    EXPECT_THAT(Happened(), testing::Contains("Click"));
  }
}

TEST_F(ButtonMouse, OpensItsAddressBehindTheClick) {
  Button.SetURL("http://www.chronvale.example/");
  Happened();
  Button.OnMouseUp(1, 0, 5, 6);
  EXPECT_THAT(Happened(), ElementsAre("paint", "Click", "navigate http://www.chronvale.example/",
                                      "MouseUp 1 0 5 6"));
}

TEST_F(ButtonMouse, OpensTheAddressThatTheClickHasSet) {
  Button.Click = [this] { Button.SetURL("mailto:a@b"); };
  Button.OnMouseUp(1, 0, 5, 6);
  EXPECT_THAT(Happened(),
              ElementsAre("paint", "property URL", "open mailto:a@b", "MouseUp 1 0 5 6"));
}

TEST_F(ButtonMouse, PressesAgainWithADoubleClick) {
  Button.OnMouseDown(1, 3, 5, 6);
  Button.OnMouseUp(1, 3, 5, 6);
  Button.OnMouseMove(1, 0, 9, 9);
  Happened();
  Button.OnDoubleClick();
  EXPECT_THAT(Happened(), ElementsAre("capture", "paint down hover", "MouseDown 1 3 5 6"));
}

TEST_F(ButtonMouse, DoesNotPressWithADoubleClickOfTheRightButton) {
  Button.OnMouseDown(2, 0, 5, 6);
  Happened();
  Button.OnDoubleClick();
  EXPECT_THAT(Happened(), ElementsAre("capture", "MouseDown 2 0 5 6"));
}

TEST_F(ButtonMouse, TakesFocus) {
  Button.GotFocus();
  EXPECT_TRUE(Button.HasFocus());
  EXPECT_THAT(Happened(), ElementsAre("paint focus"));
}

TEST_F(ButtonMouse, IsReleasedWhenItLosesFocus) {
  Button.GotFocus();
  Button.OnMouseDown(1, 0, 5, 6);
  Happened();
  Button.LostFocus();
  EXPECT_FALSE(Button.HasFocus());
  EXPECT_FALSE(Button.IsDown());
  EXPECT_THAT(Happened(), ElementsAre("paint"));
}

TEST_F(ButtonMouse, MayBeDisabledByItsClick) {
  Button.Click = [this] { Button.Enabled = false; };
  Button.OnMouseUp(1, 0, 5, 6);
  EXPECT_FALSE(Button.Enabled);
  EXPECT_THAT(Happened(), ElementsAre("paint", "MouseUp 1 0 5 6"));
}

TEST_F(ButtonMouse, MayGetAnotherHandlerFromItsHandler) {
  int clicks = 0;
  Button.Click = [this, &clicks] {
    Button.Click = [&clicks] { clicks += 10; };
    ++clicks;
  };
  Button.OnMouseUp(1, 0, 5, 6);
  Button.OnMouseUp(1, 0, 5, 6);
  EXPECT_EQ(clicks, 11);
}

TEST_F(ButtonMouse, WorksWithoutListeners) {
  Button.Click = nullptr;
  Button.MouseDown = nullptr;
  Button.MouseUp = nullptr;
  Button.OnMouseDown(1, 0, 5, 6);
  Button.OnMouseUp(1, 0, 5, 6);
  EXPECT_THAT(Happened(), ElementsAre("paint down", "paint"));
}

}  // namespace
}  // namespace cvl
