#include "tools/wire/date_text.h"

#include <gtest/gtest.h>

namespace cvl::tools {
namespace {

TEST(DateText, NamesTheSecond) {
  EXPECT_EQ(DateText(0x3D9C3140), "2002-10-03 12:00:00");
  EXPECT_EQ(DateText(0), "1970-01-01 00:00:00");
  EXPECT_EQ(DateText(-1), "1969-12-31 23:59:59");
}

TEST(DateText, KnowsTheZerosOfTheServices) {
  EXPECT_EQ(DateText(UnixSecondsAt1900), "1900-01-01 00:00:00");
  EXPECT_EQ(DateText(UnixSecondsAt2002), "2002-01-01 00:00:00");
}

TEST(DateText, RoundsTheFractionToMicroseconds) {
  EXPECT_EQ(DateText(0, 0x40000000), "1970-01-01 00:00:00.250000");
  EXPECT_EQ(DateText(0, 0x19999999), "1970-01-01 00:00:00.100000");
  EXPECT_EQ(DateText(0, 0), "1970-01-01 00:00:00.000000");
}

TEST(DateText, RoundsIntoTheNextSecond) {
  EXPECT_EQ(DateText(59, 0xFFFFF000), "1970-01-01 00:00:59.999999");
  EXPECT_EQ(DateText(59, 0xFFFFFFFF), "1970-01-01 00:01:00.000000");
}

TEST(UnixSecondsOf1900Count, ReadsSmallCountsInTheSecondEra) {
  EXPECT_EQ(DateText(UnixSecondsOf1900Count(0xC146AFC0)), "2002-10-03 12:00:00");
  EXPECT_EQ(DateText(UnixSecondsOf1900Count(0xFFFFFFFF)), "2036-02-07 06:28:15");
  EXPECT_EQ(DateText(UnixSecondsOf1900Count(0)), "2036-02-07 06:28:16");
  EXPECT_EQ(DateText(UnixSecondsOf1900Count(0x80000000)), "1968-01-20 03:14:08");
}

}  // namespace
}  // namespace cvl::tools
