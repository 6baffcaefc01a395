#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ui_button/fake_view.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ButtonHover : public ButtonTest {
 protected:
  void Enter() {
    View.PointerIsHere = true;
    Button.OnMouseMove(0, 0, 5, 6);
  }

  /// The pointer leaves, and the timer finds out.
  void Leave() {
    View.PointerIsHere = false;
    Loop.Advance(10);
  }

  static RasterRef Dot(std::uint32_t colour) {
    return MakeRaster(RasterKind::Bitmap, 1, 1, {colour});
  }
};

TEST_F(ButtonHover, BeginsWithTheFirstMoveInside) {
  Button.OnMouseMove(1, 2, 5, 6);
  EXPECT_THAT(Happened(),
              ElementsAre("MouseIn 2", "paint hover", "run events", "MouseMove 1 2 5 6"));
  EXPECT_TRUE(Button.IsHover());
}

TEST_F(ButtonHover, BeginsOnce) {
  Enter();
  Happened();
  Button.OnMouseMove(0, 0, 7, 8);
  EXPECT_THAT(Happened(), ElementsAre("MouseMove 0 0 7 8"));
}

TEST_F(ButtonHover, DoesNotBeginOutside) {
  Button.OnMouseMove(1, 0, 40, 6);
  Button.OnMouseMove(1, 0, 5, 30);
  Button.OnMouseMove(1, 0, -1, 6);
  EXPECT_THAT(Happened(),
              ElementsAre("MouseMove 1 0 40 6", "MouseMove 1 0 5 30", "MouseMove 1 0 -1 6"));
  EXPECT_FALSE(Button.IsHover());
}

TEST_F(ButtonHover, HasBegunWhenMouseInIsRaised) {
  bool was_hover = false;
  Button.MouseIn = [&](int) { was_hover = Button.IsHover(); };
  Enter();
  EXPECT_TRUE(was_hover);
}

TEST_F(ButtonHover, LastsAsLongAsThePointerStays) {
  Enter();
  Happened();
  Loop.Advance(1000);
  EXPECT_TRUE(Button.IsHover());
  EXPECT_THAT(Happened(), IsEmpty()) << "a tick paints only on leaving";
}

TEST_F(ButtonHover, EndsWithTheTickThatFindsThePointerElsewhere) {
  Enter();
  Happened();
  View.PointerIsHere = false;
  Loop.Advance(9);
  EXPECT_THAT(Happened(), IsEmpty());
  Loop.Advance(1);
  EXPECT_THAT(Happened(), ElementsAre("MouseOut 0", "paint"));
  EXPECT_FALSE(Button.IsHover());
}

TEST_F(ButtonHover, HasItsTimerRunningOnlyMeanwhile) {
  Leave();
  EXPECT_THAT(Happened(), IsEmpty());
  Enter();
  Leave();
  Happened();
  Loop.Advance(1000);
  EXPECT_THAT(Happened(), IsEmpty());
}

TEST_F(ButtonHover, EndsWithTheShiftStateOfTheLastPress) {
  Button.OnMouseDown(1, 3, 5, 6);
  Button.OnMouseUp(1, 0, 5, 6);
  Enter();
  Happened();
  Leave();
  EXPECT_THAT(Happened(), ElementsAre("MouseOut 3", "paint"));
}

TEST_F(ButtonHover, BeginsAgain) {
  Enter();
  Leave();
  Happened();
  Enter();
  EXPECT_THAT(Happened(),
              ElementsAre("MouseIn 0", "paint hover", "run events", "MouseMove 0 0 5 6"));
}

TEST_F(ButtonHover, LooksReleasedButStaysHeldWhenDraggedOff) {
  Enter();
  Button.OnMouseDown(1, 0, 5, 6);
  Happened();
  Leave();
  EXPECT_THAT(Happened(), ElementsAre("MouseOut 0", "paint down", "paint"));
  EXPECT_TRUE(Button.IsDown());
}

TEST_F(ButtonHover, LooksPressedAgainOnlyWithTheNextMoveInside) {
  Enter();
  Button.OnMouseDown(1, 0, 5, 6);
  Leave();
  Happened();
  const std::uint32_t released = Button.Surface().At(0, 0);
  View.PointerIsHere = true;
  Loop.Advance(100);
  EXPECT_EQ(Button.Surface().At(0, 0), released);
  Button.OnMouseMove(1, 0, 50, 6);
  EXPECT_EQ(Button.Surface().At(0, 0), released);
  Happened();

  Button.OnMouseMove(1, 0, 5, 6);
  EXPECT_THAT(Happened(),
              ElementsAre("MouseIn 0", "paint down hover", "run events", "MouseMove 1 0 5 6"));
  EXPECT_EQ(released, 0xFFFFFFFFU);
  EXPECT_EQ(Button.Surface().At(0, 0), 0xFF808080U);
}

TEST_F(ButtonHover, ShowsTheHoverPicture) {
  Button.SetPicture(Dot(1));
  Button.SetPictureHover(Dot(2));
  EXPECT_EQ(Button.CurrentPicture(), Button.Picture());
  Enter();
  EXPECT_EQ(Button.CurrentPicture(), Button.PictureHover());
  Leave();
  EXPECT_EQ(Button.CurrentPicture(), Button.Picture());
}

TEST_F(ButtonHover, KeepsThePictureWhenThereIsNoneForIt) {
  Button.SetPicture(Dot(1));
  Enter();
  EXPECT_EQ(Button.CurrentPicture(), Button.Picture());
}

TEST_F(ButtonHover, HasTheHoverPictureWhenMouseInIsRaised) {
  Button.SetPictureHover(Dot(2));
  RasterRef shown;
  Button.MouseIn = [&](int) { shown = Button.CurrentPicture(); };
  Enter();
  EXPECT_EQ(shown, Button.PictureHover());
}

TEST_F(ButtonHover, TakesANewPictureOnlyWhereItIsShown) {
  Button.SetPictureHover(Dot(2));
  Enter();
  Button.SetPicture(Dot(3));
  EXPECT_EQ(Button.CurrentPicture(), Button.PictureHover());
  Leave();
  EXPECT_EQ(Button.CurrentPicture(), Button.Picture());
}

TEST_F(ButtonHover, LetsEventsRunInWhichTheButtonMayChange) {
  View.OnRunPendingEvents = [this] {
    Button.SetCaption("changed");
    Button.Attach(nullptr);
  };
  Enter();
  EXPECT_EQ(Button.Caption(), "changed");
}

TEST_F(ButtonHover, EndsWhenNobodySeesTheButtonAnyMore) {
  Enter();
  Button.Attach(nullptr);
  Loop.Advance(10);
  EXPECT_FALSE(Button.IsHover());
}

TEST_F(ButtonHover, LeavesNoTimerBehind) {
  {
    QRBButtons other(Loop, "other");
    other.OnMouseMove(0, 0, 1, 1);
  }
  Loop.Advance(100);
}

}  // namespace
}  // namespace cvl
