#include "sync/go_milli.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <random>
#include <sstream>
#include <vector>

#include "tests/support/expect_error.h"

namespace cvl {
namespace {

/// 3 October 2002, 12:00:00, in milliseconds since 1900.
constexpr double NoonMs = 3242635200000;

std::vector<std::uint8_t> StampOf(std::uint32_t seconds, std::uint32_t fraction) {
  std::vector<std::uint8_t> bytes;
  for (const std::uint32_t number : {seconds, fraction}) {
    for (int shift = 24; shift >= 0; shift -= 8) {
      bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    }
  }
  return bytes;
}

SystemTime FieldsAt(int hour, int minute, int second, int milliseconds) {
  return {2002,
          10,
          0,
          3,
          static_cast<std::uint16_t>(hour),
          static_cast<std::uint16_t>(minute),
          static_cast<std::uint16_t>(second),
          static_cast<std::uint16_t>(milliseconds)};
}

// MillisecondsOf.

TEST(MillisecondsOf, ReadsSecondsAndFractionBigEndian) {
  EXPECT_EQ(MillisecondsOf(0, StampOf(0xC146AFC0, 0)), NoonMs);
  EXPECT_EQ(MillisecondsOf(0, StampOf(0xC146AFC0, 0x80000000)), NoonMs + 500);
  EXPECT_EQ(MillisecondsOf(0, StampOf(0, 0)), 0);
  EXPECT_EQ(MillisecondsOf(0, StampOf(0, 1)), 1000 / 4294967296.0);
  EXPECT_EQ(MillisecondsOf(0, StampOf(0xFFFFFFFF, 0)), 4294967295000.0);
}

TEST(MillisecondsOf, ReadsAtItsOffset) {
  std::vector<std::uint8_t> packet(48, 0xFF);
  const std::vector<std::uint8_t> stamp = StampOf(0xC146AFC0, 0x40000000);
  std::copy(stamp.begin(), stamp.end(), packet.begin() + 40);
  EXPECT_EQ(MillisecondsOf(40, packet), NoonMs + 250);
}

TEST(MillisecondsOf, Raises9WhereEightBytesArentThere) {
  const std::vector<std::uint8_t> packet(48, 0);
  EXPECT_NO_THROW(MillisecondsOf(40, packet));
  ExpectRuntimeError(9, [&] { return MillisecondsOf(41, packet); });
  ExpectRuntimeError(9, [&] { return MillisecondsOf(49, packet); });
  ExpectRuntimeError(9, [&] { return MillisecondsOf(static_cast<std::size_t>(-1), packet); });
}

// MillisecondsOfText.

TEST(MillisecondsOfText, AWholeNumberGivesItsLastThreeDigits) {
  EXPECT_EQ(MillisecondsOfText(NoonMs), 0);
  EXPECT_EQ(MillisecondsOfText(NoonMs + 7), 7);
  EXPECT_EQ(MillisecondsOfText(NoonMs + 250), 250);
  EXPECT_EQ(MillisecondsOfText(NoonMs + 999), 999);
  EXPECT_EQ(MillisecondsOfText(NoonMs + 7250), 250);
}

TEST(MillisecondsOfText, TwoDecimalsGiveThreeDigitsAndTheDecimals) {
  EXPECT_EQ(MillisecondsOfText(NoonMs + 7250.25), 250);
  EXPECT_EQ(MillisecondsOfText(NoonMs + 7250.75), 251);
}

TEST(MillisecondsOfText, OneDecimalBringsADigitOfTheSecondsAlong) {
  EXPECT_EQ(MillisecondsOfText(NoonMs + 250.5), 250);
  EXPECT_EQ(MillisecondsOfText(NoonMs + 251.5), 252);
  EXPECT_EQ(MillisecondsOfText(NoonMs + 7250.5), 7250);
  EXPECT_EQ(MillisecondsOfText(NoonMs + 9999.5), 10000);
  EXPECT_EQ(MillisecondsOfText(NoonMs + 10250.5), 250);
}

TEST(MillisecondsOfText, ItCanBeAThousand) {
  EXPECT_EQ(MillisecondsOfText(NoonMs + 999.5), 1000);
  EXPECT_EQ(MillisecondsOfText(NoonMs + 999.75), 1000);
  EXPECT_EQ(MillisecondsOfText(NoonMs + 999.49), 999);
}

TEST(MillisecondsOfText, FifteenDigitsAreAllThereIs) {
  EXPECT_EQ(MillisecondsOfText(NoonMs + 999.996), 0) << "3242635201000";
  EXPECT_EQ(MillisecondsOfText(NoonMs + 250.004), 250) << "3242635200250";
}

TEST(MillisecondsOfText, EarlierMomentsHaveMoreDecimalsAndLoseDigits) {
  EXPECT_EQ(MillisecondsOfText(100000000123.125), 23);
  EXPECT_EQ(MillisecondsOfText(1234.56789), 1) << ".56789";
  EXPECT_EQ(MillisecondsOfText(0), 0);
  EXPECT_EQ(MillisecondsOfText(12.25), 12);
  EXPECT_EQ(MillisecondsOfText(12), 12);
}

// ClockFieldsOf.

TEST(ClockFieldsOf, ASecondOfTheServerMakesTheFields) {
  EXPECT_EQ(ClockFieldsOf(NoonMs, 0), FieldsAt(12, 0, 0, 0));
  EXPECT_EQ(ClockFieldsOf(NoonMs + 3661250, 0), FieldsAt(13, 1, 1, 250));
  EXPECT_EQ(ClockFieldsOf(NoonMs - 1, 0), FieldsAt(11, 59, 59, 999));
}

TEST(ClockFieldsOf, HalfTheRoundTripIsAdded) {
  EXPECT_EQ(ClockFieldsOf(NoonMs + 250, 100).Milliseconds, 300);
  EXPECT_EQ(ClockFieldsOf(NoonMs + 250, 1).Milliseconds, 250);
  EXPECT_EQ(ClockFieldsOf(NoonMs + 250, 3).Milliseconds, 252);
  EXPECT_EQ(ClockFieldsOf(NoonMs + 251, 1).Milliseconds, 252);
}

TEST(ClockFieldsOf, NothingIsCarriedIntoTheSeconds) {
  const SystemTime fields = ClockFieldsOf(NoonMs + 900, 300);
  EXPECT_EQ(fields, FieldsAt(12, 0, 0, 1050));
  EXPECT_FALSE(IsSettable(fields));
  EXPECT_TRUE(IsSettable(ClockFieldsOf(NoonMs + 900, 198)));
}

TEST(ClockFieldsOf, ANegativeSumIsNoSetting) {
  const SystemTime fields = ClockFieldsOf(NoonMs, -2);
  EXPECT_EQ(fields.Milliseconds, 65535);
  EXPECT_FALSE(IsSettable(fields));
}

TEST(ClockFieldsOf, ASumBeyond16BitsRaises6) {
  EXPECT_EQ(ClockFieldsOf(NoonMs, 65534).Milliseconds, 32767);
  ExpectRuntimeError(6, [] { ClockFieldsOf(NoonMs, 65536); });
  ExpectRuntimeError(6, [] { ClockFieldsOf(NoonMs, 2147483647); });
}

TEST(ClockFieldsOf, AFractionOf9995GivesAtLeastAThousand) {
  const double moment = MillisecondsOf(0, StampOf(0xC146AFC0, 4292819812));
  EXPECT_GE(ClockFieldsOf(moment, 2).Milliseconds, 1000);
}

TEST(ClockFieldsOf, TheMomentIsRoundedToMillisecondsAndThenCut) {
  EXPECT_EQ(ClockFieldsOf(NoonMs + 999.25, 0), FieldsAt(12, 0, 0, 999));
  EXPECT_EQ(ClockFieldsOf(NoonMs + 999.75, 0), FieldsAt(12, 0, 1, 1000));
  EXPECT_EQ(ClockFieldsOf(NoonMs + 999.996, 0), FieldsAt(12, 0, 1, 0));
  EXPECT_EQ(ClockFieldsOf(NoonMs + 500, 0), FieldsAt(12, 0, 0, 500)) << "no half rounds up";
  EXPECT_EQ(ClockFieldsOf(NoonMs + 998, 0), FieldsAt(12, 0, 0, 998));
}

TEST(ClockFieldsOf, RoundingCarriesThroughToTheYear) {
  constexpr double EndOf2002 = 3250368000000;  // 1 January 2003, 00:00:00
  EXPECT_EQ(ClockFieldsOf(EndOf2002 - 0.004, 0), (SystemTime{2003, 1, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(ClockFieldsOf(EndOf2002 - 1, 0), (SystemTime{2002, 12, 0, 31, 23, 59, 59, 999}));
}

TEST(ClockFieldsOf, AnAllZeroTimestampIsTheFirstDayOf1900) {
  const SystemTime fields = ClockFieldsOf(0, 0);
  EXPECT_EQ(fields, (SystemTime{1900, 1, 0, 1, 0, 0, 0, 0}));
}

TEST(ClockFieldsOf, TheLastSecondOfTheEraStillFits) {
  EXPECT_EQ(ClockFieldsOf(4294967295000.0, 0), (SystemTime{2036, 2, 0, 7, 6, 28, 15, 0}));
}

// Against another computation.

/// The digits as a stream writes them, read by the C library.
int MillisecondsByStream(double milliseconds) {
  std::ostringstream stream;
  stream << std::setprecision(15) << milliseconds;
  std::string text = stream.str();
  const std::size_t last = text.find('.') == std::string::npos ? 3 : 6;
  if (text.size() > last) text.erase(0, text.size() - last);
  return static_cast<int>(std::nearbyint(std::strtod(text.c_str(), nullptr)));
}

TEST(ClockFieldsOf, AgreesWithWholeNumbersOnRandomTimestamps) {
  std::mt19937_64 random(20021003);
  // From 1931 on, when milliseconds have 13 digits.
  std::uniform_int_distribution<std::uint32_t> any_seconds(1000000000, 0xFFFFFFFF);
  std::uniform_int_distribution<std::uint32_t> any_fraction;
  std::uniform_int_distribution<std::int32_t> any_round_trip(0, 400);
  int compared = 0;
  for (int count = 0; count < 100000; ++count) {
    const std::uint32_t seconds = any_seconds(random);
    const std::uint32_t fraction = any_fraction(random);
    const std::int32_t round_trip = any_round_trip(random);
    const double moment = MillisecondsOf(0, StampOf(seconds, fraction));
    const SystemTime fields = ClockFieldsOf(moment, round_trip);

    const int of_second = MillisecondsByStream(moment);
    ASSERT_EQ(fields.Milliseconds, std::nearbyint(round_trip / 2.0 + of_second)) << seconds;

    // The float of days tells microseconds apart, so a moment that lies within one of a
    // half millisecond may fall to either side.
    const std::uint64_t microseconds = std::uint64_t{fraction} * 1000000 >> 32;
    if (microseconds % 1000 >= 498 && microseconds % 1000 <= 501) continue;
    ++compared;
    const std::uint64_t of_second_ms = (microseconds + 500) / 1000;
    const std::int64_t second = std::int64_t{seconds} + (of_second_ms == 1000 ? 1 : 0);
    using std::chrono::days;
    const std::chrono::sys_seconds utc{std::chrono::seconds(second - 2208988800)};
    const auto date = std::chrono::floor<days>(utc);
    const std::chrono::year_month_day calendar{date};
    const std::chrono::hh_mm_ss time{utc - date};
    ASSERT_EQ(fields.Year, static_cast<int>(calendar.year())) << seconds;
    ASSERT_EQ(fields.Month, static_cast<unsigned>(calendar.month())) << seconds;
    ASSERT_EQ(fields.Day, static_cast<unsigned>(calendar.day())) << seconds;
    ASSERT_EQ(fields.Hour, time.hours().count()) << seconds;
    ASSERT_EQ(fields.Minute, time.minutes().count()) << seconds;
    ASSERT_EQ(fields.Second, time.seconds().count()) << seconds << " " << microseconds;
    ASSERT_EQ(fields.DayOfWeek, 0);
  }
  EXPECT_GT(compared, 99000);
}

}  // namespace
}  // namespace cvl
