// Pieces that texts about dates and times are put together from. Names are English.
//
//   const CivilTime parts = PartsOf(moment);
//   std::string text(WeekdayName(parts));  // "Thursday"
//   text += ' ';
//   AppendTime(text, parts);               // "Thursday 17:25:41"

#pragma once

#include <array>
#include <string>
#include <string_view>

#include "base/date_time.h"

namespace cvl {

/// "January" to "December".
inline std::string_view MonthName(const CivilTime &date) {
  static constexpr std::array<std::string_view, 12> Names = {
      "January", "February", "March",     "April",   "May",      "June",
      "July",    "August",   "September", "October", "November", "December"};
  return Names[static_cast<std::size_t>(date.Month - 1)];
}

/// "Sunday" to "Saturday".
inline std::string_view WeekdayName(const CivilTime &date) {
  static constexpr std::array<std::string_view, 7> Names = {
      "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
  return Names[static_cast<std::size_t>(date.DayOfWeek)];
}

/// The last two digits of NUMBER, which isn't negative.
inline void AppendTwoDigits(std::string &text, int number) {
  text += static_cast<char>('0' + number / 10 % 10);
  text += static_cast<char>('0' + number % 10);
}

/// The last four digits of NUMBER, which isn't negative.
inline void AppendFourDigits(std::string &text, int number) {
  AppendTwoDigits(text, number / 100);
  AppendTwoDigits(text, number);
}

/// The time of the 24-hour clock, "17:25:41".
inline void AppendTime(std::string &text, const CivilTime &time) {
  AppendTwoDigits(text, time.Hour);
  text += ':';
  AppendTwoDigits(text, time.Minute);
  text += ':';
  AppendTwoDigits(text, time.Second);
}

/// The time of the 12-hour clock, "05:25:40 PM".
inline void AppendTwelveHourTime(std::string &text, const CivilTime &time) {
  CivilTime shown = time;
  shown.Hour = time.Hour % 12 == 0 ? 12 : time.Hour % 12;
  AppendTime(text, shown);
  text += time.Hour < 12 ? " AM" : " PM";
}

}  // namespace cvl
