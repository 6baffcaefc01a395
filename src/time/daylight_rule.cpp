#include "time/daylight_rule.h"

#include "base/numbers.h"

namespace cvl {

namespace {

// April is judged by standard time in the middle of the continent, October an hour ahead
// of that, by its daylight time; the days to both changes count from the former.
constexpr double BehindUtcForApril = 25200;
constexpr double BehindUtcForOctober = 21600;

constexpr std::int64_t AprilDaysAhead = 30;
constexpr std::int64_t OctoberDaysAhead = 31;

constexpr int DaylightTime = 50;
constexpr int StandardTime = 0;

/// NUMBER rounded to the nearest whole number, a tie to the even neighbour.
int Rounded(double number) {
  return static_cast<int>(ToLong(number));
}

/// Whether NOW is the day of a change and behind it. Second 00 doesn't count as behind.
bool IsBehindOnItsDay(const CivilTime &now, const CivilTime &change) {
  return now.Month == change.Month && now.Day == change.Day && now.Hour >= change.Hour &&
         now.Second > 0;
}

}  // namespace

DateTime AprilChange(int year) {
  const int day = (2 + 6 * year - Rounded(year / 4.0)) % 7 + 1;
  return DateTime::Of(year, 4, day, 2, 0, 0);
}

DateTime OctoberChange(int year) {
  const int day = 31 - (Rounded(5 * year / 4.0) + 1) % 7;
  return DateTime::Of(year, 10, day, 2, 0, 0);
}

int DaylightIndicator(DateTime stamped, DateTime april, DateTime october, int local_month) {
  const DateTime for_april = stamped.Plus(-BehindUtcForApril / SecondsPerDay);
  const DateTime for_october = stamped.Plus(-BehindUtcForOctober / SecondsPerDay);
  const std::int64_t to_april = CalendarDay(april) - CalendarDay(for_april);
  const std::int64_t to_october = CalendarDay(october) - CalendarDay(for_april);
  if (to_april >= 0 && to_april <= AprilDaysAhead) {
    if (IsBehindOnItsDay(PartsOf(for_april), PartsOf(april))) return DaylightTime;
    return DaylightTime + 1 + static_cast<int>(to_april);
  }
  if (to_october >= 0 && to_october <= OctoberDaysAhead) {
    if (IsBehindOnItsDay(PartsOf(for_october), PartsOf(october))) return StandardTime;
    return StandardTime + 1 + static_cast<int>(to_october);
  }
  return local_month >= 4 && local_month <= 10 ? DaylightTime : StandardTime;
}

}  // namespace cvl
