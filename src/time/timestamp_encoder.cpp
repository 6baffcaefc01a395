#include "time/timestamp_encoder.h"

#include "base/numbers.h"
#include "time/mdiv.h"

namespace cvl {

namespace {

constexpr double PowersOf256[] = {1, 256, 65536, 16777216};
constexpr double TwoTo32 = 4294967296.0;

/// The four bytes of a number below 2^32, byte I worth 256^I; its fraction falls away.
void TakeApart(double number, std::uint8_t *bytes) {
  for (int i = 3; i >= 0; --i) {
    bytes[i] = ToByte(Floor(number / PowersOf256[i]));
    number -= bytes[i] * PowersOf256[i];
  }
}

}  // namespace

NtpTimestamp EncodeTimestamp(double seconds, int milliseconds) {
  const double total_ms = seconds * 1000 + milliseconds;
  const double of_second = mdiv(total_ms, 1000);
  std::uint8_t w[8];
  TakeApart(total_ms / 1000, w);
  double fraction = TwoTo32 * of_second / 1000;
  for (int i = 7; i >= 4; --i) {
    w[i] = ToByte(mdiv(fraction, 256));
    fraction /= 256;
  }
  return {w[3], w[2], w[1], w[0], w[4], w[5], w[6], w[7]};
}

std::array<std::uint8_t, 4> EncodeSeconds(double seconds) {
  std::uint8_t w[4];
  TakeApart(seconds, w);
  return {w[3], w[2], w[1], w[0]};
}

}  // namespace cvl
