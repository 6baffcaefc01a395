// What every clock keeps to, the one for tests included.

#include "platform/clock.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "platform/linux/linux_clock.h"
#include "tests/platform/standing_clock.h"
#include "tests/platform/zone_database.h"
#include "tests/support/expect_error.h"
#include "tests/support/fake_clock.h"

namespace cvl {
namespace {

TEST(ZoneNameText, EndsAtTheTerminatorOrWithTheRecord) {
  EXPECT_EQ(TextOf(ZoneName{}), "");
  EXPECT_EQ(TextOf(ZoneNameOf(u"CET")), "CET");
  ZoneName full;
  full.fill(u'x');
  EXPECT_EQ(TextOf(full), std::string(32, 'x'));
}

TEST(ZoneNameText, HasAQuestionMarkForWhatLatin1Lacks) {
  EXPECT_EQ(TextOf(ZoneNameOf(u"\u00E4\u00FF\u0100\u6771")), "\xE4\xFF??");
}

TEST(IsSettable, TakesEachFieldUpToItsEnds) {
  EXPECT_TRUE(IsSettable({1601, 1, 0, 1, 0, 0, 0, 0}));
  EXPECT_TRUE(IsSettable({9999, 12, 6, 31, 23, 59, 59, 999}));
  EXPECT_FALSE(IsSettable({1600, 12, 0, 31, 23, 59, 59, 999}));
  EXPECT_FALSE(IsSettable({2025, 0, 0, 1, 0, 0, 0, 0}));
  EXPECT_FALSE(IsSettable({2025, 13, 0, 1, 0, 0, 0, 0}));
  EXPECT_FALSE(IsSettable({2025, 1, 0, 0, 0, 0, 0, 0}));
  EXPECT_FALSE(IsSettable({2025, 1, 0, 32, 0, 0, 0, 0}));
  EXPECT_FALSE(IsSettable({2025, 1, 0, 1, 24, 0, 0, 0}));
  EXPECT_FALSE(IsSettable({2025, 1, 0, 1, 0, 60, 0, 0}));
  EXPECT_FALSE(IsSettable({2025, 1, 0, 1, 0, 0, 60, 0}));
  EXPECT_FALSE(IsSettable({2025, 1, 0, 1, 0, 0, 0, 1000}));
}

TEST(IsSettable, KnowsTheLengthOfEachMonth) {
  constexpr std::uint16_t Lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (std::uint16_t month = 1; month <= 12; ++month) {
    const std::uint16_t length = Lengths[month - 1];
    EXPECT_TRUE(IsSettable({2025, month, 0, length, 0, 0, 0, 0})) << month;
    EXPECT_FALSE(IsSettable({2025, month, 0, static_cast<std::uint16_t>(length + 1), 0, 0, 0, 0}))
        << month;
  }
  EXPECT_TRUE(IsSettable({2024, 2, 0, 29, 0, 0, 0, 0}));
  EXPECT_TRUE(IsSettable({2000, 2, 0, 29, 0, 0, 0, 0}));
  EXPECT_FALSE(IsSettable({1900, 2, 0, 29, 0, 0, 0, 0}));
}

TEST(IsSettable, DoesNotStumbleOverFieldsThatOnlyWrap) {
  // A month and a day one byte further on must not pass for themselves.
  EXPECT_FALSE(IsSettable({2025, 256 + 7, 0, 16, 0, 0, 0, 0}));
  EXPECT_FALSE(IsSettable({2025, 7, 0, 256 + 16, 0, 0, 0, 0}));
  EXPECT_FALSE(IsSettable({2025, 7, 0, 16, 256, 0, 0, 0}));
  EXPECT_FALSE(IsSettable({2025, 65535, 0, 65535, 65535, 65535, 65535, 65535}));
}

/// Each bench puts its clock at 16 July 2025, 12:00:00.250 UTC, four hours east of UTC, on a
/// machine that takes every setting and moves its clock there.
struct LinuxBench {
  ZoneSetting Zone{"GST-4"};
  StandingClock System;
  LinuxClock Subject;

  LinuxBench() {
    System.StandAt(1752667200, 250000000);
    System.MovesWhenSet = true;
  }
  void RefuseAll() { System.SettingError = EPERM; }
};

struct FakeBench {
  FakeClock Subject;

  FakeBench() {
    Subject.UtcMs = 1752667200250;
    Subject.Zone.Bias = -240;
    Subject.MovesWhenSet = true;
  }
  void RefuseAll() { Subject.RefusesAll = true; }
};

template <class Bench>
class EveryClock : public testing::Test {
 protected:
  Bench Machine;
  Clock &Subject = Machine.Subject;
};

using Benches = testing::Types<LinuxBench, FakeBench>;
TYPED_TEST_SUITE(EveryClock, Benches, );

TYPED_TEST(EveryClock, TellsWholeSecondsHereAndMillisecondsThere) {
  EXPECT_EQ(GeneralText(this->Subject.Now()), GeneralText(DateTime::Of(2025, 7, 16, 16, 0, 0)));
  EXPECT_EQ(this->Subject.GetLocalTime(), (SystemTime{2025, 7, 3, 16, 16, 0, 0, 250}));
}

TYPED_TEST(EveryClock, TellsTheBiasFromLocalTimeToUtc) {
  const TimeZoneInformation &zone = this->Subject.GetTimeZoneInformation();
  EXPECT_EQ(zone.Period, ZonePeriod::Unknown);
  EXPECT_EQ(zone.Bias, -240);
}

TYPED_TEST(EveryClock, StepsToAMomentInUtc) {
  EXPECT_TRUE(this->Subject.SetSystemTime({2025, 7, 0, 16, 20, 30, 15, 999}));
  EXPECT_EQ(this->Subject.GetLocalTime(), (SystemTime{2025, 7, 4, 17, 0, 30, 15, 999}));
}

TYPED_TEST(EveryClock, TakesTheFirstMomentOf1970AndNoneBefore) {
  EXPECT_FALSE(this->Subject.SetSystemTime({1969, 12, 0, 31, 23, 59, 59, 999}));
  EXPECT_EQ(GeneralText(this->Subject.Now()), GeneralText(DateTime::Of(2025, 7, 16, 16, 0, 0)));
  EXPECT_TRUE(this->Subject.SetSystemTime({1970, 1, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(GeneralText(this->Subject.Now()), GeneralText(DateTime::Of(1970, 1, 1, 4, 0, 0)));
}

TYPED_TEST(EveryClock, StandsWhereItIsWhenASettingIsRefused) {
  EXPECT_FALSE(this->Subject.SetSystemTime({2025, 13, 0, 16, 20, 30, 15, 999}));
  this->Machine.RefuseAll();
  EXPECT_FALSE(this->Subject.SetSystemTime({2025, 7, 0, 16, 20, 30, 15, 999}));
  ExpectRuntimeError(70, [&] { this->Subject.SetLocalDate(DateTime::Of(2024, 2, 29)); });
  ExpectRuntimeError(70, [&] { this->Subject.SetLocalTime(DateTime{0.5}); });
  EXPECT_EQ(this->Subject.GetLocalTime(), (SystemTime{2025, 7, 3, 16, 16, 0, 0, 250}));
}

TYPED_TEST(EveryClock, SetsTheDateAndKeepsTheTimeOfDay) {
  this->Subject.SetLocalDate(DateTime::Of(2024, 2, 29, 7, 7, 7));
  EXPECT_EQ(this->Subject.GetLocalTime(), (SystemTime{2024, 2, 4, 29, 16, 0, 0, 0}));
}

TYPED_TEST(EveryClock, SetsTheTimeOfDayAndKeepsTheDate) {
  this->Subject.SetLocalTime(DateTime::Of(1978, 8, 3, 7, 30, 15));
  EXPECT_EQ(this->Subject.GetLocalTime(), (SystemTime{2025, 7, 3, 16, 7, 30, 15, 0}));
}

TEST(FakeClock, TakesEachReadingOfTheTimeFromItsScript) {
  FakeClock clock;
  clock.Script = {1000, 2001};
  EXPECT_EQ(GeneralText(clock.Now()), GeneralText(DateTime::Of(1970, 1, 1, 0, 0, 1)));
  EXPECT_EQ(clock.GetLocalTime().Milliseconds, 1);
  EXPECT_EQ(GeneralText(clock.Now()),
            GeneralText(DateTime::Of(1970, 1, 1, 0, 0, 2)));  // there it stands from now on
  clock.TickScript = {5, -7};
  EXPECT_EQ(clock.GetTickCount(), 5);
  EXPECT_EQ(clock.GetTickCount(), -7);
  EXPECT_EQ(clock.GetTickCount(), -7);
  EXPECT_EQ(clock.NowReadings, 2);
  EXPECT_EQ(clock.LocalTimeReadings, 1);
  EXPECT_EQ(clock.ZoneReadings, 0);
  EXPECT_EQ(clock.TickReadings, 3);
}

TEST(FakeClock, RemembersWhatItWasAskedForAndStandsStill) {
  FakeClock clock;
  clock.StandAtLocal(DateTime::Of(2025, 7, 16, 12, 0, 0), 250);
  EXPECT_TRUE(clock.SetSystemTime({2025, 7, 0, 16, 20, 30, 15, 999}));
  EXPECT_FALSE(clock.SetSystemTime({2025, 7, 0, 16, 24, 0, 0, 0}));
  clock.SetLocalDate(DateTime{45000});
  clock.SetLocalTime(DateTime{0.5});
  EXPECT_EQ(clock.SystemTimesSet.size(), 2U);
  EXPECT_EQ(clock.SystemTimesSet[1].Hour, 24);
  EXPECT_EQ(clock.LocalDatesSet, std::vector<DateTime>{DateTime{45000}});
  EXPECT_EQ(clock.LocalTimesSet, std::vector<DateTime>{DateTime{0.5}});
  EXPECT_EQ(GeneralText(clock.Now()), GeneralText(DateTime::Of(2025, 7, 16, 12, 0, 0)));
}

TEST(FakeClock, StandsAtALocalTimeOfItsZone) {
  FakeClock clock;
  clock.Zone.Period = ZonePeriod::Daylight;
  clock.Zone.Bias = 300;
  clock.Zone.DaylightBias = -60;
  clock.StandAtLocal(DateTime::Of(2025, 7, 16, 8, 0, 0), 7);
  EXPECT_EQ(clock.UtcMs, 1752667200007);
  EXPECT_EQ(GeneralText(clock.Now()), GeneralText(DateTime::Of(2025, 7, 16, 8, 0, 0)));
}

TEST(FakeClock, LetsTimeAndTicksPassTogether) {
  FakeClock clock;
  clock.UtcMs = 1000;
  clock.TickCount = INT32_MAX;
  clock.Pass(1);
  EXPECT_EQ(clock.UtcMs, 1001);
  EXPECT_EQ(clock.TickCount, INT32_MIN);
}

}  // namespace
}  // namespace cvl
