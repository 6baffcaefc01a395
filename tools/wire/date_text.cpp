#include "tools/wire/date_text.h"

#include <chrono>

namespace cvl::tools {

namespace {

std::string Padded(std::int64_t value, std::size_t width) {
  std::string digits = std::to_string(value);
  if (digits.size() < width) {
    digits.insert(0, width - digits.size(), '0');
  }
  return digits;
}

}  // namespace

std::string DateText(std::int64_t unix_seconds) {
  const std::chrono::sys_seconds moment{std::chrono::seconds{unix_seconds}};
  const auto midnight = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date{midnight};
  const std::chrono::hh_mm_ss time{moment - midnight};
  return Padded(static_cast<int>(date.year()), 4) + "-" +
         Padded(static_cast<unsigned>(date.month()), 2) + "-" +
         Padded(static_cast<unsigned>(date.day()), 2) + " " + Padded(time.hours().count(), 2) +
         ":" + Padded(time.minutes().count(), 2) + ":" + Padded(time.seconds().count(), 2);
}

std::string DateText(std::int64_t unix_seconds, std::uint32_t fraction) {
  constexpr std::uint64_t MicrosPerSecond = 1'000'000;
  constexpr std::uint64_t Half = std::uint64_t{1} << 31;
  std::uint64_t micros = (std::uint64_t{fraction} * MicrosPerSecond + Half) >> 32;
  if (micros == MicrosPerSecond) {
    micros = 0;
    ++unix_seconds;
  }
  return DateText(unix_seconds) + "." + Padded(static_cast<std::int64_t>(micros), 6);
}

std::int64_t UnixSecondsOf1900Count(std::uint32_t count) {
  constexpr std::uint32_t TopBit = 0x8000'0000;
  constexpr std::int64_t SecondEra = std::int64_t{1} << 32;
  return UnixSecondsAt1900 + std::int64_t{count} + ((count & TopBit) != 0 ? 0 : SecondEra);
}

}  // namespace cvl::tools
