#include "base/date_patterns.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

TEST(MonthName, NamesTheTwelveMonths) {
  std::string names;
  for (int month = 1; month <= 12; ++month) {
    names += MonthName(PartsOf(DateTime::Of(2002, month, 1)));
    names += ' ';
  }
  EXPECT_EQ(names,
            "January February March April May June July August September October November "
            "December ");
}

TEST(WeekdayName, NamesTheSevenDaysFromASundayOn) {
  std::string names;
  for (int day = 6; day <= 12; ++day) {
    names += WeekdayName(PartsOf(DateTime::Of(2002, 10, day)));
    names += ' ';
  }
  EXPECT_EQ(names, "Sunday Monday Tuesday Wednesday Thursday Friday Saturday ");
}

TEST(AppendTwoDigits, KeepsTheLastTwoDigits) {
  std::string text = "=";
  AppendTwoDigits(text, 7);
  AppendTwoDigits(text, 42);
  AppendTwoDigits(text, 2003);
  EXPECT_EQ(text, "=074203");
}

TEST(AppendTime, WritesTheTimeOfTheTwentyFourHourClock) {
  std::string text = "at ";
  AppendTime(text, PartsOf(DateTime::Of(2002, 10, 3, 17, 5, 9)));
  EXPECT_EQ(text, "at 17:05:09");
}

}  // namespace
}  // namespace cvl
