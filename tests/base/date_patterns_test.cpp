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

TEST(AppendFourDigits, KeepsTheLastFourDigitsAndLeadingZeros) {
  std::string text = "=";
  AppendFourDigits(text, 100);
  AppendFourDigits(text, 2002);
  AppendFourDigits(text, 32003);
  EXPECT_EQ(text, "=010020022003");
}

TEST(AppendTime, WritesTheTimeOfTheTwentyFourHourClock) {
  std::string text = "at ";
  AppendTime(text, PartsOf(DateTime::Of(2002, 10, 3, 17, 5, 9)));
  EXPECT_EQ(text, "at 17:05:09");
}

TEST(AppendTwelveHourTime, HasTwelveInThePlaceOfZero) {
  const auto text_at = [](int hour) {
    std::string text = "at ";
    AppendTwelveHourTime(text, PartsOf(DateTime::Of(2002, 10, 3, hour, 5, 9)));
    return text;
  };
  EXPECT_EQ(text_at(0), "at 12:05:09 AM");
  EXPECT_EQ(text_at(9), "at 09:05:09 AM");
  EXPECT_EQ(text_at(12), "at 12:05:09 PM");
  EXPECT_EQ(text_at(17), "at 05:05:09 PM");
}

}  // namespace
}  // namespace cvl
