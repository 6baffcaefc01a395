// The clock of a Linux machine: CLOCK_REALTIME, through the zone database.

#pragma once

#include <ctime>

#include "platform/clock.h"

namespace cvl {

/// What the zone database is asked for once in a second of wall time is kept until the
/// second turns: a time server reads its clock far more often than that. /etc/localtime
/// is looked at anew with each second, so a changed zone is felt within one.
class LinuxClock final : public Clock {
 public:
  DateTime Now() override;
  const SystemTime &GetLocalTime() override;
  const TimeZoneInformation &GetTimeZoneInformation() override;
  const TimeZoneInformation &ZoneOfReading() override { return Zone_; }
  std::int32_t GetTickCount() override;
  [[nodiscard]] bool SetSystemTime(const SystemTime &moment) override;
  void SetLocalDate(DateTime date) override;
  void SetLocalTime(DateTime time) override;

 private:
  timespec Read();
  // Kept out of the readings, which are short without it.
  [[gnu::noinline, gnu::cold]] void TurnSecond(std::time_t second);
  void LearnZone(std::time_t second);
  void LearnYear(std::time_t second, int year);
  void SetLocal(DateTime local);

  // The second of the last reading, and what belongs to it.
  std::time_t Second_ = -1;
  DateTime Now_;
  SystemTime Local_;
  TimeZoneInformation Zone_;

  // By which the zone file is known to be the same.
  struct ZoneFile {
    unsigned long Device = 0;
    unsigned long Number = 0;
    std::time_t Changed = -1;

    friend bool operator==(const ZoneFile &, const ZoneFile &) = default;
  };
  ZoneFile File_;

  // What the zone database says of the present year.
  struct Year {
    int Number = 0;
    bool HasDaylight = false;
    bool HasStandard = false;
    long StandardOffset = 0;  ///< seconds east of UTC outside daylight time
    ZoneName StandardName{};
    ZoneName DaylightName{};
  };
  Year Year_;
};

}  // namespace cvl
