#include "controls/combo_box.h"

#include <gtest/gtest.h>

#include "tests/support/expect_error.h"

namespace cvl {
namespace {

TEST(ComboBox, TakesTextThatIsNotOfItsList) {
  ComboBox box("Minute/s");
  int clicks = 0;
  box.List = {"Minute/s", "Hour/s"};
  box.OnClick = [&] { ++clicks; };
  box.SetText("Week/s");
  EXPECT_EQ(box.Text(), "Week/s");
  EXPECT_EQ(clicks, 0);
}

TEST(ComboBox, ShowsTheChosenItemAndClicks) {
  ComboBox box;
  int clicks = 0;
  int changes = 0;
  box.List = {"Minute/s", "Hour/s"};
  box.OnClick = [&] { ++clicks; };
  box.OnChange = [&] { ++changes; };
  box.Choose(1);
  EXPECT_EQ(box.Text(), "Hour/s");
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(changes, 1);
  box.Choose(1);  // a choice is a click, also of what stood there
  EXPECT_EQ(clicks, 2);
  EXPECT_EQ(changes, 1);
}

TEST(ComboBox, RefusesAnItemThatIsNotThere) {
  ComboBox box("Minute/s");
  int clicks = 0;
  box.OnClick = [&] { ++clicks; };
  ExpectRuntimeError(380, [&] { box.Choose(0); });
  box.List = {"Minute/s", "Hour/s"};
  box.Choose(1);
  ExpectRuntimeError(380, [&] { box.Choose(2); });
  EXPECT_EQ(box.Text(), "Hour/s");
  EXPECT_EQ(clicks, 1);
}

/// A box of two items on a table of 35 pictures that counts its clicks.
struct TwoServers {
  TwoServers() {
    Box.OnClick = [this] { ++Clicks; };
    Box.Add("192.0.2.1", 1);
    Box.Add("192.0.2.2", 35);
  }

  ImageCombo Box{35};
  int Clicks = 0;
};

TEST(ImageCombo, NumbersItsItemsFromOne) {
  const TwoServers servers;
  EXPECT_EQ(servers.Box.Count(), 2);
  EXPECT_EQ(servers.Box.At(1).Text, "192.0.2.1");
  EXPECT_EQ(servers.Box.At(1).Image, 1);
  EXPECT_EQ(servers.Box.At(2).Text, "192.0.2.2");
  EXPECT_EQ(servers.Box.At(2).Image, 35);
}

TEST(ImageCombo, RefusesAPictureThatTheTableLacks) {
  ImageCombo box(35);
  box.Add("first", 1);
  box.Add("last", 35);
  ExpectRuntimeError(380, [&] { box.Add("none", 0); });
  ExpectRuntimeError(380, [&] { box.Add("none", 36); });
  ExpectRuntimeError(380, [&] { box.Add("none", -1); });
  EXPECT_EQ(box.Count(), 2);
}

TEST(ImageCombo, HasNoItemOutsideItsNumbers) {
  TwoServers servers;
  for (const int number : {INT32_MIN, -1, 0, 3, INT32_MAX}) {
    SCOPED_TRACE(number);
    ExpectRuntimeError(35600, [&] { static_cast<void>(servers.Box.At(number)); });
    ExpectRuntimeError(35600, [&] { servers.Box.Select(number); });
    ExpectRuntimeError(35600, [&] { servers.Box.Choose(number); });
  }
  EXPECT_EQ(servers.Clicks, 0);
}

TEST(ImageCombo, SelectsWithoutAClick) {
  TwoServers servers;
  EXPECT_EQ(servers.Box.Selected(), 0);
  EXPECT_EQ(servers.Box.Text(), "");
  servers.Box.Select(2);
  EXPECT_EQ(servers.Box.Selected(), 2);
  EXPECT_EQ(servers.Box.Text(), "192.0.2.2");
  EXPECT_EQ(servers.Clicks, 0);
}

TEST(ImageCombo, ClicksWhenAHandChooses) {
  TwoServers servers;
  servers.Box.Choose(1);
  EXPECT_EQ(servers.Box.Selected(), 1);
  EXPECT_EQ(servers.Clicks, 1);
  servers.Box.Choose(1);
  EXPECT_EQ(servers.Clicks, 2);
}

TEST(ImageCombo, KeepsItsSelectionWhenANewOneFails) {
  TwoServers servers;
  servers.Box.Select(2);
  ExpectRuntimeError(35600, [&] { servers.Box.Select(3); });
  EXPECT_EQ(servers.Box.Selected(), 2);
}

TEST(ImageCombo, ForgetsItemsAndSelectionWhenCleared) {
  TwoServers servers;
  servers.Box.Select(2);
  servers.Box.Clear();
  EXPECT_EQ(servers.Box.Count(), 0);
  EXPECT_EQ(servers.Box.Selected(), 0);
  EXPECT_EQ(servers.Box.Text(), "");
  ExpectRuntimeError(35600, [&] { servers.Box.Select(1); });
}

}  // namespace
}  // namespace cvl
