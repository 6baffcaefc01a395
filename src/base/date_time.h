// Date-time values: a 64-bit float that counts days since 30 December 1899, 00:00; the
// fraction is the time of day. The calendar is the proleptic Gregorian one.
//
//   DateTime noon = DateTime::Of(2002, 10, 3, 12, 0, 0);
//   GeneralText(noon)  // "10/3/2002 12:00:00 PM"

#pragma once

#include <cstdint>
#include <string>

namespace cvl {

/// Seconds in a day, as the float that date-time arithmetic uses.
inline constexpr double SecondsPerDay = 86400;

/// The date-time value of 1 January 1970, 00:00.
inline constexpr double DaysTo1970 = 25569;

/// The two days from 30 December 1899 to 1 January 1900, in seconds.
inline constexpr double SecondsTo1900 = 172800;

struct DateTime {
  double Days = 0;

  /// The value of a calendar date at 00:00. Month and day must exist.
  static DateTime Of(int year, int month, int day);
  /// The value of a calendar date and a time of day in whole seconds.
  static DateTime Of(int year, int month, int day, int hour, int minute, int second);

  DateTime Plus(double days) const { return DateTime{Days + days}; }

  friend bool operator==(DateTime a, DateTime b) { return a.Days == b.Days; }
  friend bool operator!=(DateTime a, DateTime b) { return a.Days != b.Days; }
};

/// Date and time parts of a date-time value.
struct CivilTime {
  int Year;
  int Month;      ///< 1 to 12
  int Day;        ///< 1 to 31
  int Hour;       ///< 0 to 23
  int Minute;     ///< 0 to 59
  int Second;     ///< 0 to 59
  int DayOfWeek;  ///< 0 is Sunday
};

/// The parts of MOMENT, rounded to the nearest whole second first.
/// Raises 6 outside the years 100 to 9999.
CivilTime PartsOf(DateTime moment);

/// Days from 30 December 1899 to a date of the proleptic Gregorian calendar.
std::int64_t DayNumber(int year, int month, int day);

/// Whole calendar days since 30 December 1899 on which MOMENT lies; the time of day,
/// rounded to the nearest second, doesn't count. Raises 6 as PartsOf does.
std::int64_t CalendarDay(DateTime moment);

/// Whole seconds from FROM to UNTIL, as a float that stays exact beyond 2^31.
double SecondsBetween(DateTime from, DateTime until);

/// The date as "11/14/2002".
std::string ShortDateText(DateTime moment);

/// The time as "9:26:13 AM".
std::string LongTimeText(DateTime moment);

/// Date and time, always both: "11/14/2002 9:26:13 AM".
std::string GeneralText(DateTime moment);

}  // namespace cvl
