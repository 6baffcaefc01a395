#include <gtest/gtest.h>

#include "controls/control.h"
#include "tests/support/expect_error.h"

namespace cvl {
namespace {

TEST(ToolTip, IsEmptyAtFirst) {
  EXPECT_EQ(ToolTip().Text(), "");
}

TEST(ToolTip, ShowsItsText) {
  ToolTip tip;
  tip.Set(" Time Zone: CET ");
  EXPECT_EQ(tip.Text(), " Time Zone: CET ");
}

TEST(ToolTip, ShowsAMomentBetweenBlanks) {
  ToolTip tip;
  tip.Set("text");
  tip.SetMoment(DateTime::Of(2002, 11, 14, 9, 26, 13));
  EXPECT_EQ(tip.Text(), " 11/14/2002 9:26:13 AM ");
  tip.Set("text again");
  EXPECT_EQ(tip.Text(), "text again");
}

TEST(ToolTip, RendersItsMomentOnlyWhenSomebodyReadsIt) {
  ToolTip tip;
  EXPECT_NO_THROW(tip.SetMoment(DateTime{1e300}));
  ExpectRuntimeError(6, [&] { return tip.Text(); });
}

TEST(Control, IsVisibleAndEnabledAtFirst) {
  const Control control;
  EXPECT_TRUE(control.Visible);
  EXPECT_TRUE(control.Enabled);
}

}  // namespace
}  // namespace cvl
