#include "time/daylight_rule.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

struct Row {
  int Year;
  int AprilDay;
  int OctoberDay;
};

class ChangeDates : public testing::TestWithParam<Row> {};

TEST_P(ChangeDates, FallAtTwoOnTheDaysOfTheRule) {
  const Row &row = GetParam();
  EXPECT_EQ(AprilChange(row.Year), DateTime::Of(row.Year, 4, row.AprilDay, 2, 0, 0));
  EXPECT_EQ(OctoberChange(row.Year), DateTime::Of(row.Year, 10, row.OctoberDay, 2, 0, 0));
}

INSTANTIATE_TEST_SUITE_P(, ChangeDates,
                         testing::Values(Row{2002, 7, 27}, Row{2003, 5, 25}, Row{2004, 4, 31},
                                         Row{2006, 1, 28}, Row{2007, 7, 27}),
                         [](const auto &row) { return std::to_string(row.param.Year); });

/// The indicator in 2002, whose changes fall on 7 April and 27 October.
int In2002(int month, int day, int hour, int minute, int second, int local_month = 0) {
  return DaylightIndicator(DateTime::Of(2002, month, day, hour, minute, second), AprilChange(2002),
                           OctoberChange(2002), local_month == 0 ? month : local_month);
}

TEST(DaylightIndicator, IsStandardTimeUntilThirtyOneDaysBeforeTheChangeInApril) {
  EXPECT_EQ(In2002(1, 15, 12, 0, 1), 0);
  EXPECT_EQ(In2002(3, 8, 6, 59, 59), 0);
}

TEST(DaylightIndicator, CountsThirtyDaysDownToTheChangeInApril) {
  EXPECT_EQ(In2002(3, 8, 7, 0, 0), 81);  // the day begins seven hours behind UTC
  EXPECT_EQ(In2002(3, 9, 12, 0, 1), 80);
  EXPECT_EQ(In2002(4, 6, 12, 0, 1), 52);
  EXPECT_EQ(In2002(4, 7, 7, 0, 1), 51);
}

TEST(DaylightIndicator, TurnsToDaylightTimeAtTwoSevenHoursBehindUtc) {
  EXPECT_EQ(In2002(4, 7, 8, 59, 59), 51);
  EXPECT_EQ(In2002(4, 7, 9, 0, 1), 50);
  EXPECT_EQ(In2002(4, 8, 6, 59, 59), 50);
}

TEST(DaylightIndicator, CountsOnInSecond00OfTheChangeDayInApril) {
  EXPECT_EQ(In2002(4, 7, 9, 0, 0), 51);
  EXPECT_EQ(In2002(4, 7, 18, 30, 59), 50);
  EXPECT_EQ(In2002(4, 7, 18, 31, 0), 51);
  EXPECT_EQ(In2002(4, 7, 18, 31, 1), 50);
}

TEST(DaylightIndicator, IsDaylightTimeByTheMonthBehindTheChangeInApril) {
  EXPECT_EQ(In2002(4, 8, 7, 0, 0), 50);
  EXPECT_EQ(In2002(7, 1, 0, 0, 0), 50);
  EXPECT_EQ(In2002(9, 26, 6, 59, 59), 50);
}

TEST(DaylightIndicator, CountsThirtyOneDaysDownToTheChangeInOctober) {
  EXPECT_EQ(In2002(9, 26, 7, 0, 0), 32);
  EXPECT_EQ(In2002(10, 3, 17, 25, 41), 25);
  EXPECT_EQ(In2002(10, 18, 12, 0, 1), 10);
  EXPECT_EQ(In2002(10, 19, 12, 0, 1), 9);
  EXPECT_EQ(In2002(10, 27, 7, 0, 1), 1);
}

TEST(DaylightIndicator, TurnsToStandardTimeAtTwoSixHoursBehindUtc) {
  EXPECT_EQ(In2002(10, 27, 7, 59, 59), 1);
  EXPECT_EQ(In2002(10, 27, 8, 0, 1), 0);
  EXPECT_EQ(In2002(10, 28, 5, 59, 59), 0);
}

TEST(DaylightIndicator, CountsOnInSecond00OfTheChangeDayInOctober) {
  EXPECT_EQ(In2002(10, 27, 8, 0, 0), 1);
  EXPECT_EQ(In2002(10, 27, 20, 0, 59), 0);
  EXPECT_EQ(In2002(10, 27, 20, 1, 0), 1);
}

// The days are counted seven hours behind UTC and the change is judged six hours behind it.
TEST(DaylightIndicator, CountsInTheHourBetweenTheTwoOffsetsOfOctober) {
  EXPECT_EQ(In2002(10, 28, 6, 0, 1), 1);
  EXPECT_EQ(In2002(10, 28, 6, 59, 59), 1);
  EXPECT_EQ(In2002(10, 28, 7, 0, 0), 50);
}

TEST(DaylightIndicator, IsDaylightTimeOnceMoreInTheLastDaysOfOctober) {
  EXPECT_EQ(In2002(10, 28, 12, 0, 1), 50);
  EXPECT_EQ(In2002(10, 31, 23, 59, 59), 50);
  EXPECT_EQ(In2002(11, 1, 0, 0, 0), 0);
}

TEST(DaylightIndicator, GoesByTheLocalMonthWhereNothingIsCounted) {
  EXPECT_EQ(In2002(11, 1, 3, 0, 0, 10), 50);
  EXPECT_EQ(In2002(10, 31, 22, 0, 0, 11), 0);
}

TEST(DaylightIndicator, CountsWhateverTheLocalMonthIs) {
  EXPECT_EQ(In2002(4, 1, 3, 0, 0, 3), 58);
  EXPECT_EQ(In2002(4, 1, 12, 0, 0, 3), 57);
}

}  // namespace
}  // namespace cvl
