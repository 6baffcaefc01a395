// Everything that the server says about time, from three readings of the machine: local
// time in whole seconds, the milliseconds of the local clock, and the zone.
//
//   TimeEngine time(clock, dates, zone, svrCurrent);
//   NtpTimestamp stamp = time.GrabTime();  // the transmit field of a reply
//
// Nothing here catches a failure: each reaches the caller.

#pragma once

#include <array>
#include <cstdint>

#include "controls/text_box.h"
#include "platform/clock.h"
#include "state/run_state.h"

namespace cvl {

class TimeEngine {
 public:
  TimeEngine(Clock &clock, const BaseDates &dates, ZoneState &zone, TextBox &svr_current);

  /// Seconds to be added to local time to give UTC, as the zone is now.
  std::int32_t GrabBias();

  /// The present moment as a timestamp in UTC. Seconds count from NTPEpoch, or from
  /// StampEpoch while UseStampEpoch is set.
  ///
  /// The clock is read twice, seconds first and milliseconds after; a second that turns
  /// over in between puts the stamp up to a second behind, which isn't guarded.
  /// Raises 6 in millisecond 999 and from 7 February 2036 on (see EncodeTimestamp).
  NtpTimestamp GrabTime();

  /// The present moment for the client protocol: as GrabTime, counted from ClientEpoch.
  NtpTimestamp GrabCVLST();

  /// The present moment of the Time protocol: whole seconds since NTPEpoch in UTC, most
  /// significant byte first (RFC 868). Raises 6 from 7 February 2036 on.
  std::array<std::uint8_t, 4> GrabTimeValue();

  /// Whole seconds in UTC from BASE to the present moment.
  double SecondsSince(DateTime base);

  /// Local time with its milliseconds, into RECORD.
  void GrabLocalTime(SystemTime &record);

  /// Refreshes TZBias, TZName and the tip of the displayed clock from the zone in force.
  void svrBIAS();

  /// The present local date-time in whole seconds.
  DateTime Now() { return LastNow_ = Clock_.Now(); }

  /// What Now, or the seconds of a timestamp, read last. Reads nothing.
  DateTime LastNow() const { return LastNow_; }

 private:
  NtpTimestamp StampFrom(DateTime base);

  // The last count of seconds and what it was made of; it changes once a second.
  struct SecondCount {
    DateTime Local;
    std::int32_t Bias = 0;
    DateTime Base;
    double Seconds = 0;
  };

  // The last timestamp and what it was made of. A busy server makes many in a millisecond.
  struct Stamp {
    double Seconds = -1;
    int Milliseconds = -1;
    NtpTimestamp Bytes{};
  };

  Clock &Clock_;
  const BaseDates &Dates_;
  ZoneState &Zone_;
  TextBox &SvrCurrent_;
  DateTime LastNow_;
  SecondCount Count_;
  Stamp Last_;
};

}  // namespace cvl
