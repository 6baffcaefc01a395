#include "time/timestamp_encoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <optional>

#include "tests/support/expect_error.h"

namespace cvl {
namespace {

using testing::ElementsAre;

constexpr double SomeSecond = 3242635200;  // 3 October 2002, 12:00:00
constexpr double LastSecond = 4294967295;  // 7 February 2036, 06:28:15

std::uint32_t Number(const std::uint8_t *bytes) {
  return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
         static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

std::uint32_t SecondsField(const NtpTimestamp &stamp) {
  return Number(stamp.data());
}

std::uint32_t FractionField(const NtpTimestamp &stamp) {
  return Number(stamp.data() + 4);
}

/// What a fraction field would be if its bytes knew of one another.
std::uint32_t TrueFraction(int milliseconds) {
  return static_cast<std::uint32_t>((static_cast<std::uint64_t>(milliseconds) << 32) / 1000);
}

/// The fraction field in whole numbers, without a float: 2^32 M / 1000 is WHOLE / 125, with
/// M the millisecond or, for 0, 0x4122403D as the float it is. A byte is WHOLE divided by
/// 125 * 256^place, rounded, without what lies above it. Nothing for a byte of 256.
std::optional<std::uint32_t> FractionInWholeNumbers(int milliseconds) {
  const std::uint64_t whole = milliseconds == 0 ? std::uint64_t{0xA2403D} << 9
                                                : static_cast<std::uint64_t>(milliseconds) << 29;
  std::uint32_t field = 0;
  for (int place = 3; place >= 0; --place) {
    const std::uint64_t unit = std::uint64_t{125} << (8 * place);
    const std::uint64_t remainder = whole % (256 * unit);
    EXPECT_NE(2 * remainder % (2 * unit), unit) << "a tie would need a rule of its own";
    const std::uint64_t byte = remainder == 0 ? 10 : (2 * remainder + unit) / (2 * unit);
    if (byte == 256) return std::nullopt;
    field = field << 8 | static_cast<std::uint32_t>(byte);
  }
  return field;
}

TEST(EncodeTimestamp, HasTheFractionOfEachMillisecondInEverySecond) {
  for (int milliseconds = 0; milliseconds <= 999; ++milliseconds) {
    SCOPED_TRACE(milliseconds);
    const std::optional<std::uint32_t> fraction = FractionInWholeNumbers(milliseconds);
    for (const double seconds : {0.0, 1.0, 255.0, 2147483648.0, SomeSecond, LastSecond}) {
      if (!fraction) {
        ExpectRuntimeError(6, [&] { return EncodeTimestamp(seconds, milliseconds); });
        continue;
      }
      const NtpTimestamp stamp = EncodeTimestamp(seconds, milliseconds);
      EXPECT_EQ(FractionField(stamp), *fraction) << seconds;
      EXPECT_EQ(SecondsField(stamp), static_cast<std::uint32_t>(seconds));
    }
  }
}

TEST(EncodeTimestamp, HasTheTellingRows) {
  const auto row = [](int milliseconds) {
    return FractionField(EncodeTimestamp(SomeSecond, milliseconds));
  };
  EXPECT_EQ(row(0), 0x0399946FU);
  EXPECT_EQ(row(1), 0x00428937U);
  EXPECT_EQ(row(2), 0x0183126FU);
  EXPECT_EQ(row(125), 0x200A0A0AU);
  EXPECT_EQ(row(250), 0x400A0A0AU);
  EXPECT_EQ(row(500), 0x800A0A0AU);
  EXPECT_EQ(row(750), 0xC00A0A0AU);
  EXPECT_EQ(row(997), 0xFF3B645AU);
  EXPECT_EQ(row(998), 0xFF7DEE91U);
}

TEST(EncodeTimestamp, FailsWithOverflowInMillisecond999Alone) {
  for (int milliseconds = 0; milliseconds <= 998; ++milliseconds) {
    EXPECT_NO_THROW(EncodeTimestamp(SomeSecond, milliseconds)) << milliseconds;
  }
  ExpectRuntimeError(6, [] { return EncodeTimestamp(SomeSecond, 999); });
}

TEST(EncodeTimestamp, IsExactFor72MillisecondsAndElseTooHighByAtMostOneInEachByte) {
  int exact = 0;
  std::uint32_t most = 0;
  for (int milliseconds = 1; milliseconds <= 998; ++milliseconds) {
    if (milliseconds % 125 == 0) continue;  // those end in 0A 0A 0A
    const std::uint32_t field = FractionField(EncodeTimestamp(SomeSecond, milliseconds));
    const std::uint32_t truth = TrueFraction(milliseconds);
    EXPECT_GE(field, truth) << milliseconds;
    exact += field == truth;
    most = std::max(most, field - truth);
  }
  EXPECT_EQ(exact, 72);
  EXPECT_EQ(most, 0x01010101U);
}

TEST(EncodeTimestamp, CarriesTenMillisecondsOnAWholeSecond) {
  EXPECT_THAT(EncodeTimestamp(SomeSecond, 0),
              ElementsAre(0xC1, 0x46, 0xAF, 0xC0, 0x03, 0x99, 0x94, 0x6F));
}

TEST(EncodeTimestamp, PutsTheMostSignificantByteFirst) {
  EXPECT_THAT(EncodeTimestamp(SomeSecond, 250),
              ElementsAre(0xC1, 0x46, 0xAF, 0xC0, 0x40, 0x0A, 0x0A, 0x0A));
}

TEST(EncodeTimestamp, SendsAZeroByteOfTheSecondsAsZero) {
  EXPECT_EQ(SecondsField(EncodeTimestamp(0, 250)), 0U);
  EXPECT_EQ(SecondsField(EncodeTimestamp(0x01000000, 250)), 0x01000000U);
  EXPECT_EQ(SecondsField(EncodeTimestamp(0xFF00FF00, 250)), 0xFF00FF00U);
}

TEST(EncodeTimestamp, FailsWhereSecondsNeedAFifthByte) {
  EXPECT_EQ(SecondsField(EncodeTimestamp(LastSecond, 998)), 0xFFFFFFFFU);
  ExpectRuntimeError(6, [] { return EncodeTimestamp(LastSecond + 1, 0); });
  ExpectRuntimeError(6, [] { return EncodeTimestamp(LastSecond + 1, 250); });
}

TEST(EncodeTimestamp, FailsBeforeItsBaseDate) {
  EXPECT_EQ(SecondsField(EncodeTimestamp(0, 1)), 0U);
  ExpectRuntimeError(6, [] { return EncodeTimestamp(-1, 0); });
  ExpectRuntimeError(6, [] { return EncodeTimestamp(-1, 998); });
}

TEST(EncodeSeconds, PutsTheMostSignificantByteFirst) {
  EXPECT_THAT(EncodeSeconds(SomeSecond), ElementsAre(0xC1, 0x46, 0xAF, 0xC0));
  EXPECT_THAT(EncodeSeconds(0x01020304), ElementsAre(1, 2, 3, 4));
}

TEST(EncodeSeconds, SendsZeroAsZero) {
  EXPECT_THAT(EncodeSeconds(0), ElementsAre(0, 0, 0, 0));
  EXPECT_THAT(EncodeSeconds(0x01000000), ElementsAre(1, 0, 0, 0));
}

TEST(EncodeSeconds, FailsWhereSecondsNeedAFifthByteOrASign) {
  EXPECT_THAT(EncodeSeconds(LastSecond), ElementsAre(0xFF, 0xFF, 0xFF, 0xFF));
  ExpectRuntimeError(6, [] { return EncodeSeconds(LastSecond + 1); });
  ExpectRuntimeError(6, [] { return EncodeSeconds(-1); });
}

}  // namespace
}  // namespace cvl
