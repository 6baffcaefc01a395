#include "base/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "tests/support/expect_error.h"

namespace cvl {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

/// The float right below or right above VALUE.
double Below(double value) {
  return std::nextafter(value, -Infinity);
}
double Above(double value) {
  return std::nextafter(value, Infinity);
}

TEST(ToByte, KeepsEachWholeNumberThatFits) {
  for (int value = 0; value <= 255; ++value) {
    EXPECT_EQ(ToByte(value), value);
    EXPECT_EQ(ToByte(static_cast<double>(value)), value);
  }
}

TEST(ToByte, RoundsToTheNearest) {
  EXPECT_EQ(ToByte(10.1406831741333), 10);
  EXPECT_EQ(ToByte(Below(2.5)), 2);
  EXPECT_EQ(ToByte(Above(2.5)), 3);
  EXPECT_EQ(ToByte(Below(3.5)), 3);
  EXPECT_EQ(ToByte(Above(3.5)), 4);
}

TEST(ToByte, RoundsATieToTheEvenNeighbour) {
  EXPECT_EQ(ToByte(0.5), 0);
  EXPECT_EQ(ToByte(1.5), 2);
  EXPECT_EQ(ToByte(2.5), 2);
  EXPECT_EQ(ToByte(3.5), 4);
  EXPECT_EQ(ToByte(253.5), 254);
  EXPECT_EQ(ToByte(254.5), 254);
}

TEST(ToByte, EndsWhereTheRoundedNumberLeavesItsRange) {
  EXPECT_EQ(ToByte(-0.0), 0);
  EXPECT_EQ(ToByte(-0.5), 0);  // the tie goes to 0, which is even
  ExpectRuntimeError(6, [] { return ToByte(Below(-0.5)); });
  ExpectRuntimeError(6, [] { return ToByte(-1.0); });
  ExpectRuntimeError(6, [] { return ToByte(-1); });

  EXPECT_EQ(ToByte(Below(255.5)), 255);
  ExpectRuntimeError(6, [] { return ToByte(255.5); });  // the tie goes to 256
  ExpectRuntimeError(6, [] { return ToByte(255.744); });
  ExpectRuntimeError(6, [] { return ToByte(256.0); });
  ExpectRuntimeError(6, [] { return ToByte(256); });
}

TEST(ToInteger, EndsWhereTheRoundedNumberLeavesItsRange) {
  EXPECT_EQ(ToInteger(32767), INT16_MAX);
  EXPECT_EQ(ToInteger(Below(32767.5)), INT16_MAX);
  ExpectRuntimeError(6, [] { return ToInteger(32767.5); });
  ExpectRuntimeError(6, [] { return ToInteger(32768); });

  EXPECT_EQ(ToInteger(-32768), INT16_MIN);
  EXPECT_EQ(ToInteger(-32768.5), INT16_MIN);  // the tie goes to -32768, which is even
  ExpectRuntimeError(6, [] { return ToInteger(Below(-32768.5)); });
  ExpectRuntimeError(6, [] { return ToInteger(-32769); });
}

TEST(ToInteger, RoundsNegativeTiesToTheEvenNeighbour) {
  EXPECT_EQ(ToInteger(-0.5), 0);
  EXPECT_EQ(ToInteger(-1.5), -2);
  EXPECT_EQ(ToInteger(-2.5), -2);
  EXPECT_EQ(ToInteger(-3.5), -4);
  EXPECT_EQ(ToInteger(32766.5), 32766);
  EXPECT_EQ(ToInteger(-32767.5), INT16_MIN);
}

TEST(ToLong, EndsWhereTheRoundedNumberLeavesItsRange) {
  EXPECT_EQ(ToLong(2147483647), INT32_MAX);
  EXPECT_EQ(ToLong(Below(2147483647.5)), INT32_MAX);
  ExpectRuntimeError(6, [] { return ToLong(2147483647.5); });
  ExpectRuntimeError(6, [] { return ToLong(2147483648.0); });

  EXPECT_EQ(ToLong(-2147483648.0), INT32_MIN);
  EXPECT_EQ(ToLong(-2147483648.5), INT32_MIN);  // the tie goes to the even end
  ExpectRuntimeError(6, [] { return ToLong(Below(-2147483648.5)); });
  ExpectRuntimeError(6, [] { return ToLong(-2147483649.0); });
}

TEST(ToLong, RoundsTiesToTheEvenNeighbourFarFromZero) {
  EXPECT_EQ(ToLong(2147483645.5), 2147483646);
  EXPECT_EQ(ToLong(2147483646.5), 2147483646);
  EXPECT_EQ(ToLong(-2147483646.5), -2147483646);
  EXPECT_EQ(ToLong(-2147483647.5), INT32_MIN);
}

template <class Conversion>
void ExpectNoPlaceForWhatIsNoNumber(Conversion convert) {
  for (const double value : {NaN, -NaN, Infinity, -Infinity, 1e300, -1e300}) {
    SCOPED_TRACE(value);
    ExpectRuntimeError(6, [&] { return convert(value); });
  }
}

TEST(Conversions, HaveNoPlaceForInfinitiesAndNaN) {
  ExpectNoPlaceForWhatIsNoNumber([](double value) { return ToByte(value); });
  ExpectNoPlaceForWhatIsNoNumber(ToInteger);
  ExpectNoPlaceForWhatIsNoNumber(ToLong);
}

TEST(Conversions, TakeTheSmallestFractionsAsZero) {
  const double tiny = std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(ToByte(tiny), 0);
  EXPECT_EQ(ToByte(-tiny), 0);
  EXPECT_EQ(ToInteger(-tiny), 0);
  EXPECT_EQ(ToLong(tiny), 0);
}

TEST(AddLong, FailsJustOutsideBothEnds) {
  EXPECT_EQ(AddLong(300, -60), 240);
  EXPECT_EQ(AddLong(INT32_MAX - 1, 1), INT32_MAX);
  ExpectRuntimeError(6, [] { return AddLong(INT32_MAX, 1); });
  EXPECT_EQ(AddLong(INT32_MIN + 1, -1), INT32_MIN);
  ExpectRuntimeError(6, [] { return AddLong(INT32_MIN, -1); });
}

TEST(SubtractLong, FailsJustOutsideBothEnds) {
  EXPECT_EQ(SubtractLong(-1, INT32_MAX), INT32_MIN);
  ExpectRuntimeError(6, [] { return SubtractLong(-2, INT32_MAX); });
  EXPECT_EQ(SubtractLong(-1, INT32_MIN), INT32_MAX);
  ExpectRuntimeError(6, [] { return SubtractLong(0, INT32_MIN); });
}

TEST(MultiplyLong, FailsJustOutsideBothEnds) {
  EXPECT_EQ(MultiplyLong(240, 60), 14400);
  EXPECT_EQ(MultiplyLong(46340, 46340), 2147395600);
  ExpectRuntimeError(6, [] { return MultiplyLong(46341, 46341); });
  EXPECT_EQ(MultiplyLong(-65536, 32768), INT32_MIN);
  ExpectRuntimeError(6, [] { return MultiplyLong(65536, 32768); });
  ExpectRuntimeError(6, [] { return MultiplyLong(INT32_MIN, -1); });
}

TEST(Floor, IsTheWholeNumberBelow) {
  EXPECT_EQ(Floor(2.999), 2);
  EXPECT_EQ(Floor(3), 3);
  EXPECT_EQ(Floor(-0.25), -1);
  EXPECT_EQ(Floor(-3), -3);
  EXPECT_EQ(Floor(-3.001), -4);
  EXPECT_EQ(Floor(0), 0);
}

TEST(Floor, AgreesWithTheMathematicsLibraryAtEveryPowerOfTwo) {
  for (int exponent = -60; exponent <= 60; ++exponent) {
    const double power = std::ldexp(1, exponent);
    for (const double value : {power, Below(power), Above(power), power + 0.5, power - 0.5}) {
      EXPECT_EQ(Floor(value), std::floor(value)) << value;
      EXPECT_EQ(Floor(-value), std::floor(-value)) << -value;
    }
  }
}

TEST(Floor, PassesOnWhatNoIntegerHolds) {
  EXPECT_EQ(Floor(1e300), 1e300);
  EXPECT_EQ(Floor(-1e300), -1e300);
  EXPECT_EQ(Floor(Infinity), Infinity);
  EXPECT_EQ(Floor(-Infinity), -Infinity);
  EXPECT_TRUE(std::isnan(Floor(NaN)));
}

}  // namespace
}  // namespace cvl
