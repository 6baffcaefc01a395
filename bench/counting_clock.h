// A clock that counts how often it is read.

#pragma once

#include "platform/clock.h"

namespace cvl::bench {

class CountingClock final : public Clock {
 public:
  /// Passes everything on to CLOCK.
  explicit CountingClock(Clock &clock) : Clock_(clock) {}

  /// Readings of the time so far, in whole seconds or with milliseconds, and of the zone.
  int Readings = 0;

  DateTime Now() override { return ++Readings, Clock_.Now(); }
  const SystemTime &GetLocalTime() override { return ++Readings, Clock_.GetLocalTime(); }
  const TimeZoneInformation &GetTimeZoneInformation() override {
    return ++Readings, Clock_.GetTimeZoneInformation();
  }
  const TimeZoneInformation &ZoneOfReading() override { return Clock_.ZoneOfReading(); }
  std::int32_t GetTickCount() override { return Clock_.GetTickCount(); }
  [[nodiscard]] bool SetSystemTime(const SystemTime &moment) override {
    return Clock_.SetSystemTime(moment);
  }
  void SetLocalDate(DateTime date) override { Clock_.SetLocalDate(date); }
  void SetLocalTime(DateTime time) override { Clock_.SetLocalTime(time); }

 private:
  Clock &Clock_;
};

}  // namespace cvl::bench
