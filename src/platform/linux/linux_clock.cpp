#include "platform/linux/linux_clock.h"

#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstring>

#include "base/runtime_error.h"
#include "platform/linux/error_table.h"

namespace cvl {

namespace {

/// OFFSET of the zone database, seconds east of UTC, in whole minutes with the sign of a
/// bias. Offsets with seconds in them ended before 1973; they are rounded.
std::int32_t BiasOf(long offset) {
  return static_cast<std::int32_t>(-std::lround(static_cast<double>(offset) / 60));
}

ZoneName NameOf(const char *abbreviation) {
  ZoneName name{};
  for (std::size_t at = 0; at < name.size() && abbreviation[at] != '\0'; ++at) {
    name[at] = static_cast<unsigned char>(abbreviation[at]);
  }
  return name;
}

SystemTime FieldsOf(std::time_t seconds) {
  const std::chrono::sys_seconds moment{std::chrono::seconds{seconds}};
  const auto date = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day calendar{date};
  const std::chrono::hh_mm_ss time{moment - date};
  SystemTime fields;
  fields.Year = static_cast<std::uint16_t>(static_cast<int>(calendar.year()));
  fields.Month = static_cast<std::uint16_t>(static_cast<unsigned>(calendar.month()));
  fields.DayOfWeek = static_cast<std::uint16_t>(std::chrono::weekday{date}.c_encoding());
  fields.Day = static_cast<std::uint16_t>(static_cast<unsigned>(calendar.day()));
  fields.Hour = static_cast<std::uint16_t>(time.hours().count());
  fields.Minute = static_cast<std::uint16_t>(time.minutes().count());
  fields.Second = static_cast<std::uint16_t>(time.seconds().count());
  return fields;
}

std::time_t SecondsOf(const SystemTime &fields) {
  const auto date =
      std::chrono::sys_days{std::chrono::year{fields.Year} / std::chrono::month{fields.Month} /
                            std::chrono::day{fields.Day}};
  return date.time_since_epoch().count() * 86400L + fields.Hour * 3600L + fields.Minute * 60L +
         fields.Second;
}

}  // namespace

timespec LinuxClock::Read() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  if (now.tv_sec != Second_) TurnSecond(now.tv_sec);
  return now;
}

void LinuxClock::TurnSecond(std::time_t second) {
  LearnZone(second);
  Second_ = second;
  const std::int32_t bias =
      Zone_.Period == ZonePeriod::Daylight ? Zone_.Bias + Zone_.DaylightBias : Zone_.Bias;
  const std::time_t local_second = second - bias * 60L;
  Now_ = DateTime{static_cast<double>(local_second) / SecondsPerDay + DaysTo1970};
  Local_ = FieldsOf(local_second);
}

void LinuxClock::LearnZone(std::time_t second) {
  // tzset notices a changed /etc/localtime; localtime_r alone never does.
  tzset();
  tm local{};
  localtime_r(&second, &local);
  struct stat status {};
  if (stat("/etc/localtime", &status) != 0) status = {};
  const ZoneFile file{status.st_dev, status.st_ino, status.st_mtim.tv_sec};
  if (local.tm_year + 1900 != Year_.Number || file != File_) {
    File_ = file;
    LearnYear(second, local.tm_year + 1900);
  }

  const std::int32_t bias = BiasOf(local.tm_gmtoff);
  const bool daylight = local.tm_isdst > 0;
  Zone_.Period = !Year_.HasDaylight ? ZonePeriod::Unknown
                 : daylight         ? ZonePeriod::Daylight
                                    : ZonePeriod::Standard;
  Zone_.StandardName = Year_.StandardName;
  Zone_.DaylightName = Year_.DaylightName;
  if (Zone_.Period == ZonePeriod::Daylight) {
    // A zone in daylight time all the year round has no standard offset to tell; the
    // usual hour stands for it.
    Zone_.Bias = Year_.HasStandard ? BiasOf(Year_.StandardOffset) : bias + 60;
    Zone_.DaylightBias = bias - Zone_.Bias;
    Zone_.DaylightName = NameOf(local.tm_zone);
  } else {
    Zone_.Bias = bias;
    Zone_.DaylightBias = 0;
    Zone_.StandardName = NameOf(local.tm_zone);
  }
}

void LinuxClock::LearnYear(std::time_t second, int year) {
  Year_ = Year{};
  Year_.Number = year;

  // The zone database can't be asked for its changes, only for moments: one a day of the
  // year. Daylight times shorter than that don't exist.
  tm new_year{};
  new_year.tm_year = year - 1900;
  new_year.tm_mday = 1;
  const std::time_t first = timegm(&new_year);
  for (int day = 0; day <= 366; ++day) {
    const std::time_t noon = first + day * 86400L + 43200;
    tm local{};
    localtime_r(&noon, &local);
    if (local.tm_year + 1900 != year) continue;
    if (local.tm_isdst > 0) {
      Year_.HasDaylight = true;
      Year_.DaylightName = NameOf(local.tm_zone);
    } else if (!Year_.HasStandard || noon <= second) {
      // Where the standard offset itself changes within the year, the one before the
      // present moment counts.
      Year_.HasStandard = true;
      Year_.StandardOffset = local.tm_gmtoff;
      Year_.StandardName = NameOf(local.tm_zone);
    }
  }
  tm present{};
  localtime_r(&second, &present);
  if (present.tm_isdst > 0) Year_.HasDaylight = true;
  if (!Year_.HasDaylight) Year_.DaylightName = Year_.StandardName;
  if (!Year_.HasStandard) Year_.StandardName = Year_.DaylightName;
}

DateTime LinuxClock::Now() {
  Read();
  return Now_;
}

const SystemTime &LinuxClock::GetLocalTime() {
  const timespec now = Read();
  Local_.Milliseconds = static_cast<std::uint16_t>(now.tv_nsec / 1000000);
  return Local_;
}

const TimeZoneInformation &LinuxClock::GetTimeZoneInformation() {
  Read();
  return Zone_;
}

std::int32_t LinuxClock::GetTickCount() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const auto milliseconds = static_cast<std::uint64_t>(now.tv_sec) * 1000 +
                            static_cast<std::uint64_t>(now.tv_nsec) / 1000000;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(milliseconds));
}

bool LinuxClock::SetSystemTime(const SystemTime &moment) {
  if (!IsSettable(moment)) return false;
  timespec wanted{};
  wanted.tv_sec = SecondsOf(moment);
  wanted.tv_nsec = moment.Milliseconds * 1000000L;
  if (clock_settime(CLOCK_REALTIME, &wanted) == 0) return true;
  TraceFailure("clock_settime", errno);
  return false;
}

void LinuxClock::SetLocal(DateTime local) {
  const CivilTime parts = PartsOf(local);
  tm fields{};
  fields.tm_year = parts.Year - 1900;
  fields.tm_mon = parts.Month - 1;
  fields.tm_mday = parts.Day;
  fields.tm_hour = parts.Hour;
  fields.tm_min = parts.Minute;
  fields.tm_sec = parts.Second;
  fields.tm_isdst = -1;
  timespec wanted{};
  wanted.tv_sec = mktime(&fields);
  if (clock_settime(CLOCK_REALTIME, &wanted) == 0) return;
  TraceFailure("clock_settime", errno);
  throw RuntimeError(error_number::PermissionDenied);
}

void LinuxClock::SetLocalDate(DateTime date) {
  const CivilTime now = PartsOf(Now());
  const CivilTime wanted = PartsOf(date);
  SetLocal(DateTime::Of(wanted.Year, wanted.Month, wanted.Day, now.Hour, now.Minute, now.Second));
}

void LinuxClock::SetLocalTime(DateTime time) {
  const CivilTime now = PartsOf(Now());
  const CivilTime wanted = PartsOf(time);
  SetLocal(DateTime::Of(now.Year, now.Month, now.Day, wanted.Hour, wanted.Minute, wanted.Second));
}

}  // namespace cvl
