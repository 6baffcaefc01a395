#include "base/date_time.h"

#include <chrono>
#include <cmath>

#include "base/date_patterns.h"
#include "base/runtime_error.h"
#include "base/text.h"

namespace cvl {

namespace {

// 1 January 100 and 1 January 10000, between which date-time values are defined.
constexpr double FirstDay = -657434;
constexpr double BehindLastDay = 2958466;

/// MOMENT in whole seconds since 30 December 1899.
std::int64_t WholeSeconds(DateTime moment) {
  if (!(moment.Days >= FirstDay && moment.Days < BehindLastDay)) {
    throw RuntimeError(error_number::Overflow);
  }
  const std::int64_t seconds = std::llrint(moment.Days * SecondsPerDay);
  if (static_cast<double>(seconds) >= BehindLastDay * SecondsPerDay) {
    throw RuntimeError(error_number::Overflow);
  }
  return seconds;
}

/// WHOLE divided by PARTS, rounded downwards.
std::int64_t FloorDivide(std::int64_t whole, std::int64_t parts) {
  const std::int64_t quotient = whole / parts;
  return whole % parts < 0 ? quotient - 1 : quotient;
}

std::string ShortDateText(const CivilTime &parts) {
  std::string text = Joined({std::to_string(parts.Month), "/", std::to_string(parts.Day), "/"});
  AppendFourDigits(text, parts.Year);
  return text;
}

std::string LongTimeText(const CivilTime &parts) {
  std::string text;
  AppendTwelveHourTime(text, parts);
  return text.front() == '0' ? text.substr(1) : text;
}

}  // namespace

std::int64_t DayNumber(int year, int month, int day) {
  const std::chrono::sys_days date = std::chrono::year{year} /
                                     std::chrono::month{static_cast<unsigned>(month)} /
                                     std::chrono::day{static_cast<unsigned>(day)};
  return date.time_since_epoch().count() + static_cast<std::int64_t>(DaysTo1970);
}

DateTime DateTime::Of(int year, int month, int day) {
  return DateTime{static_cast<double>(DayNumber(year, month, day))};
}

DateTime DateTime::Of(int year, int month, int day, int hour, int minute, int second) {
  return Of(year, month, day).Plus((hour * 3600 + minute * 60 + second) / SecondsPerDay);
}

CivilTime PartsOf(DateTime moment) {
  const std::int64_t seconds = WholeSeconds(moment);
  const std::int64_t day = FloorDivide(seconds, 86400);
  const auto of_day = static_cast<int>(seconds - day * 86400);
  const std::chrono::sys_days date{std::chrono::days{day - static_cast<std::int64_t>(DaysTo1970)}};
  const std::chrono::year_month_day calendar{date};
  return {static_cast<int>(calendar.year()),
          static_cast<int>(static_cast<unsigned>(calendar.month())),
          static_cast<int>(static_cast<unsigned>(calendar.day())),
          of_day / 3600,
          of_day / 60 % 60,
          of_day % 60,
          static_cast<int>(std::chrono::weekday{date}.c_encoding())};
}

std::int64_t CalendarDay(DateTime moment) {
  return FloorDivide(WholeSeconds(moment), 86400);
}

double SecondsBetween(DateTime from, DateTime until) {
  return static_cast<double>(std::llrint((until.Days - from.Days) * SecondsPerDay));
}

std::string ShortDateText(DateTime moment) {
  return ShortDateText(PartsOf(moment));
}

std::string LongTimeText(DateTime moment) {
  return LongTimeText(PartsOf(moment));
}

std::string GeneralText(DateTime moment) {
  const CivilTime parts = PartsOf(moment);
  return ShortDateText(parts) + " " + LongTimeText(parts);
}

}  // namespace cvl
