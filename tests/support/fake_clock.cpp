#include "tests/support/fake_clock.h"

#include <algorithm>
#include <chrono>

#include "base/runtime_error.h"

namespace cvl {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::sys_time;

/// Made of whole days and a time of day, so that it equals what DateTime::Of makes.
DateTime MomentOf(std::int64_t ms) {
  const seconds whole = floor<seconds>(milliseconds(ms));
  const days date = floor<days>(whole);
  return DateTime{DaysTo1970 + static_cast<double>(date.count())}.Plus(
      static_cast<double>((whole - date).count()) / SecondsPerDay);
}

SystemTime FieldsOf(std::int64_t ms) {
  const sys_time<milliseconds> moment{milliseconds(ms)};
  const auto date = floor<days>(moment);
  const std::chrono::year_month_day calendar{date};
  const std::chrono::hh_mm_ss time{moment - date};
  return {static_cast<std::uint16_t>(static_cast<int>(calendar.year())),
          static_cast<std::uint16_t>(static_cast<unsigned>(calendar.month())),
          static_cast<std::uint16_t>(std::chrono::weekday{date}.c_encoding()),
          static_cast<std::uint16_t>(static_cast<unsigned>(calendar.day())),
          static_cast<std::uint16_t>(time.hours().count()),
          static_cast<std::uint16_t>(time.minutes().count()),
          static_cast<std::uint16_t>(time.seconds().count()),
          static_cast<std::uint16_t>(time.subseconds().count())};
}

}  // namespace

std::int64_t UtcMsOf(DateTime utc, int milliseconds) {
  return static_cast<std::int64_t>(SecondsBetween(DateTime{DaysTo1970}, utc)) * 1000 + milliseconds;
}

ZoneName ZoneNameOf(std::u16string_view name) {
  ZoneName units{};
  std::copy_n(name.begin(), std::min(name.size(), units.size()), units.begin());
  return units;
}

void FakeClock::StandAtLocal(DateTime local, int milliseconds) {
  UtcMs = UtcMsOf(local, milliseconds) + BiasMinutes() * std::int64_t{60000};
}

void FakeClock::Pass(std::int64_t milliseconds) {
  UtcMs += milliseconds;
  TickCount = static_cast<std::int32_t>(static_cast<std::uint32_t>(TickCount) +
                                        static_cast<std::uint32_t>(milliseconds));
}

std::int32_t FakeClock::BiasMinutes() const {
  return Zone.Period == ZonePeriod::Daylight ? Zone.Bias + Zone.DaylightBias : Zone.Bias;
}

void FakeClock::Read() {
  if (Script.empty()) return;
  UtcMs = Script.front();
  Script.pop_front();
}

DateTime FakeClock::Now() {
  ++NowReadings;
  Read();
  return MomentOf(LocalMs());
}

const SystemTime &FakeClock::GetLocalTime() {
  ++LocalTimeReadings;
  Read();
  Local_ = FieldsOf(LocalMs());
  return Local_;
}

const TimeZoneInformation &FakeClock::GetTimeZoneInformation() {
  ++ZoneReadings;
  return Zone;
}

std::int32_t FakeClock::GetTickCount() {
  OnCall("tick count");
  ++TickReadings;
  if (!TickScript.empty()) {
    TickCount = TickScript.front();
    TickScript.pop_front();
  }
  return TickCount;
}

bool FakeClock::SetSystemTime(const SystemTime &moment) {
  SystemTimesSet.push_back(moment);
  if (!IsSettable(moment)) return false;
  const DateTime utc = DateTime::Of(moment.Year, moment.Month, moment.Day, moment.Hour,
                                    moment.Minute, moment.Second);
  return MoveTo(UtcMsOf(utc, moment.Milliseconds));
}

void FakeClock::SetLocalDate(DateTime date) {
  OnCall("local date");
  LocalDatesSet.push_back(date);
  SetLocal(PartsOf(date), PartsOf(MomentOf(LocalMs())));
}

void FakeClock::SetLocalTime(DateTime time) {
  OnCall("local time");
  LocalTimesSet.push_back(time);
  SetLocal(PartsOf(MomentOf(LocalMs())), PartsOf(time));
}

bool FakeClock::MoveTo(std::int64_t utc_ms) {
  if (RefusesAll || utc_ms < 0) return false;
  if (MovesWhenSet) UtcMs = utc_ms;
  return true;
}

void FakeClock::SetLocal(const CivilTime &date, const CivilTime &time) {
  const DateTime local =
      DateTime::Of(date.Year, date.Month, date.Day, time.Hour, time.Minute, time.Second);
  if (!MoveTo(UtcMsOf(local) + BiasMinutes() * std::int64_t{60000})) {
    throw RuntimeError(error_number::PermissionDenied);
  }
}

}  // namespace cvl
