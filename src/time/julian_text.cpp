#include "time/julian_text.h"

#include "base/date_patterns.h"
#include "base/numbers.h"
#include "base/text.h"
#include "time/daylight_rule.h"

namespace cvl {

namespace {

// The Julian day of 31 December 99, counted from which 1 January 100 is day 1.
constexpr std::int64_t JulianDayBefore100 = 1721058 + 36525;

// Enough to round a whole second up to the next one, too little to reach the one behind it.
constexpr double ToNextSecond = 0.00001;

/// The last five digits of UTC's Julian day: a cut, not a difference, so that the field
/// starts anew from 00000 one day.
std::string JulianDigits(DateTime utc, DateTime date_base_100) {
  const std::int64_t days = CalendarDay(utc) - CalendarDay(date_base_100);
  const std::string julian_day = std::to_string(days + JulianDayBefore100 + 1);
  return julian_day.substr(julian_day.size() - 5);
}

/// "02-10-03 17:25:41"
void AppendStamp(std::string &text, const CivilTime &stamped) {
  AppendTwoDigits(text, stamped.Year % 100);
  text += '-';
  AppendTwoDigits(text, stamped.Month);
  text += '-';
  AppendTwoDigits(text, stamped.Day);
  text += ' ';
  AppendTime(text, stamped);
}

/// Milliseconds in at least five characters, "  5.0".
void AppendAdvance(std::string &text, int milliseconds) {
  const std::string advance = std::to_string(milliseconds) + ".0";
  if (advance.size() < 5) text.append(5 - advance.size(), ' ');
  text += advance;
}

}  // namespace

std::string GrabMJulian(TimeEngine &time, const BaseDates &dates, const ZoneState &zone) {
  const DateTime utc = time.Now().Plus(MultiplyLong(zone.TZBias, 60) / SecondsPerDay);
  std::string text = Joined({"\n", JulianDigits(utc, dates.DateBase100), " "});
  SystemTime local;
  time.GrabLocalTime(local);
  const DateTime stamped = utc.Plus(ToNextSecond);
  AppendStamp(text, PartsOf(stamped));
  text += ' ';
  const DateTime april = AprilChange(PartsOf(time.Now()).Year);
  const DateTime october = OctoberChange(PartsOf(time.Now()).Year);
  AppendTwoDigits(text, DaylightIndicator(stamped, april, october, PartsOf(time.Now()).Month));
  text += " 0 0 ";
  AppendAdvance(text, 1000 - local.Milliseconds);
  text += " UTC(CVLS) *\n";
  return text;
}

}  // namespace cvl
