#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ui_button/fake_view.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int LetterA = 65;

class SpaceBar : public ButtonTest {};
class OtherKey : public ButtonTest {};
class AccessKeyOfAButton : public ButtonTest {};

TEST_F(SpaceBar, PressesTheButton) {
  Button.OnKeyDown(SpaceKey, 1);
  EXPECT_THAT(Happened(), ElementsAre("paint down hover", "KeyDown 32 1"));
  EXPECT_TRUE(Button.IsDown());
  EXPECT_TRUE(Button.IsHover());
  EXPECT_TRUE(Button.SpaceLatch());
}

TEST_F(SpaceBar, PressesOnceWhileItIsHeld) {
  Button.OnKeyDown(SpaceKey, 0);
  Happened();
  Button.OnKeyDown(SpaceKey, 0);
  EXPECT_THAT(Happened(), ElementsAre("KeyDown 32 0"));
}

TEST_F(SpaceBar, ClicksWhenItIsReleased) {
  Button.OnKeyDown(SpaceKey, 0);
  Happened();
  Button.OnKeyUp(SpaceKey, 0);
  EXPECT_THAT(Happened(), ElementsAre("paint", "paint", "Click", "MouseUp 1 0 0 0", "KeyUp 32 0"));
  EXPECT_FALSE(Button.IsDown());
  EXPECT_FALSE(Button.IsHover());
  EXPECT_FALSE(Button.SpaceLatch());
}

TEST_F(SpaceBar, OpensTheAddressTwice) {
  Button.SetURL("http://x/");
  Button.OnKeyDown(SpaceKey, 0);
  Happened();
  Button.OnKeyUp(SpaceKey, 0);
  EXPECT_THAT(Happened(), ElementsAre("navigate http://x/", "paint", "paint", "Click",
                                      "navigate http://x/", "MouseUp 1 0 0 0", "KeyUp 32 0"));
}

TEST_F(SpaceBar, IsPassedOverBehindAnotherKeyThatIsHeld) {
  Button.OnKeyDown(LetterA, 0);
  Button.OnKeyDown(SpaceKey, 0);
  EXPECT_THAT(Happened(), ElementsAre("KeyDown 65 0", "KeyDown 32 0"));
  EXPECT_FALSE(Button.IsDown());
}

TEST_F(SpaceBar, PressesAgainAfterAnyKeyIsReleased) {
  Button.OnKeyDown(LetterA, 0);
  Button.OnKeyUp(LetterA, 0);
  Happened();
  Button.OnKeyDown(SpaceKey, 0);
  EXPECT_THAT(Happened(), ElementsAre("paint down hover", "KeyDown 32 0"));
}

TEST_F(SpaceBar, DoesNotStartTheTimer) {
  Button.OnKeyDown(SpaceKey, 0);
  Happened();
  Loop.Advance(100);
  EXPECT_THAT(Happened(), IsEmpty());
}

TEST_F(SpaceBar, KeepsTheMouseFromBeginningToHover) {
  Button.OnKeyDown(SpaceKey, 0);
  Happened();
  Button.OnMouseMove(0, 0, 5, 6);
  EXPECT_THAT(Happened(), ElementsAre("MouseMove 0 0 5 6"));
}

TEST_F(SpaceBar, IsHeldWhileItsClickIsHandled) {
  bool was_latched = false;
  Button.Click = [&] { was_latched = Button.SpaceLatch(); };
  Button.OnKeyDown(SpaceKey, 0);
  Button.OnKeyUp(SpaceKey, 0);
  EXPECT_TRUE(was_latched);
}

TEST_F(SpaceBar, ClicksEvenWhenItWentDownElsewhere) {
  Button.OnKeyUp(SpaceKey, 0);
  EXPECT_THAT(Happened(), testing::Contains("Click"));
}

TEST_F(OtherKey, RaisesItsEventsAndNothingElse) {
  Button.OnKeyDown(LetterA, 2);
  Button.OnKeyPress(97);
  Button.OnKeyUp(LetterA, 3);
  EXPECT_THAT(Happened(), ElementsAre("KeyDown 65 2", "KeyPress 97", "KeyUp 65 3"));
}

TEST_F(OtherKey, SetsTheLatchAndClearsIt) {
  bool latched_when_raised = false;
  Button.KeyDown = [&](int, int) { latched_when_raised = Button.SpaceLatch(); };
  bool latched_at_the_end = true;
  Button.KeyUp = [&](int, int) { latched_at_the_end = Button.SpaceLatch(); };
  Button.OnKeyDown(LetterA, 0);
  Button.OnKeyUp(LetterA, 0);
  EXPECT_TRUE(latched_when_raised);
  EXPECT_FALSE(latched_at_the_end);
}

TEST_F(OtherKey, MayBeReleasedWhileSpaceHoldsTheButton) {
  Button.OnKeyDown(SpaceKey, 0);
  Button.OnKeyUp(LetterA, 0);
  EXPECT_TRUE(Button.IsDown());
  EXPECT_FALSE(Button.SpaceLatch());
}

TEST_F(AccessKeyOfAButton, ComesFromItsCaption) {
  EXPECT_EQ(Button.AccessKey(), "");
  Button.SetCaption("&Time Zone");
  EXPECT_EQ(Button.AccessKey(), "t");
  Button.SetCaption("Check && test");
  EXPECT_EQ(Button.AccessKey(), "");
}

TEST_F(AccessKeyOfAButton, ComesFromItsNameAtFirst) {
  EXPECT_EQ(QRBButtons(Loop, "a&B").AccessKey(), "b");
}

TEST_F(AccessKeyOfAButton, Clicks) {
  Button.SetURL("http://x/");
  Happened();
  Button.AccessKeyPressed();
  EXPECT_THAT(Happened(), ElementsAre("Click", "navigate http://x/"));
}

TEST_F(AccessKeyOfAButton, DoesNothingWhenDisabled) {
  Button.SetURL("http://x/");
  Button.SetEnabled(false);
  Happened();
  Button.AccessKeyPressed();
  EXPECT_THAT(Happened(), IsEmpty());
}

class Address : public ButtonTest {
 protected:
  std::vector<std::string> Opened(const std::string &url) {
    Button.SetURL(url);
    Happened();
    Button.GoToURL();
    return Happened();
  }
};

TEST_F(Address, IsOpenedAsAPage) {
  EXPECT_THAT(Opened("http://x/"), ElementsAre("navigate http://x/"));
  EXPECT_THAT(Opened("anything"), ElementsAre("navigate anything"));
}

TEST_F(Address, OfMailIsOpenedByTheShell) {
  EXPECT_THAT(Opened("mailto:a@b?subject=c"), ElementsAre("open mailto:a@b?subject=c"));
  EXPECT_THAT(Opened("mailto:"), ElementsAre("open mailto:"));
}

TEST_F(Address, IsComparedLetterForLetter) {
  EXPECT_THAT(Opened("Mailto:a@b"), ElementsAre("navigate Mailto:a@b"));
  EXPECT_THAT(Opened("mailto"), ElementsAre("navigate mailto"));
  EXPECT_THAT(Opened(" mailto:a@b"), ElementsAre("navigate  mailto:a@b"));
}

TEST_F(Address, ThatIsEmptyOpensNothing) {
  EXPECT_THAT(Opened(""), IsEmpty());
}

}  // namespace
}  // namespace cvl
