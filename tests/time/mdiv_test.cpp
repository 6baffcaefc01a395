#include "time/mdiv.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

namespace cvl {
namespace {

/// The generator whose draw stands in place of a remainder of zero: 24 bits, a linear
/// congruence.
class Generator {
 public:
  /// A draw with a negative argument: the state depends on that argument alone.
  double DrawAnew(float argument) {
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(argument);
    State_ = (bits & 0xFFFFFF) + (bits >> 24);
    return Draw();
  }
  double Draw() {
    State_ = (State_ * 0x43FD43FDU + 0xC39EC3U) & 0xFFFFFF;
    return State_ / 16777216.0;
  }
  std::uint32_t State() const { return State_; }

 private:
  std::uint32_t State_ = 0;
};

TEST(ZeroRemainder, IsTheDrawAfterTheOneThatResetsTheGenerator) {
  Generator generator;
  generator.DrawAnew(-1);
  EXPECT_EQ(generator.State(), 0x395886U);
  const double draw = generator.Draw();
  EXPECT_EQ(generator.State(), 0x092D31U);
  const auto replacement = static_cast<float>(draw * 255 + 1);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(replacement), 0x4122403DU);
  EXPECT_EQ(ZeroRemainder, static_cast<double>(replacement));
}

TEST(ZeroRemainder, RoundsToTheByteTen) {
  EXPECT_EQ(ToByte(ZeroRemainder), 0x0A);
}

TEST(Mdiv, IsTheRemainder) {
  EXPECT_EQ(mdiv(3000001, 1000), 1);
  EXPECT_EQ(mdiv(3000999, 1000), 999);
  EXPECT_EQ(mdiv(999, 1000), 999);
  EXPECT_EQ(mdiv(257, 256), 1);
}

TEST(Mdiv, KeepsTheFractionOfTheDividend) {
  EXPECT_EQ(mdiv(55.296, 256), 55.296);
  EXPECT_EQ(mdiv(255.75, 256), 255.75);
  EXPECT_EQ(mdiv(256.25, 256), 0.25);
}

TEST(Mdiv, IsNeverZero) {
  EXPECT_EQ(mdiv(3000000, 1000), ZeroRemainder);
  EXPECT_EQ(mdiv(0, 256), ZeroRemainder);
  EXPECT_EQ(mdiv(256, 256), ZeroRemainder);
  EXPECT_EQ(mdiv(-1000, 1000), ZeroRemainder);
  EXPECT_EQ(mdiv(-0.0, 1000), ZeroRemainder);
}

TEST(Mdiv, GivesTheSameForZeroEachTime) {
  const double first = mdiv(3000000, 1000);
  EXPECT_EQ(mdiv(7000, 1000), first);
  EXPECT_EQ(mdiv(0, 256), first);
}

TEST(Mdiv, ReplacesNoRemainderThatIsMerelySmall) {
  EXPECT_EQ(mdiv(0x1p-40, 256), 0x1p-40);
  EXPECT_EQ(mdiv(256 + 0x1p-40, 256), 0x1p-40);
}

TEST(Mdiv, RoundsTheQuotientDownwardsForNegativeNumbers) {
  EXPECT_EQ(mdiv(-1, 1000), 999);
  EXPECT_EQ(mdiv(-1999.5, 1000), 0.5);
}

TEST(Mdiv, IsExactForTheMillisecondsOfAnyTimestamp) {
  const double last = 4294967295.0 * 1000;
  EXPECT_EQ(mdiv(last, 1000), ZeroRemainder);
  EXPECT_EQ(mdiv(last + 1, 1000), 1);
  EXPECT_EQ(mdiv(last + 998, 1000), 998);
}

}  // namespace
}  // namespace cvl
