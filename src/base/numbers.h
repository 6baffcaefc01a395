// Conversions and arithmetic of whole numbers. A number that doesn't fit its type is
// failure 6, never a wrap; fractions round to the nearest, ties to the even neighbour.

#pragma once

#include <cmath>
#include <cstdint>

#include "base/runtime_error.h"

namespace cvl {

/// A float rounded to the nearest whole number within LEAST..MOST, a tie to the even
/// neighbour. Raises 6 when the rounded number lies outside, and for a NaN.
/// The bounds are those of a type of at most 32 bits.
inline std::int64_t RoundWithin(double value, std::int64_t least, std::int64_t most) {
  // Comparing before rounding keeps llrint inside its range. The halves at the two
  // edges are inside this comparison and are judged after the rounding.
  if (!(value >= static_cast<double>(least) - 0.5 && value <= static_cast<double>(most) + 0.5)) {
    throw RuntimeError(error_number::Overflow);
  }
  const std::int64_t rounded = std::llrint(value);
  if (rounded < least || rounded > most) throw RuntimeError(error_number::Overflow);
  return rounded;
}

/// A whole number as a byte. Fails with Overflow (6) outside 0 to 255.
inline std::uint8_t ToByte(std::int32_t value) {
  if (value < 0 || value > 255) throw RuntimeError(error_number::Overflow);
  return static_cast<std::uint8_t>(value);
}

/// 0 to 255.
inline std::uint8_t ToByte(double value) {
  return static_cast<std::uint8_t>(RoundWithin(value, 0, 255));
}

/// 16-bit signed.
inline std::int16_t ToInteger(double value) {
  return static_cast<std::int16_t>(RoundWithin(value, INT16_MIN, INT16_MAX));
}

/// 32-bit signed.
inline std::int32_t ToLong(double value) {
  return static_cast<std::int32_t>(RoundWithin(value, INT32_MIN, INT32_MAX));
}

/// Checked 32-bit arithmetic; each raises 6 when the result doesn't fit.
inline std::int32_t AddLong(std::int32_t a, std::int32_t b) {
  std::int32_t sum = 0;
  if (__builtin_add_overflow(a, b, &sum)) throw RuntimeError(error_number::Overflow);
  return sum;
}

inline std::int32_t SubtractLong(std::int32_t a, std::int32_t b) {
  std::int32_t difference = 0;
  if (__builtin_sub_overflow(a, b, &difference)) throw RuntimeError(error_number::Overflow);
  return difference;
}

inline std::int32_t MultiplyLong(std::int32_t a, std::int32_t b) {
  std::int32_t product = 0;
  if (__builtin_mul_overflow(a, b, &product)) throw RuntimeError(error_number::Overflow);
  return product;
}

/// The largest whole number not above VALUE, by way of a 64-bit integer: std::floor is
/// a call into the mathematics library on the plainest x86-64, and timestamps take
/// nine of them. Values beyond 2^53 are whole already.
inline double Floor(double value) {
  if (!(value > -9007199254740992.0 && value < 9007199254740992.0)) return value;
  const auto truncated = static_cast<double>(static_cast<std::int64_t>(value));
  return truncated > value ? truncated - 1 : truncated;
}

}  // namespace cvl
