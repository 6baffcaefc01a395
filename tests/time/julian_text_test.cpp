#include "time/julian_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "tests/support/fake_clock.h"
#include "time/base_dates.h"
#include "time/daylight_rule.h"

namespace cvl {
namespace {

class GrabMJulianTest : public testing::Test {
 protected:
  GrabMJulianTest() { SetBaseDates(Dates); }

  /// The text of a moment in UTC, on a machine at UTC unless its zone was set.
  std::string TextAt(DateTime utc, int milliseconds = 250) {
    Clock.StandAtUtc(utc, milliseconds);
    return GrabMJulian(Time, Dates, Zone);
  }

  void StandMinutesBehindUtc(std::int32_t minutes) {
    Clock.Zone.Bias = minutes;
    Zone.TZBias = minutes;
  }

  FakeClock Clock;
  BaseDates Dates;
  ZoneState Zone;
  TextBox SvrCurrent;
  TimeEngine Time{Clock, Dates, Zone, SvrCurrent};
};

TEST_F(GrabMJulianTest, GivesTheLineOfTheWorkedExample) {
  StandMinutesBehindUtc(420);
  Clock.StandAtLocal(DateTime::Of(2002, 10, 3, 10, 25, 40), 250);
  const std::string text = GrabMJulian(Time, Dates, Zone);
  EXPECT_EQ(text, "\n52550 02-10-03 17:25:41 25 0 0 750.0 UTC(CVLS) *\n");
  EXPECT_EQ(text.size(), 50U);
}

TEST_F(GrabMJulianTest, HasTwoLineFeedsAndNoCarriageReturn) {
  const std::string text = TextAt(DateTime::Of(2002, 10, 3, 12, 0, 0));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2);
  EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST_F(GrabMJulianTest, PadsTheAdvanceToFiveCharacters) {
  const DateTime noon = DateTime::Of(2002, 10, 3, 12, 0, 0);
  const auto text_with = [](const std::string &advance) {
    return "\n52550 02-10-03 12:00:01 25 0 0 " + advance + " UTC(CVLS) *\n";
  };
  EXPECT_EQ(TextAt(noon, 1), text_with("999.0"));
  EXPECT_EQ(TextAt(noon, 955), text_with(" 45.0"));
  EXPECT_EQ(TextAt(noon, 995), text_with("  5.0"));
  EXPECT_EQ(TextAt(noon, 999), text_with("  1.0"));
}

TEST_F(GrabMJulianTest, IsAByteLongerOnAWholeSecond) {
  const std::string text = TextAt(DateTime::Of(2002, 10, 3, 12, 0, 0), 0);
  EXPECT_EQ(text, "\n52550 02-10-03 12:00:01 25 0 0 1000.0 UTC(CVLS) *\n");
  EXPECT_EQ(text.size(), 51U);
}

TEST_F(GrabMJulianTest, KeepsTheOldJulianDateInTheLastSecondOfADay) {
  EXPECT_EQ(TextAt(DateTime::Of(2002, 10, 3, 23, 59, 58)).substr(1, 23), "52550 02-10-03 23:59:59");
  EXPECT_EQ(TextAt(DateTime::Of(2002, 10, 3, 23, 59, 59)).substr(1, 23), "52550 02-10-04 00:00:00");
  EXPECT_EQ(TextAt(DateTime::Of(2002, 10, 4, 0, 0, 0)).substr(1, 23), "52551 02-10-04 00:00:01");
}

TEST_F(GrabMJulianTest, ShowsLocalTimeAndOneSecondOnAMachineAtUtc) {
  Clock.StandAtLocal(DateTime::Of(2002, 10, 3, 10, 25, 40));
  EXPECT_EQ(GrabMJulian(Time, Dates, Zone).substr(7, 17), "02-10-03 10:25:41");
}

TEST_F(GrabMJulianTest, TakesTheBiasThatTheZoneStateHolds) {
  StandMinutesBehindUtc(420);
  Zone.TZBias = -90;  // not yet brought up to date
  Clock.StandAtLocal(DateTime::Of(2002, 10, 3, 10, 25, 40));
  EXPECT_EQ(GrabMJulian(Time, Dates, Zone).substr(7, 17), "02-10-03 08:55:41");
}

TEST_F(GrabMJulianTest, CountsJulianDaysFromTheBaseDate) {
  Dates.DateBase100 = Dates.DateBase100.Plus(2);
  EXPECT_EQ(TextAt(DateTime::Of(2002, 10, 3, 12, 0, 0)).substr(1, 5), "52548");
}

TEST_F(GrabMJulianTest, StartsTheJulianDateAnewBehind99999) {
  EXPECT_EQ(TextAt(DateTime::Of(2132, 8, 31, 12, 0, 0)).substr(1, 5), "99999");
  EXPECT_EQ(TextAt(DateTime::Of(2132, 9, 1, 12, 0, 0)).substr(1, 5), "00000");
  EXPECT_EQ(TextAt(DateTime::Of(2132, 9, 2, 12, 0, 0)).substr(1, 5), "00001");
}

TEST_F(GrabMJulianTest, ReadsTheSecondsFirstAndTheMillisecondsBehindThem) {
  const DateTime noon = DateTime::Of(2002, 10, 3, 12, 0, 0);
  Clock.Script = {UtcMsOf(noon, 998), UtcMsOf(noon.Plus(1 / SecondsPerDay), 3)};
  EXPECT_EQ(GrabMJulian(Time, Dates, Zone), "\n52550 02-10-03 12:00:01 25 0 0 997.0 UTC(CVLS) *\n");
  EXPECT_EQ(Clock.LocalTimeReadings, 1);
}

TEST_F(GrabMJulianTest, ReadsTheMonthAnewBehindTheMoment) {
  const DateTime last_second = DateTime::Of(2002, 10, 31, 23, 59, 59);
  const DateTime november = DateTime::Of(2002, 11, 1);
  Clock.Script = {UtcMsOf(last_second, 990), UtcMsOf(last_second, 995), UtcMsOf(november)};
  EXPECT_EQ(GrabMJulian(Time, Dates, Zone), "\n52578 02-11-01 00:00:00 00 0 0   5.0 UTC(CVLS) *\n");
}

TEST_F(GrabMJulianTest, IsStandardTimeInJanuaryAlsoInTheSouthernHemisphere) {
  Clock.Zone.Period = ZonePeriod::Daylight;
  Clock.Zone.Bias = -600;
  Clock.Zone.DaylightBias = -60;
  Zone.TZBias = -660;
  EXPECT_EQ(TextAt(DateTime::Of(2002, 1, 15, 12, 0, 0)).substr(24, 3), " 00");
}

// Forty-two years, hour by hour, against a calendar that counts days on its fingers.

constexpr std::int64_t Day = 86400;

/// A date that is walked from day to day.
struct Walker {
  int Year = 1999;
  int Month = 1;
  int DayOfMonth = 1;
  int Weekday = 5;  // 1 January 1999 was a Friday
  std::int64_t ModifiedJulian = 51179;

  bool IsLeap() const { return (Year % 4 == 0 && Year % 100 != 0) || Year % 400 == 0; }

  int DaysOfMonth() const {
    if (Month == 2) return IsLeap() ? 29 : 28;
    return Month == 4 || Month == 6 || Month == 9 || Month == 11 ? 30 : 31;
  }

  void Step() {
    ++ModifiedJulian;
    Weekday = (Weekday + 1) % 7;
    if (++DayOfMonth <= DaysOfMonth()) return;
    DayOfMonth = 1;
    if (++Month <= 12) return;
    Month = 1;
    ++Year;
  }
};

/// All days from 1 January 1999 to 1 January 2041.
const std::vector<Walker> &Calendar() {
  static const std::vector<Walker> days = [] {
    std::vector<Walker> walked;
    for (Walker day; day.Year < 2041 || day.DayOfMonth == 1; day.Step()) {
      walked.push_back(day);
    }
    return walked;
  }();
  return days;
}

/// Seconds since 1 January 1999.
using Moment = std::int64_t;

const Walker &DayOf(Moment moment) {
  return Calendar().at(static_cast<std::size_t>(moment / Day));
}

/// The change of a year among the days from FIRST on, by the weekday that its number calls
/// for: in three years of eight the Saturday, else the Sunday.
std::int64_t ChangeDay(int year, int month, int first) {
  const bool is_saturday = year % 4 == 3 || year % 8 == 6;
  const auto found = std::find_if(Calendar().begin(), Calendar().end(), [&](const Walker &day) {
    return day.Year == year && day.Month == month && day.DayOfMonth >= first &&
           day.Weekday == (is_saturday ? 6 : 0);
  });
  return found - Calendar().begin();
}

struct Changes {
  std::int64_t April;
  std::int64_t October;
};

const Changes &ChangesOf(int year) {
  static const std::vector<Changes> changes = [] {
    std::vector<Changes> of_years;
    for (int each = 1999; each <= 2040; ++each) {
      of_years.push_back({ChangeDay(each, 4, 1), ChangeDay(each, 10, 25)});
    }
    return of_years;
  }();
  return changes.at(static_cast<std::size_t>(year - 1999));
}

int ExpectedIndicator(Moment utc, std::int64_t bias) {
  const Walker &local = DayOf(utc - bias);
  const Moment stamped = utc + 1;
  const Moment for_april = stamped - 7 * 3600;
  const Moment for_october = stamped - 6 * 3600;
  const auto [april, october] = ChangesOf(local.Year);
  const std::int64_t april_ahead = april - for_april / Day;
  const std::int64_t october_ahead = october - for_april / Day;
  const bool has_seconds = stamped % 60 != 0;
  if (april_ahead >= 0 && april_ahead < 31) {
    const bool is_over = has_seconds && for_april >= april * Day + 2 * 3600;
    return is_over ? 50 : static_cast<int>(51 + april_ahead);
  }
  if (october_ahead >= 0 && october_ahead < 32) {
    const bool is_over =
        has_seconds && for_october / Day == october && for_october >= october * Day + 2 * 3600;
    return is_over ? 0 : static_cast<int>(1 + october_ahead);
  }
  return local.Month >= 4 && local.Month <= 10 ? 50 : 0;
}

std::string ExpectedText(Moment utc, std::int64_t bias) {
  const Moment stamped = utc + 1;
  const Walker &day = DayOf(stamped);
  const auto of_day = static_cast<int>(stamped % Day);
  char text[64];
  std::snprintf(
      text, sizeof text, "\n%05d %02d-%02d-%02d %02d:%02d:%02d %02d 0 0 750.0 UTC(CVLS) *\n",
      static_cast<int>(DayOf(utc).ModifiedJulian), day.Year % 100, day.Month, day.DayOfMonth,
      of_day / 3600, of_day / 60 % 60, of_day % 60, ExpectedIndicator(utc, bias));
  return text;
}

class JulianTextOverTheYears : public GrabMJulianTest,
                               public testing::WithParamInterface<std::int32_t> {
 protected:
  void SetUp() override { StandMinutesBehindUtc(GetParam()); }

  std::int64_t Bias() const { return GetParam() * std::int64_t{60}; }

  testing::AssertionResult IsRightAt(Moment utc) {
    constexpr std::int64_t From1970To1999 = 915148800;
    Clock.UtcMs = (From1970To1999 + utc) * 1000 + 250;
    const std::string text = GrabMJulian(Time, Dates, Zone);
    const std::string expected = ExpectedText(utc, Bias());
    if (text == expected) return testing::AssertionSuccess();
    return testing::AssertionFailure() << text << "instead of" << expected;
  }

  static constexpr Moment LastDay() { return 15340; }  // 31 December 2040
};

TEST_P(JulianTextOverTheYears, IsRightInEveryHour) {
  ASSERT_EQ(Calendar().back().Year, 2041);
  for (Moment utc = Day; utc < LastDay() * Day; utc += 3600) {
    ASSERT_TRUE(IsRightAt(utc));
  }
}

TEST_P(JulianTextOverTheYears, IsRightAroundEveryHourOfTheChangeDays) {
  for (int year = 1999; year <= 2040; ++year) {
    for (const std::int64_t change : {ChangesOf(year).April, ChangesOf(year).October}) {
      for (Moment hour = change * Day; hour <= (change + 2) * Day; hour += 3600) {
        for (const Moment second : {-2, -1, 0, 1, 58, 59, 60}) {
          ASSERT_TRUE(IsRightAt(hour + second));
        }
      }
    }
  }
}

TEST(ChangesOverTheYears, FallOnASaturdayInThreeYearsOfEight) {
  int saturdays = 0;
  for (int year = 1999; year <= 2040; ++year) {
    const Walker &april = Calendar().at(static_cast<std::size_t>(ChangesOf(year).April));
    const Walker &october = Calendar().at(static_cast<std::size_t>(ChangesOf(year).October));
    EXPECT_EQ(AprilChange(year), DateTime::Of(year, 4, april.DayOfMonth, 2, 0, 0));
    EXPECT_EQ(OctoberChange(year), DateTime::Of(year, 10, october.DayOfMonth, 2, 0, 0));
    if (april.Weekday == 6) ++saturdays;
  }
  EXPECT_EQ(saturdays, 16);
}

INSTANTIATE_TEST_SUITE_P(Zones, JulianTextOverTheYears, testing::Values(0, 480, -345),
                         [](const auto &bias) {
                           return bias.index == 0   ? "AtUtc"
                                  : bias.index == 1 ? "WestOfUtc"
                                                    : "EastOfUtc";
                         });

}  // namespace
}  // namespace cvl
