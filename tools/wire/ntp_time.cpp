#include "tools/wire/ntp_time.h"

#include "tools/wire/date_text.h"

namespace cvl::tools {

namespace {

std::uint64_t WholeValue(NtpTime moment) {
  return (std::uint64_t{moment.Seconds} << 32) | moment.Fraction;
}

NtpTime FromWholeValue(std::uint64_t value) {
  return {static_cast<std::uint32_t>(value >> 32), static_cast<std::uint32_t>(value)};
}

}  // namespace

NtpTime NtpTimeOf(std::int64_t unix_seconds, std::int64_t nanoseconds) {
  constexpr std::uint64_t NanosPerSecond = 1'000'000'000;
  const auto seconds = static_cast<std::uint64_t>(unix_seconds - UnixSecondsAt1900);
  const std::uint64_t fraction = (static_cast<std::uint64_t>(nanoseconds) << 32) / NanosPerSecond;
  return {static_cast<std::uint32_t>(seconds), static_cast<std::uint32_t>(fraction)};
}

NtpTime Shifted(NtpTime moment, std::int64_t milliseconds) {
  std::int64_t seconds = milliseconds / 1000;
  std::int64_t rest = milliseconds % 1000;
  if (rest < 0) {
    rest += 1000;
    --seconds;
  }
  // Unsigned, so that a step over the end of an era wraps instead of overflowing.
  const std::uint64_t step =
      (static_cast<std::uint64_t>(seconds) << 32) + (static_cast<std::uint64_t>(rest) << 32) / 1000;
  return FromWholeValue(WholeValue(moment) + step);
}

double SecondsBetween(NtpTime from, NtpTime to) {
  constexpr double UnitsPerSecond = 4294967296.0;
  const auto span = static_cast<std::int64_t>(WholeValue(to) - WholeValue(from));
  return static_cast<double>(span) / UnitsPerSecond;
}

std::string TimeText(NtpTime moment) {
  if (moment == NtpTime{}) {
    return "none";
  }
  return DateText(UnixSecondsOf1900Count(moment.Seconds), moment.Fraction) + " UTC";
}

NtpTime ReadNtpTime(ByteView bytes, std::size_t offset) {
  return {Big32(bytes, offset), Big32(bytes, offset + 4)};
}

void WriteNtpTime(std::span<std::uint8_t> bytes, std::size_t offset, NtpTime moment) {
  PutBig32(bytes, offset, moment.Seconds);
  PutBig32(bytes, offset + 4, moment.Fraction);
}

}  // namespace cvl::tools
