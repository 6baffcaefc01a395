// A clock that stands where it is put. Nothing moves it but the test, and, where the test
// allows it, an accepted setting.
//
//   FakeClock clock;
//   clock.StandAtLocal(DateTime::Of(2002, 10, 3, 12, 0, 0), 250);
//   clock.Script = {...};  // what the next readings find, one after the other

#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string_view>
#include <vector>

#include "platform/clock.h"

namespace cvl {

/// Milliseconds from 1 January 1970 to UTC and MILLISECONDS, as FakeClock counts.
std::int64_t UtcMsOf(DateTime utc, int milliseconds = 0);

/// The units of NAME, up to 32, the rest 0.
ZoneName ZoneNameOf(std::u16string_view name);

class FakeClock final : public Clock {
 public:
  /// What the clock shows, in milliseconds since 1 January 1970, UTC. It starts at
  /// 3 October 2002, 12:00:00.250.
  std::int64_t UtcMs = 1033646400250;

  /// The zone in force: at first one without daylight time, at UTC, without names.
  TimeZoneInformation Zone;

  /// What the next readings of the time find, as UtcMs: each call of Now and of
  /// GetLocalTime takes one from the front, and the clock then stands there. An empty
  /// script leaves the clock where it is.
  std::deque<std::int64_t> Script;

  std::int32_t TickCount = 0;
  /// What the next calls of GetTickCount find, in the same way.
  std::deque<std::int32_t> TickScript;

  /// How often each reading was made.
  int NowReadings = 0;
  int LocalTimeReadings = 0;
  int ZoneReadings = 0;
  int TickReadings = 0;

  /// Refuses every setting, as a kernel does that gives no right to it.
  bool RefusesAll = false;
  /// Moves to the moment of each accepted setting. Without it the clock stands still, and
  /// the test sees what was asked for alone.
  bool MovesWhenSet = false;

  /// Called with "tick count", "local date" and "local time" before that reading or setting,
  /// for whom their order matters.
  std::function<void(std::string_view)> OnCall = [](std::string_view) {};

  /// Every setting that was asked for, the refused ones included.
  std::vector<SystemTime> SystemTimesSet;
  std::vector<DateTime> LocalDatesSet;
  std::vector<DateTime> LocalTimesSet;

  void StandAtUtc(DateTime utc, int milliseconds = 0) { UtcMs = UtcMsOf(utc, milliseconds); }
  /// Stands at a local time, as the zone that is in force has it.
  void StandAtLocal(DateTime local, int milliseconds = 0);

  /// Lets a span pass: for the time and for the tick count, which may wrap.
  void Pass(std::int64_t milliseconds);

  /// Minutes from local time to UTC, by the zone's period.
  std::int32_t BiasMinutes() const;

  DateTime Now() override;
  const SystemTime &GetLocalTime() override;
  const TimeZoneInformation &GetTimeZoneInformation() override;
  const TimeZoneInformation &ZoneOfReading() override { return Zone; }
  std::int32_t GetTickCount() override;

  /// Refuses what IsSettable refuses, and moments before 1970, as Linux does.
  [[nodiscard]] bool SetSystemTime(const SystemTime &moment) override;
  /// Keep the other half of local time, as the clock stands, and drop its milliseconds.
  void SetLocalDate(DateTime date) override;
  void SetLocalTime(DateTime time) override;

 private:
  SystemTime Local_;

  void Read();
  std::int64_t LocalMs() const { return UtcMs - BiasMinutes() * std::int64_t{60000}; }
  bool MoveTo(std::int64_t utc_ms);
  void SetLocal(const CivilTime &date, const CivilTime &time);
};

}  // namespace cvl
