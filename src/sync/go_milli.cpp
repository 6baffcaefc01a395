#include "sync/go_milli.h"

#include <cmath>
#include <string>
#include <string_view>

#include "base/date_time.h"
#include "base/number_text.h"
#include "base/numbers.h"

namespace cvl {

namespace {

constexpr double TwoTo32 = 4294967296.0;

double FourBytes(std::span<const std::uint8_t> bytes) {
  double number = 0;
  for (const std::uint8_t byte : bytes.first(4)) {
    number = number * 256 + byte;
  }
  return number;
}

/// MOMENT rounded to the nearest millisecond and then cut to the second.
DateTime CutToSecond(DateTime moment) {
  const double milliseconds = std::nearbyint(moment.Days * SecondsPerDay * 1000);
  return DateTime{Floor(milliseconds / 1000) / SecondsPerDay};
}

}  // namespace

double MillisecondsOf(std::size_t offset, std::span<const std::uint8_t> bytes) {
  if (offset > bytes.size() || bytes.size() - offset < 8) {
    throw RuntimeError(error_number::SubscriptOutOfRange);
  }
  const double seconds = FourBytes(bytes.subspan(offset));
  const double fraction = FourBytes(bytes.subspan(offset + 4));
  return seconds * 1000 + fraction * 1000 / TwoTo32;
}

std::int16_t MillisecondsOfText(double milliseconds) {
  const std::string text = NumberText(milliseconds);
  const std::size_t last = text.find('.') != std::string::npos ? 6 : 3;
  const std::string_view end =
      text.size() > last ? std::string_view(text).substr(text.size() - last) : text;
  return ToInteger(Val(end));
}

SystemTime ClockFieldsOf(double milliseconds, std::int32_t round_trip) {
  const std::int16_t of_second = MillisecondsOfText(milliseconds);
  const DateTime moment{(milliseconds / 1000 + SecondsTo1900) / SecondsPerDay};
  SystemTime fields;
  fields.Milliseconds = static_cast<std::uint16_t>(ToInteger(round_trip / 2.0 + of_second));
  const CivilTime parts = PartsOf(CutToSecond(moment));
  fields.Hour = static_cast<std::uint16_t>(parts.Hour);
  fields.Minute = static_cast<std::uint16_t>(parts.Minute);
  fields.Second = static_cast<std::uint16_t>(parts.Second);
  fields.Day = static_cast<std::uint16_t>(parts.Day);
  fields.Month = static_cast<std::uint16_t>(parts.Month);
  fields.Year = static_cast<std::uint16_t>(parts.Year);
  return fields;
}

}  // namespace cvl
