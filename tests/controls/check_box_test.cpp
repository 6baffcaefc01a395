#include "controls/check_box.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

TEST(CheckBox, IsUntickedAtFirst) {
  const CheckBox box;
  EXPECT_EQ(box.Value(), Tick::Off);
  EXPECT_FALSE(box.IsTicked());
}

TEST(CheckBox, ClicksOnAChangeOnly) {
  CheckBox box;
  int clicks = 0;
  box.OnClick = [&] { ++clicks; };

  box.SetValue(Tick::Off);
  EXPECT_EQ(clicks, 0);
  box.SetValue(Tick::On);
  EXPECT_EQ(clicks, 1);
  box.SetValue(Tick::On);
  EXPECT_EQ(clicks, 1);
  box.SetValue(Tick::Off);
  EXPECT_EQ(clicks, 2);
}

TEST(CheckBox, HasItsNewValueWhenItClicks) {
  CheckBox box;
  bool ticked = false;
  box.OnClick = [&] { ticked = box.IsTicked(); };
  box.SetValue(Tick::On);
  EXPECT_TRUE(ticked);
}

TEST(CheckBox, MayBeSetBackByItsOwnClick) {
  CheckBox box;
  int clicks = 0;
  box.OnClick = [&] {
    ++clicks;
    box.SetValue(Tick::Off);
  };
  box.SetValue(Tick::On);
  EXPECT_EQ(clicks, 2);
  EXPECT_FALSE(box.IsTicked());
}

TEST(CheckBox, ChangesWithoutAListener) {
  CheckBox box;
  box.SetValue(Tick::On);
  EXPECT_TRUE(box.IsTicked());
}

}  // namespace
}  // namespace cvl
