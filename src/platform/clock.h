// The machine's clock and zone.

#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/date_time.h"

namespace cvl {

/// A moment in calendar fields, local or UTC as the routine says.
struct SystemTime {
  std::uint16_t Year = 0;
  std::uint16_t Month = 0;      ///< 1 to 12
  std::uint16_t DayOfWeek = 0;  ///< 0 is Sunday
  std::uint16_t Day = 0;
  std::uint16_t Hour = 0;
  std::uint16_t Minute = 0;
  std::uint16_t Second = 0;
  std::uint16_t Milliseconds = 0;

  friend bool operator==(const SystemTime &, const SystemTime &) = default;
};

/// Which period of its year a zone is in.
enum class ZonePeriod : std::uint32_t {
  Unknown = 0,  ///< the zone knows no daylight time in the present year
  Standard = 1,
  Daylight = 2,
};

/// Up to 32 UTF-16 units; shorter names end at the first 0.
using ZoneName = std::array<char16_t, 32>;

/// A zone's name in Latin-1, with "?" for what that lacks.
std::string TextOf(const ZoneName &name);

/// The zone in force. Biases are minutes, with UTC = local time + bias: in daylight time
/// the bias is Bias + DaylightBias, otherwise Bias alone.
struct TimeZoneInformation {
  ZonePeriod Period = ZonePeriod::Unknown;
  std::int32_t Bias = 0;
  ZoneName StandardName{};
  std::int32_t StandardBias = 0;  ///< there for completeness; nobody reads it
  ZoneName DaylightName{};
  std::int32_t DaylightBias = 0;
};

/// The machine's clock. One implementation per system, one for tests.
class Clock {
 public:
  virtual ~Clock() = default;

  /// The present local date-time in whole seconds. Local time may jump: never measure a
  /// span with it.
  virtual DateTime Now() = 0;

  /// Local time with its milliseconds; a reading of its own. The record is valid until the
  /// next call on this clock.
  virtual const SystemTime &GetLocalTime() = 0;

  /// The zone in force now. The record is valid until the next call on this clock.
  virtual const TimeZoneInformation &GetTimeZoneInformation() = 0;

  /// The zone in force at the last reading of the time, so that a local time and its bias
  /// belong together. Reads nothing. The record is valid until the next call on this clock.
  virtual const TimeZoneInformation &ZoneOfReading() = 0;

  /// Milliseconds of a monotonic clock as a signed 32-bit number: it wraps.
  virtual std::int32_t GetTickCount() = 0;

  /// Steps the clock to a moment in UTC. False when refused; nothing has changed then.
  /// A field out of range is refused, so is a year before 1601, and what the system
  /// itself refuses. DayOfWeek isn't looked at.
  [[nodiscard]] virtual bool SetSystemTime(const SystemTime &moment) = 0;

  /// Sets the date, or the time of day in whole seconds, of local time and keeps the other.
  /// Raises 70 when the system refuses.
  virtual void SetLocalDate(DateTime date) = 0;
  virtual void SetLocalTime(DateTime time) = 0;
};

/// Whether the fields of MOMENT make a date and time that a clock can be set to.
bool IsSettable(const SystemTime &moment);

}  // namespace cvl
