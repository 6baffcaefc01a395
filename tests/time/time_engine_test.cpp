#include "time/time_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/expect_error.h"
#include "tests/support/fake_clock.h"
#include "time/timestamp_encoder.h"

namespace cvl {
namespace {

using testing::ElementsAre;

constexpr std::u16string_view ThirtyThreeUnits = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456";

/// A time engine on a clock that stands at 3 October 2002, 12:00:00.250, in a zone at UTC.
struct Bench {
  FakeClock Clock;
  BaseDates Dates;
  ZoneState Zone;
  TextBox SvrCurrent;
  TimeEngine Time{Clock, Dates, Zone, SvrCurrent};

  Bench() {
    Dates.NTPEpoch = DateTime::Of(1900, 1, 1);
    Dates.UnixEpoch = DateTime::Of(1970, 1, 1);
    Dates.StampEpoch = DateTime::Of(1978, 8, 3);
    Dates.ClientEpoch = DateTime::Of(2002, 1, 1);
  }

  /// Puts the clock five hours west of UTC, with daylight time an hour ahead of that.
  void MoveToNewYork(ZonePeriod period) {
    Clock.Zone.Period = period;
    Clock.Zone.Bias = 300;
    Clock.Zone.DaylightBias = -60;
    Clock.Zone.StandardName = ZoneNameOf(u"EST");
    Clock.Zone.DaylightName = ZoneNameOf(u"EDT");
  }
};

TEST(GrabBias, AddsTheDaylightBiasInDaylightTime) {
  Bench bench;
  bench.MoveToNewYork(ZonePeriod::Daylight);
  EXPECT_EQ(bench.Time.GrabBias(), 14400);
}

TEST(GrabBias, UsesBiasAloneInStandardTime) {
  Bench bench;
  bench.MoveToNewYork(ZonePeriod::Standard);
  EXPECT_EQ(bench.Time.GrabBias(), 18000);
}

TEST(GrabBias, UsesBiasAloneWhereThePeriodIsUnknown) {
  Bench bench;
  bench.MoveToNewYork(ZonePeriod::Unknown);
  EXPECT_EQ(bench.Time.GrabBias(), 18000);
}

TEST(GrabBias, NeverReadsTheStandardBias) {
  Bench bench;
  bench.Clock.Zone.StandardBias = 15;
  for (const ZonePeriod period : {ZonePeriod::Unknown, ZonePeriod::Standard}) {
    bench.MoveToNewYork(period);
    EXPECT_EQ(bench.Time.GrabBias(), 18000);
  }
  bench.MoveToNewYork(ZonePeriod::Daylight);
  EXPECT_EQ(bench.Time.GrabBias(), 14400);
}

TEST(GrabBias, IsNegativeEastOfGreenwich) {
  Bench bench;
  bench.Clock.Zone.Bias = -345;
  EXPECT_EQ(bench.Time.GrabBias(), -20700);
}

TEST(GrabBias, FailsWithOverflowOnABiasThatNoZoneHas) {
  Bench bench;
  bench.Clock.Zone.Bias = 35791394;
  EXPECT_EQ(bench.Time.GrabBias(), 2147483640);
  bench.Clock.Zone.Bias = 35791395;
  ExpectRuntimeError(6, [&] { return bench.Time.GrabBias(); });

  bench.Clock.Zone.Period = ZonePeriod::Daylight;
  bench.Clock.Zone.Bias = INT32_MAX;
  bench.Clock.Zone.DaylightBias = 1;
  ExpectRuntimeError(6, [&] { return bench.Time.GrabBias(); });
}

TEST(GrabBias, AsksTheZoneEachTime) {
  Bench bench;
  bench.MoveToNewYork(ZonePeriod::Standard);
  bench.Time.svrBIAS();
  bench.MoveToNewYork(ZonePeriod::Daylight);
  EXPECT_EQ(bench.Time.GrabBias(), 14400);
  EXPECT_EQ(bench.Zone.TZBias, 300);  // until svrBIAS runs again
}

TEST(GrabTime, IsTheMomentInUtc) {
  Bench bench;
  EXPECT_THAT(bench.Time.GrabTime(), ElementsAre(0xC1, 0x46, 0xAF, 0xC0, 0x40, 0x0A, 0x0A, 0x0A));
}

TEST(GrabTime, IsTheSameInEveryZone) {
  Bench bench;
  const NtpTimestamp at_utc = bench.Time.GrabTime();
  bench.MoveToNewYork(ZonePeriod::Daylight);
  EXPECT_EQ(bench.Time.GrabTime(), at_utc);
  for (int bias = -14 * 60; bias <= 12 * 60; bias += 15) {
    bench.Clock.Zone = {};
    bench.Clock.Zone.Bias = bias;
    EXPECT_EQ(bench.Time.GrabTime(), at_utc) << bias;
  }
}

TEST(GrabTime, IsExactInEverySecondOfAnHourInEveryQuarterOfADay) {
  Bench bench;
  bench.Clock.Zone.Bias = 345;
  for (int quarter = 0; quarter < 4; ++quarter) {
    const std::int64_t begin = 1033646400 + quarter * 21600;
    for (std::int64_t second = begin; second < begin + 3600; ++second) {
      bench.Clock.UtcMs = second * 1000 + 1;
      ASSERT_EQ(bench.Time.GrabTime(), EncodeTimestamp(static_cast<double>(second) + 2208988800, 1))
          << second;
    }
  }
}

TEST(GrabTime, CountsFromStampEpochWhileItIsInUse) {
  Bench bench;
  bench.Dates.UseStampEpoch = true;
  // 0xC146AFC0 less 2479939200 seconds.
  EXPECT_THAT(bench.Time.GrabTime(), ElementsAre(0x2D, 0x75, 0xD1, 0x40, 0x40, 0x0A, 0x0A, 0x0A));

  bench.Dates.UseStampEpoch = false;
  EXPECT_THAT(bench.Time.GrabTime(), ElementsAre(0xC1, 0x46, 0xAF, 0xC0, 0x40, 0x0A, 0x0A, 0x0A));
}

TEST(GrabTime, TakesSecondsFromItsFirstReadingAndMillisecondsFromItsSecond) {
  Bench bench;
  bench.Clock.Script = {1033646400998, 1033646401002};
  // The second has turned over in between, and the stamp stands nearly a second behind.
  EXPECT_THAT(bench.Time.GrabTime(), ElementsAre(0xC1, 0x46, 0xAF, 0xC0, 0x01, 0x83, 0x12, 0x6F));
  EXPECT_TRUE(bench.Clock.Script.empty());
  EXPECT_EQ(bench.Clock.NowReadings, 1);
  EXPECT_EQ(bench.Clock.LocalTimeReadings, 1);
  EXPECT_EQ(bench.Clock.ZoneReadings, 0);
}

TEST(GrabTime, CountsSecondsAgainWhenSecondZoneOrBaseChanges) {
  Bench bench;
  bench.Clock.Script = {1033646400250, 1033646400250, 1033646401250, 1033646401250};
  EXPECT_THAT(bench.Time.GrabTime(), ElementsAre(0xC1, 0x46, 0xAF, 0xC0, 0x40, 0x0A, 0x0A, 0x0A));
  EXPECT_THAT(bench.Time.GrabTime(), ElementsAre(0xC1, 0x46, 0xAF, 0xC1, 0x40, 0x0A, 0x0A, 0x0A));
  EXPECT_EQ(bench.Time.SecondsSince(bench.Dates.UnixEpoch), 1033646401);
  // The same local time in another zone is another moment.
  bench.Clock.Zone.Bias = 60;
  bench.Clock.UtcMs += 3600000;
  EXPECT_EQ(bench.Time.SecondsSince(bench.Dates.UnixEpoch), 1033650001);
}

TEST(LastNow, IsTheLastReadingOfWholeSeconds) {
  Bench bench;
  const std::int64_t noon = 1033646400000;
  bench.Clock.Script = {noon + 1000, noon + 2000, noon + 3000};
  bench.Time.Now();
  EXPECT_EQ(bench.Time.LastNow(), DateTime::Of(2002, 10, 3, 12, 0, 1));
  bench.Time.GrabTime();  // its seconds, then its milliseconds
  EXPECT_EQ(bench.Time.LastNow(), DateTime::Of(2002, 10, 3, 12, 0, 2));
  EXPECT_TRUE(bench.Clock.Script.empty());
}

TEST(GrabTime, FailsWithOverflowInMillisecond999) {
  Bench bench;
  bench.Clock.UtcMs = 1033646400998;
  EXPECT_NO_THROW(bench.Time.GrabTime());
  bench.Clock.UtcMs = 1033646400999;
  ExpectRuntimeError(6, [&] { return bench.Time.GrabTime(); });
  ExpectRuntimeError(6, [&] { return bench.Time.GrabTime(); });
}

TEST(GrabTime, IsMadeAnewForEachSecondAndMillisecond) {
  Bench bench;
  for (const std::int64_t moment : {1033646400250, 1033646400250, 1033646401250, 1033646401251,
                                    1033646401999, 1033646401251, 1033646400251}) {
    bench.Clock.UtcMs = moment;
    const auto milliseconds = static_cast<int>(moment % 1000);
    if (milliseconds == 999) {
      ExpectRuntimeError(6, [&] { return bench.Time.GrabTime(); });
      continue;
    }
    const auto seconds = static_cast<double>(moment / 1000 + 2208988800);
    EXPECT_EQ(bench.Time.GrabTime(), EncodeTimestamp(seconds, milliseconds)) << moment;
    EXPECT_EQ(bench.Time.GrabCVLST(), EncodeTimestamp(seconds - 3218832000, milliseconds));
  }
}

TEST(GrabTime, JudgesMillisecond999ByTheSecondReadingAlone) {
  Bench bench;
  bench.Clock.Script = {1033646400999, 1033646401000};
  EXPECT_NO_THROW(bench.Time.GrabTime());
  bench.Clock.Script = {1033646400998, 1033646400999};
  ExpectRuntimeError(6, [&] { return bench.Time.GrabTime(); });
}

TEST(GrabTime, FailsFrom7February2036On) {
  Bench bench;
  bench.Clock.StandAtUtc(DateTime::Of(2036, 2, 7, 6, 28, 15), 998);
  EXPECT_THAT(bench.Time.GrabTime(), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7D, 0xEE, 0x91));
  bench.Clock.StandAtUtc(DateTime::Of(2036, 2, 7, 6, 28, 16), 0);
  ExpectRuntimeError(6, [&] { return bench.Time.GrabTime(); });
}

TEST(GrabTime, GoesOnPast2036WhileStampEpochIsInUse) {
  Bench bench;
  bench.Dates.UseStampEpoch = true;
  bench.Clock.StandAtUtc(DateTime::Of(2036, 2, 7, 6, 28, 16), 250);
  EXPECT_NO_THROW(bench.Time.GrabTime());
}

TEST(GrabTime, StaysWhereItIsWhenADaylightChangeMovesLocalTime) {
  Bench bench;
  bench.MoveToNewYork(ZonePeriod::Daylight);
  bench.Clock.StandAtLocal(DateTime::Of(2002, 10, 27, 1, 59, 59), 250);
  const NtpTimestamp before = bench.Time.GrabTime();
  bench.Clock.UtcMs += 1000;
  bench.MoveToNewYork(ZonePeriod::Standard);
  NtpTimestamp after = bench.Time.GrabTime();
  EXPECT_EQ(bench.Clock.Now(), DateTime::Of(2002, 10, 27, 1, 0, 0));
  --after[3];
  EXPECT_EQ(after, before);
}

TEST(GrabCVLST, CountsFromClientEpochAlways) {
  Bench bench;
  bench.Clock.StandAtUtc(DateTime::Of(2002, 1, 2), 250);
  EXPECT_THAT(bench.Time.GrabCVLST(), ElementsAre(0x00, 0x01, 0x51, 0x80, 0x40, 0x0A, 0x0A, 0x0A));
  bench.Dates.UseStampEpoch = true;
  EXPECT_THAT(bench.Time.GrabCVLST(), ElementsAre(0x00, 0x01, 0x51, 0x80, 0x40, 0x0A, 0x0A, 0x0A));
}

TEST(GrabCVLST, FailsBeforeItsEpoch) {
  Bench bench;
  bench.Clock.StandAtUtc(DateTime::Of(2002, 1, 1), 250);
  EXPECT_THAT(bench.Time.GrabCVLST(), ElementsAre(0, 0, 0, 0, 0x40, 0x0A, 0x0A, 0x0A));
  bench.Clock.StandAtUtc(DateTime::Of(2001, 12, 31, 23, 59, 59), 998);
  ExpectRuntimeError(6, [&] { return bench.Time.GrabCVLST(); });
}

TEST(GrabCVLST, FailsInMillisecond999AndGoesOnPast2036) {
  Bench bench;
  bench.Clock.StandAtUtc(DateTime::Of(2036, 2, 7, 6, 28, 16), 998);
  EXPECT_NO_THROW(bench.Time.GrabCVLST());
  bench.Clock.StandAtUtc(DateTime::Of(2036, 2, 7, 6, 28, 16), 999);
  ExpectRuntimeError(6, [&] { return bench.Time.GrabCVLST(); });
}

TEST(GrabCVLST, TakesSecondsFromItsFirstReadingAndMillisecondsFromItsSecond) {
  Bench bench;
  const std::int64_t day = UtcMsOf(DateTime::Of(2002, 1, 2));
  bench.Clock.Script = {day + 998, day + 1001};
  EXPECT_THAT(bench.Time.GrabCVLST(), ElementsAre(0x00, 0x01, 0x51, 0x80, 0x00, 0x42, 0x89, 0x37));
}

TEST(GrabTimeValue, IsTheWholeSecondsInUtc) {
  Bench bench;
  bench.MoveToNewYork(ZonePeriod::Daylight);
  EXPECT_THAT(bench.Time.GrabTimeValue(), ElementsAre(0xC1, 0x46, 0xAF, 0xC0));
  bench.Clock.UtcMs += 749;
  EXPECT_THAT(bench.Time.GrabTimeValue(), ElementsAre(0xC1, 0x46, 0xAF, 0xC0));
  bench.Clock.UtcMs += 1;
  EXPECT_THAT(bench.Time.GrabTimeValue(), ElementsAre(0xC1, 0x46, 0xAF, 0xC1));
}

TEST(GrabTimeValue, ReadsNoMillisecondsAndKnowsNoMillisecond999) {
  Bench bench;
  bench.Clock.UtcMs = 1033646400999;
  EXPECT_THAT(bench.Time.GrabTimeValue(), ElementsAre(0xC1, 0x46, 0xAF, 0xC0));
  EXPECT_EQ(bench.Clock.LocalTimeReadings, 0);
}

TEST(GrabTimeValue, CountsFromNTPEpochAlsoWhileStampEpochIsInUse) {
  Bench bench;
  bench.Dates.UseStampEpoch = true;
  EXPECT_THAT(bench.Time.GrabTimeValue(), ElementsAre(0xC1, 0x46, 0xAF, 0xC0));
}

TEST(GrabTimeValue, SendsAZeroByteAsZero) {
  Bench bench;
  bench.Clock.StandAtUtc(DateTime::Of(1900, 1, 1));
  EXPECT_THAT(bench.Time.GrabTimeValue(), ElementsAre(0, 0, 0, 0));
}

TEST(GrabTimeValue, FailsFrom7February2036On) {
  Bench bench;
  bench.Clock.StandAtUtc(DateTime::Of(2036, 2, 7, 6, 28, 15));
  EXPECT_THAT(bench.Time.GrabTimeValue(), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF));
  bench.Clock.StandAtUtc(DateTime::Of(2036, 2, 7, 6, 28, 16));
  ExpectRuntimeError(6, [&] { return bench.Time.GrabTimeValue(); });
}

TEST(SecondsSince, IsCountedInUtcFromAnyBase) {
  Bench bench;
  bench.MoveToNewYork(ZonePeriod::Daylight);
  EXPECT_EQ(bench.Time.SecondsSince(bench.Dates.UnixEpoch), 1033646400);
  EXPECT_EQ(bench.Time.SecondsSince(bench.Dates.NTPEpoch), 3242635200.0);
}

TEST(GrabLocalTime, FillsTheWholeRecord) {
  Bench bench;
  bench.MoveToNewYork(ZonePeriod::Daylight);
  SystemTime record{1, 2, 3, 4, 5, 6, 7, 8};
  bench.Time.GrabLocalTime(record);
  EXPECT_EQ(record, (SystemTime{2002, 10, 4, 3, 8, 0, 0, 250}));
}

TEST(SvrBias, TakesTheNameAndBiasOfDaylightTime) {
  Bench bench;
  bench.MoveToNewYork(ZonePeriod::Daylight);
  bench.Time.svrBIAS();
  EXPECT_EQ(bench.Zone.TZBias, 240);
  EXPECT_EQ(bench.Zone.TZName, "EDT");
  EXPECT_EQ(bench.SvrCurrent.Tip.Text(), " Time Zone: EDT ");
}

TEST(SvrBias, TakesTheNameAndBiasOfStandardTimeInEveryOtherCase) {
  for (const ZonePeriod period : {ZonePeriod::Standard, ZonePeriod::Unknown}) {
    Bench bench;
    bench.MoveToNewYork(period);
    bench.Clock.Zone.StandardBias = 15;
    bench.Time.svrBIAS();
    EXPECT_EQ(bench.Zone.TZBias, 300);
    EXPECT_EQ(bench.Zone.TZName, "EST");
    EXPECT_EQ(bench.SvrCurrent.Tip.Text(), " Time Zone: EST ");
  }
}

TEST(SvrBias, BeginsTheNameAnew) {
  Bench bench;
  bench.MoveToNewYork(ZonePeriod::Daylight);
  bench.Time.svrBIAS();
  bench.MoveToNewYork(ZonePeriod::Standard);
  bench.Time.svrBIAS();
  EXPECT_EQ(bench.Zone.TZName, "EST");
}

TEST(SvrBias, TakesANameOf32UnitsWithoutAZero) {
  Bench bench;
  bench.Clock.Zone.StandardName = ZoneNameOf(ThirtyThreeUnits);
  bench.Clock.Zone.DaylightName = ZoneNameOf(u"must not follow");
  bench.Time.svrBIAS();
  EXPECT_EQ(bench.Zone.TZName, "ABCDEFGHIJKLMNOPQRSTUVWXYZ012345");
  EXPECT_EQ(bench.Zone.TZName.size(), 32U);

  bench.Clock.Zone.Period = ZonePeriod::Daylight;
  bench.Clock.Zone.DaylightName = ZoneNameOf(ThirtyThreeUnits);
  bench.Time.svrBIAS();
  EXPECT_EQ(bench.Zone.TZName, "ABCDEFGHIJKLMNOPQRSTUVWXYZ012345");
}

TEST(SvrBias, EndsTheNameAtItsFirstZero) {
  Bench bench;
  bench.Clock.Zone.StandardName = ZoneNameOf(std::u16string_view(u"UTC\0xyz", 7));
  bench.Time.svrBIAS();
  EXPECT_EQ(bench.Zone.TZName, "UTC");
}

TEST(SvrBias, ShowsAnEmptyNameBetweenItsBlanks) {
  Bench bench;
  bench.Time.svrBIAS();
  EXPECT_EQ(bench.SvrCurrent.Tip.Text(), " Time Zone:  ");
}

}  // namespace
}  // namespace cvl
