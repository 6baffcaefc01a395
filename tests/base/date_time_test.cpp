#include "base/date_time.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "tests/support/expect_error.h"

namespace cvl {
namespace {

std::string PartsText(DateTime moment) {
  const CivilTime parts = PartsOf(moment);
  return std::to_string(parts.Year) + "-" + std::to_string(parts.Month) + "-" +
         std::to_string(parts.Day) + " " + std::to_string(parts.Hour) + ":" +
         std::to_string(parts.Minute) + ":" + std::to_string(parts.Second) + " " +
         std::to_string(parts.DayOfWeek);
}

/// A calendar that only knows how to turn its page.
struct Page {
  int Year = 100;
  int Month = 1;
  int Day = 1;
  int DayOfWeek = 5;

  bool IsLeapYear() const { return Year % 400 == 0 || (Year % 4 == 0 && Year % 100 != 0); }
  int DaysOfMonth() const {
    constexpr int Lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return Month == 2 && IsLeapYear() ? 29 : Lengths[Month - 1];
  }
  void Turn() {
    DayOfWeek = (DayOfWeek + 1) % 7;
    if (++Day <= DaysOfMonth()) return;
    Day = 1;
    if (++Month <= 12) return;
    Month = 1;
    ++Year;
  }
};

TEST(DateTime, HasTheBaseDatesAtTheirValues) {
  EXPECT_EQ(DateTime::Of(1899, 12, 30).Days, 0);
  EXPECT_EQ(DateTime::Of(1900, 1, 1).Days, 2);
  EXPECT_EQ(DateTime::Of(1970, 1, 1).Days, 25569);
  EXPECT_EQ(DateTime::Of(1978, 8, 3).Days, 28705);
  EXPECT_EQ(DateTime::Of(100, 1, 1).Days, -657434);
  EXPECT_EQ(DateTime::Of(9999, 12, 31).Days, 2958465);
}

TEST(DateTime, TakesEveryDayOfTheYears100To9999ThereAndBack) {
  Page page;
  for (std::int64_t day = -657434; day <= 2958465; ++day, page.Turn()) {
    const DateTime moment = DateTime::Of(page.Year, page.Month, page.Day);
    const CivilTime parts = PartsOf(moment);
    ASSERT_TRUE(moment.Days == static_cast<double>(day) && CalendarDay(moment) == day &&
                parts.Year == page.Year && parts.Month == page.Month && parts.Day == page.Day &&
                parts.Hour == 0 && parts.Minute == 0 && parts.Second == 0 &&
                parts.DayOfWeek == page.DayOfWeek)
        << page.Year << '-' << page.Month << '-' << page.Day << " is " << PartsText(moment);
  }
  EXPECT_EQ(page.Year, 10000);
}

TEST(DateTime, TakesEverySecondOfADayThereAndBack) {
  for (int second = 0; second < 86400; ++second) {
    const int hour = second / 3600;
    const int minute = second / 60 % 60;
    for (const int year : {100, 2002, 9999}) {
      const CivilTime parts = PartsOf(DateTime::Of(year, 12, 31, hour, minute, second % 60));
      ASSERT_TRUE(parts.Year == year && parts.Day == 31 && parts.Hour == hour &&
                  parts.Minute == minute && parts.Second == second % 60)
          << year << ", second " << second;
    }
  }
}

TEST(DateTime, ComparesByValue) {
  EXPECT_TRUE(DateTime{2} == DateTime::Of(1900, 1, 1));
  EXPECT_FALSE(DateTime{2} != DateTime::Of(1900, 1, 1));
  EXPECT_TRUE(DateTime{2} != DateTime{2.5});
  EXPECT_FALSE(DateTime{2} == DateTime{2.5});
}

TEST(PartsOf, RoundsToTheNearestSecond) {
  const DateTime noon = DateTime::Of(2002, 10, 3, 12, 0, 0);
  EXPECT_EQ(PartsText(noon.Plus(0.4 / SecondsPerDay)), "2002-10-3 12:0:0 4");
  EXPECT_EQ(PartsText(noon.Plus(0.6 / SecondsPerDay)), "2002-10-3 12:0:1 4");
  EXPECT_EQ(PartsText(noon.Plus(-0.4 / SecondsPerDay)), "2002-10-3 12:0:0 4");
  EXPECT_EQ(PartsText(noon.Plus(-0.6 / SecondsPerDay)), "2002-10-3 11:59:59 4");
}

TEST(PartsOf, TurnsTheDayWhenTheLastSecondRoundsUp) {
  const DateTime midnight = DateTime::Of(2003, 1, 1);
  EXPECT_EQ(PartsText(midnight.Plus(-0.6 / SecondsPerDay)), "2002-12-31 23:59:59 2");
  EXPECT_EQ(PartsText(midnight.Plus(-0.4 / SecondsPerDay)), "2003-1-1 0:0:0 3");
}

TEST(PartsOf, CountsOnwardsInFrontOfTheFirstDay) {
  EXPECT_EQ(PartsText(DateTime{-0.25}), "1899-12-29 18:0:0 5");
  EXPECT_EQ(PartsText(DateTime{-1}), "1899-12-29 0:0:0 5");
}

TEST(PartsOf, KnowsLeapYears) {
  EXPECT_EQ(PartsText(DateTime::Of(2000, 2, 28).Plus(1)), "2000-2-29 0:0:0 2");
  EXPECT_EQ(PartsText(DateTime::Of(1900, 2, 28).Plus(1)), "1900-3-1 0:0:0 4");
  EXPECT_EQ(PartsText(DateTime::Of(2004, 2, 28).Plus(1)), "2004-2-29 0:0:0 0");
  EXPECT_EQ(PartsText(DateTime::Of(2003, 2, 28).Plus(1)), "2003-3-1 0:0:0 6");
}

TEST(PartsOf, FailsWithOverflowOutsideTheYears100To9999) {
  EXPECT_EQ(PartsOf(DateTime{-657434}).Year, 100);
  ExpectRuntimeError(6, [] { PartsOf(DateTime{-657434 - 1 / SecondsPerDay}); });
  ExpectRuntimeError(6, [] { PartsOf(DateTime{-657435}); });

  EXPECT_EQ(PartsText(DateTime::Of(9999, 12, 31, 23, 59, 59)), "9999-12-31 23:59:59 5");
  ExpectRuntimeError(6, [] { PartsOf(DateTime{2958466}); });

  for (const double days : {1e300, -1e300, std::numeric_limits<double>::infinity(),
                            std::numeric_limits<double>::quiet_NaN()}) {
    SCOPED_TRACE(days);
    ExpectRuntimeError(6, [&] { PartsOf(DateTime{days}); });
    ExpectRuntimeError(6, [&] { CalendarDay(DateTime{days}); });
    ExpectRuntimeError(6, [&] { GeneralText(DateTime{days}); });
  }
}

TEST(PartsOf, FailsWhereTheRoundedSecondLiesInTheYear10000) {
  const DateTime behind = DateTime{2958466};
  EXPECT_EQ(PartsText(behind.Plus(-0.6 / SecondsPerDay)), "9999-12-31 23:59:59 5");
  ExpectRuntimeError(6, [&] { PartsOf(behind.Plus(-0.4 / SecondsPerDay)); });
}

TEST(CalendarDay, DropsTheTimeOfDayAfterRounding) {
  EXPECT_EQ(CalendarDay(DateTime{28705}), 28705);
  EXPECT_EQ(CalendarDay(DateTime{28705 + 86399.4 / SecondsPerDay}), 28705);
  EXPECT_EQ(CalendarDay(DateTime{28705 + 86399.6 / SecondsPerDay}), 28706);
  EXPECT_EQ(CalendarDay(DateTime{-0.25}), -1);
}

TEST(DayNumber, CountsDaysOfTheCalendar) {
  EXPECT_EQ(DayNumber(1899, 12, 30), 0);
  EXPECT_EQ(DayNumber(1970, 1, 1), 25569);
  EXPECT_EQ(DayNumber(2000, 3, 1) - DayNumber(2000, 2, 1), 29);
}

TEST(SecondsBetween, IsWholeAndExactBeyondThirtyTwoBits) {
  const DateTime epoch = DateTime::Of(1900, 1, 1);
  EXPECT_EQ(SecondsBetween(epoch, DateTime::Of(2002, 10, 3, 12, 0, 0)), 3242635200.0);
  EXPECT_EQ(SecondsBetween(epoch, DateTime::Of(2002, 10, 3, 12, 0, 1)), 3242635201.0);
  EXPECT_EQ(SecondsBetween(epoch, DateTime::Of(1978, 8, 3)), 2479939200.0);
  EXPECT_EQ(SecondsBetween(DateTime::Of(1978, 8, 3), epoch), -2479939200.0);
  EXPECT_EQ(SecondsBetween(DateTime{0}, epoch), 172800);
  EXPECT_EQ(SecondsBetween(DateTime::Of(100, 1, 1), DateTime::Of(9999, 12, 31)), 312413673600.0);
}

TEST(ShortDateText, HasNoLeadingZeros) {
  EXPECT_EQ(ShortDateText(DateTime::Of(2002, 11, 14)), "11/14/2002");
  EXPECT_EQ(ShortDateText(DateTime::Of(2002, 1, 2)), "1/2/2002");
}

TEST(LongTimeText, CountsHoursFromTwelveToEleven) {
  const auto text = [](int hour, int minute, int second) {
    return LongTimeText(DateTime::Of(2002, 11, 14, hour, minute, second));
  };
  EXPECT_EQ(text(0, 0, 0), "12:00:00 AM");
  EXPECT_EQ(text(0, 59, 59), "12:59:59 AM");
  EXPECT_EQ(text(1, 0, 0), "1:00:00 AM");
  EXPECT_EQ(text(9, 26, 13), "9:26:13 AM");
  EXPECT_EQ(text(11, 59, 59), "11:59:59 AM");
  EXPECT_EQ(text(12, 0, 0), "12:00:00 PM");
  EXPECT_EQ(text(12, 59, 59), "12:59:59 PM");
  EXPECT_EQ(text(13, 0, 0), "1:00:00 PM");
  EXPECT_EQ(text(23, 59, 59), "11:59:59 PM");
}

TEST(GeneralText, AlwaysHasDateAndTime) {
  EXPECT_EQ(GeneralText(DateTime::Of(2002, 11, 14, 9, 26, 13)), "11/14/2002 9:26:13 AM");
  EXPECT_EQ(GeneralText(DateTime::Of(2002, 11, 14)), "11/14/2002 12:00:00 AM");
  EXPECT_EQ(GeneralText(DateTime{0.5}), "12/30/1899 12:00:00 PM");
}

TEST(GeneralText, RoundsDateAndTimeTogether) {
  const DateTime late = DateTime::Of(2003, 1, 1).Plus(-0.4 / SecondsPerDay);
  EXPECT_EQ(GeneralText(late), "1/1/2003 12:00:00 AM");
}

}  // namespace
}  // namespace cvl
