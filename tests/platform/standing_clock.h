// The system's clocks in the hand of a test.
//
//   StandingClock clock;
//   clock.StandAt(1033646400);
//   LinuxClock().Now()  // 3 October 2002, 12:00:00 UTC
//
// standing_clock.cpp replaces clock_gettime and clock_settime for the whole test program.
// While no StandingClock lives, readings come from the kernel; settings never reach it.

#pragma once

#include <cstdint>
#include <ctime>
#include <vector>

namespace cvl {

/// While it lives, the real-time and the monotonic clock stand where they are put. There
/// is one at a time.
class StandingClock {
 public:
  /// The real-time clock stands at 3 October 2002, 12:00:00.250, the monotonic one at 1000 s.
  StandingClock();
  ~StandingClock();
  StandingClock(const StandingClock &) = delete;
  StandingClock &operator=(const StandingClock &) = delete;

  void StandAt(std::time_t second, long nanosecond = 0) { RealTime = {second, nanosecond}; }
  void PassMonotonic(std::int64_t milliseconds) { MonotonicMs += milliseconds; }

  timespec RealTime{1033646400, 250000000};
  /// How far the coarse real-time clock is behind the precise one.
  std::int64_t CoarseLagNs = 0;
  std::int64_t MonotonicMs = 1000000;
  /// How often the precise real-time clock was read.
  int RealTimeReadings = 0;

  /// Every setting of the real-time clock that reached the system call.
  std::vector<timespec> Settings;
  /// What a setting fails with, 0 to accept it. Moments before 1970 fail in any case.
  int SettingError = 0;
  /// Moves to what an accepted setting asks for.
  bool MovesWhenSet = false;
};

}  // namespace cvl
