#include "platform/linux/linux_clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "tests/platform/standing_clock.h"
#include "tests/platform/zone_database.h"
#include "tests/support/expect_error.h"

namespace cvl {
namespace {

constexpr const char *NewYork = "EST5EDT,M3.2.0,M11.1.0";
constexpr const char *Dublin = "IST-1GMT0,M10.5.0,M3.5.0/1";  // daylight time in winter
constexpr const char *LordHowe = "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0";
constexpr const char *AlwaysDaylight = "XST3XDT2,0/0,J365/25";
constexpr const char *Kathmandu = "<+0545>-5:45";

constexpr std::time_t Winter = 1737028800;         // 16 January 2025, 12:00:00 UTC
constexpr std::time_t Summer = 1752667200;         // 16 July 2025, 12:00:00 UTC
constexpr std::time_t SpringForward = 1741503600;  // 9 March 2025, 07:00:00 UTC, in New York

TEST(LinuxClock, TellsLocalTimeInWholeSeconds) {
  const ZoneSetting zone(NewYork);
  StandingClock system;
  system.StandAt(Summer, 999999999);
  LinuxClock clock;
  EXPECT_EQ(GeneralText(clock.Now()), GeneralText(DateTime::Of(2025, 7, 16, 8, 0, 0)));
}

TEST(LinuxClock, TellsLocalTimeWithItsMilliseconds) {
  const ZoneSetting zone(NewYork);
  StandingClock system;
  LinuxClock clock;
  const auto milliseconds_at = [&](long nanosecond) {
    system.StandAt(Summer, nanosecond);
    return clock.GetLocalTime().Milliseconds;
  };
  EXPECT_EQ(milliseconds_at(0), 0);
  EXPECT_EQ(milliseconds_at(999999), 0);
  EXPECT_EQ(milliseconds_at(1000000), 1);
  EXPECT_EQ(milliseconds_at(998999999), 998);
  EXPECT_EQ(milliseconds_at(999999999), 999);
  EXPECT_EQ(clock.GetLocalTime(), (SystemTime{2025, 7, 3, 16, 8, 0, 0, 999}));
}

TEST(LinuxClock, ReadsTheSystemEachTime) {
  const ZoneSetting zone("UTC0");
  StandingClock system;
  LinuxClock clock;
  system.StandAt(Summer);
  EXPECT_EQ(GeneralText(clock.Now()), GeneralText(DateTime::Of(2025, 7, 16, 12, 0, 0)));
  system.StandAt(Summer + 1, 5000000);
  EXPECT_EQ(clock.GetLocalTime(), (SystemTime{2025, 7, 3, 16, 12, 0, 1, 5}));
  system.StandAt(Summer - 3600);
  EXPECT_EQ(GeneralText(clock.Now()), GeneralText(DateTime::Of(2025, 7, 16, 11, 0, 0)));
}

TEST(LinuxClock, TellsAZoneInDaylightTime) {
  const ZoneSetting setting(NewYork);
  StandingClock system;
  system.StandAt(Summer);
  LinuxClock clock;
  const TimeZoneInformation &zone = clock.GetTimeZoneInformation();
  EXPECT_EQ(zone.Period, ZonePeriod::Daylight);
  EXPECT_EQ(zone.Bias, 300);
  EXPECT_EQ(zone.DaylightBias, -60);
  EXPECT_EQ(NameText(zone.StandardName), "EST");
  EXPECT_EQ(NameText(zone.DaylightName), "EDT");
}

TEST(LinuxClock, TellsAZoneInStandardTime) {
  const ZoneSetting setting(NewYork);
  StandingClock system;
  system.StandAt(Winter);
  LinuxClock clock;
  const TimeZoneInformation &zone = clock.GetTimeZoneInformation();
  EXPECT_EQ(zone.Period, ZonePeriod::Standard);
  EXPECT_EQ(zone.Bias, 300);
  EXPECT_EQ(NameText(zone.StandardName), "EST");
  EXPECT_EQ(NameText(zone.DaylightName), "EDT");
}

TEST(LinuxClock, TellsAZoneThatKnowsNoDaylightTime) {
  const ZoneSetting setting(Kathmandu);
  StandingClock system;
  system.StandAt(Summer);
  LinuxClock clock;
  const TimeZoneInformation &zone = clock.GetTimeZoneInformation();
  EXPECT_EQ(zone.Period, ZonePeriod::Unknown);
  EXPECT_EQ(zone.Bias, -345);
  EXPECT_EQ(NameText(zone.StandardName), "+0545");
}

TEST(LinuxClock, TellsDaylightTimeOfHalfAnHour) {
  const ZoneSetting setting(LordHowe);
  StandingClock system;
  system.StandAt(Winter);
  LinuxClock clock;
  const TimeZoneInformation &zone = clock.GetTimeZoneInformation();
  EXPECT_EQ(zone.Period, ZonePeriod::Daylight);
  EXPECT_EQ(zone.Bias, -630);
  EXPECT_EQ(zone.DaylightBias, -30);
}

TEST(LinuxClock, TellsDaylightTimeThatIsBehindStandardTime) {
  const ZoneSetting setting(Dublin);
  StandingClock system;
  LinuxClock clock;
  system.StandAt(Winter);
  EXPECT_EQ(clock.GetTimeZoneInformation().Period, ZonePeriod::Daylight);
  EXPECT_EQ(clock.GetTimeZoneInformation().Bias, -60);
  EXPECT_EQ(clock.GetTimeZoneInformation().DaylightBias, 60);
  EXPECT_EQ(NameText(clock.GetTimeZoneInformation().DaylightName), "GMT");
  system.StandAt(Summer);
  EXPECT_EQ(clock.GetTimeZoneInformation().Period, ZonePeriod::Standard);
  EXPECT_EQ(clock.GetTimeZoneInformation().Bias, -60);
}

TEST(LinuxClock, TakesTheUsualHourWhereDaylightTimeNeverEnds) {
  const ZoneSetting setting(AlwaysDaylight);
  StandingClock system;
  LinuxClock clock;
  for (const std::time_t moment : {Winter, Summer}) {
    system.StandAt(moment);
    const TimeZoneInformation &zone = clock.GetTimeZoneInformation();
    EXPECT_EQ(zone.Period, ZonePeriod::Daylight);
    EXPECT_EQ(zone.Bias, 180);
    EXPECT_EQ(zone.DaylightBias, -60);
    EXPECT_EQ(NameText(zone.DaylightName), "XDT");
  }
}

TEST(LinuxClock, FeelsADaylightChangeWithoutAReadingInBetween) {
  const ZoneSetting setting(NewYork);
  StandingClock system;
  LinuxClock clock;
  system.StandAt(SpringForward - 1);
  EXPECT_EQ(GeneralText(clock.Now()), GeneralText(DateTime::Of(2025, 3, 9, 1, 59, 59)));
  EXPECT_EQ(clock.GetTimeZoneInformation().Period, ZonePeriod::Standard);
  system.StandAt(SpringForward);
  EXPECT_EQ(clock.GetTimeZoneInformation().Period, ZonePeriod::Daylight);
  EXPECT_EQ(GeneralText(clock.Now()), GeneralText(DateTime::Of(2025, 3, 9, 3, 0, 0)));
}

TEST(LinuxClock, KeepsLocalTimeAndBiasTogetherWhileTheCoarseClockLags) {
  const ZoneSetting setting(NewYork);
  StandingClock system;
  LinuxClock clock;
  system.CoarseLagNs = 4000000;
  system.StandAt(SpringForward);
  EXPECT_EQ(GeneralText(clock.Now()), GeneralText(DateTime::Of(2025, 3, 9, 3, 0, 0)));
  EXPECT_EQ(clock.GetTimeZoneInformation().Period, ZonePeriod::Daylight);
}

TEST(LinuxClock, ReturnsTheZoneOfAReadingWithoutReadingAgain) {
  const ZoneSetting setting(NewYork);
  StandingClock system;
  LinuxClock clock;
  system.StandAt(SpringForward - 1);
  clock.Now();
  system.StandAt(SpringForward);
  EXPECT_EQ(clock.ZoneOfReading().Period, ZonePeriod::Standard);
  EXPECT_EQ(system.RealTimeReadings, 1);
  EXPECT_EQ(clock.GetTimeZoneInformation().Period, ZonePeriod::Daylight);
  EXPECT_EQ(system.RealTimeReadings, 2);
  EXPECT_EQ(clock.ZoneOfReading().Period, ZonePeriod::Daylight);
}

TEST(LinuxClock, FeelsAStepBackIntoTheOtherPeriod) {
  const ZoneSetting setting(NewYork);
  StandingClock system;
  LinuxClock clock;
  system.StandAt(SpringForward + 1);
  EXPECT_EQ(clock.GetTimeZoneInformation().Period, ZonePeriod::Daylight);
  system.StandAt(SpringForward - 1);
  EXPECT_EQ(clock.GetTimeZoneInformation().Period, ZonePeriod::Standard);
}

TEST(LinuxClock, LearnsTheNewYear) {
  // Istanbul gave up daylight time in 2016.
  const ZoneSetting setting("Europe/Istanbul");
  StandingClock system;
  LinuxClock clock;
  system.StandAt(1451649600);  // 1 January 2016, 12:00:00 UTC
  EXPECT_EQ(clock.GetTimeZoneInformation().Period, ZonePeriod::Standard);
  system.StandAt(1514808000);  // 1 January 2018, 12:00:00 UTC
  EXPECT_EQ(clock.GetTimeZoneInformation().Period, ZonePeriod::Unknown);
  EXPECT_EQ(clock.GetTimeZoneInformation().Bias, -180);
}

TEST(GetTickCount, WrapsAsASignedNumberOf32Bits) {
  StandingClock system;
  LinuxClock clock;
  system.MonotonicMs = 0;
  EXPECT_EQ(clock.GetTickCount(), 0);
  system.MonotonicMs = 0x7FFFFFFF;
  EXPECT_EQ(clock.GetTickCount(), INT32_MAX);
  system.MonotonicMs = 0x80000000;
  EXPECT_EQ(clock.GetTickCount(), INT32_MIN);
  system.MonotonicMs = 0xFFFFFFFF;
  EXPECT_EQ(clock.GetTickCount(), -1);
  system.MonotonicMs = 0x100000000;
  EXPECT_EQ(clock.GetTickCount(), 0);
  system.MonotonicMs = 0x10000000000 + 59;
  EXPECT_EQ(clock.GetTickCount(), 59);
}

TEST(GetTickCount, DoesNotFeelAStepOfTheWallClock) {
  StandingClock system;
  LinuxClock clock;
  const std::int32_t before = clock.GetTickCount();
  system.StandAt(Summer + 86400);
  EXPECT_EQ(clock.GetTickCount(), before);
}

/// A machine whose clock takes every setting, and the clock on it.
struct SettingBench {
  StandingClock System;
  LinuxClock Clock;
};

TEST(SetSystemTime, AsksTheKernelForTheMomentInUtc) {
  const ZoneSetting zone(NewYork);
  SettingBench bench;
  EXPECT_TRUE(bench.Clock.SetSystemTime({2025, 7, 0, 16, 12, 0, 0, 250}));
  ASSERT_EQ(bench.System.Settings.size(), 1U);
  EXPECT_EQ(bench.System.Settings[0].tv_sec, Summer);
  EXPECT_EQ(bench.System.Settings[0].tv_nsec, 250000000);

  EXPECT_TRUE(bench.Clock.SetSystemTime({1970, 1, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(bench.System.Settings.back().tv_sec, 0);
  EXPECT_EQ(bench.System.Settings.back().tv_nsec, 0);
  EXPECT_TRUE(bench.Clock.SetSystemTime({2036, 2, 0, 29, 23, 59, 59, 999}));
  EXPECT_EQ(bench.System.Settings.back().tv_sec, 2087942399);
  EXPECT_EQ(bench.System.Settings.back().tv_nsec, 999000000);
}

TEST(SetSystemTime, DoesNotLookAtTheDayOfTheWeek) {
  SettingBench bench;
  for (const int day_of_week : {0, 3, 6, 7, 65535}) {
    EXPECT_TRUE(bench.Clock.SetSystemTime(
        {2025, 7, static_cast<std::uint16_t>(day_of_week), 16, 12, 0, 0, 0}));
    EXPECT_EQ(bench.System.Settings.back().tv_sec, Summer);
  }
}

TEST(SetSystemTime, DoesNotBotherTheKernelWithWhatNoClockShows) {
  SettingBench bench;
  for (const SystemTime &moment :
       {SystemTime{1600, 12, 0, 31, 0, 0, 0, 0}, SystemTime{2025, 13, 0, 1, 0, 0, 0, 0},
        SystemTime{2025, 2, 0, 29, 0, 0, 0, 0}, SystemTime{2025, 7, 0, 16, 24, 0, 0, 0},
        SystemTime{2025, 7, 0, 16, 12, 60, 0, 0}, SystemTime{2025, 7, 0, 16, 12, 0, 60, 0},
        SystemTime{2025, 7, 0, 16, 12, 0, 0, 1000}}) {
    EXPECT_FALSE(bench.Clock.SetSystemTime(moment));
  }
  EXPECT_TRUE(bench.System.Settings.empty());
}

TEST(SetSystemTime, IsRefusedWhereTheKernelRefuses) {
  SettingBench bench;
  EXPECT_FALSE(bench.Clock.SetSystemTime({1969, 12, 0, 31, 23, 59, 59, 999}));
  EXPECT_EQ(bench.System.Settings.size(), 1U);

  EXPECT_TRUE(bench.Clock.SetSystemTime({2025, 7, 0, 16, 12, 0, 0, 0}));
  bench.System.SettingError = EPERM;
  EXPECT_FALSE(bench.Clock.SetSystemTime({2025, 7, 0, 16, 12, 0, 0, 0}));
}

TEST(SetLocalDate, KeepsTheTimeOfDayInTheZoneOfThatDate) {
  const ZoneSetting zone(NewYork);
  SettingBench bench;
  bench.System.StandAt(Summer, 250000000);  // 08:00 in New York
  bench.Clock.SetLocalDate(DateTime::Of(2025, 1, 16, 23, 59, 59));
  EXPECT_EQ(bench.System.Settings.back().tv_sec, Winter + 3600);
  EXPECT_EQ(bench.System.Settings.back().tv_nsec, 0);
}

TEST(SetLocalTime, KeepsTheDate) {
  const ZoneSetting zone(NewYork);
  SettingBench bench;
  bench.System.StandAt(Summer, 250000000);
  bench.Clock.SetLocalTime(DateTime::Of(1978, 8, 3, 7, 30, 15));
  EXPECT_EQ(bench.System.Settings.back().tv_sec, Summer - 1785);
  EXPECT_EQ(bench.System.Settings.back().tv_nsec, 0);
}

TEST(SetLocalTime, FailsWithPermissionDeniedWhereTheKernelRefuses) {
  SettingBench bench;
  EXPECT_NO_THROW(bench.Clock.SetLocalTime(DateTime{0.5}));
  EXPECT_NO_THROW(bench.Clock.SetLocalDate(DateTime::Of(2025, 7, 16)));
  bench.System.SettingError = EPERM;
  ExpectRuntimeError(70, [&] { bench.Clock.SetLocalTime(DateTime{0.5}); });
  ExpectRuntimeError(70, [&] { bench.Clock.SetLocalDate(DateTime::Of(2025, 7, 16)); });
}

}  // namespace
}  // namespace cvl
