// The pseudo-random generator of the language run-time: a 24-bit linear congruence.

#pragma once

#include <bit>
#include <cstdint>

namespace cvl {

class RandomGenerator {
 public:
  /// Puts the generator to a state that depends on ARGUMENT alone, as a draw with a
  /// negative argument does.
  void Reset(float argument) {
    const auto bits = std::bit_cast<std::uint32_t>(argument);
    State_ = Reduced((bits & Mask) + (bits >> 24));
  }

  /// Mixes VALUE into the state.
  void Seed(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const auto folded = static_cast<std::uint32_t>(bits >> 32 ^ bits);
    State_ = Reduced(State_ ^ (folded ^ folded >> 16) << 8);
  }

  /// The next value, 0 <= U < 1.
  float Draw() {
    State_ = Reduced(State_ * 0x43FD43FDU + 0xC39EC3U);
    return static_cast<float>(State_) / 16777216.0F;
  }

 private:
  static constexpr std::uint32_t Mask = 0xFFFFFF;

  static constexpr std::uint32_t Reduced(std::uint32_t number) { return number & Mask; }

  std::uint32_t State_ = 0x50000;
};

}  // namespace cvl
