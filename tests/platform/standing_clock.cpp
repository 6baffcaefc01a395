#include "tests/platform/standing_clock.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cassert>
#include <cerrno>

namespace cvl {

namespace {

StandingClock *standing = nullptr;

timespec CoarseOf(const StandingClock &clock) {
  constexpr std::int64_t Second = 1000000000;
  const std::int64_t behind = clock.RealTime.tv_nsec - clock.CoarseLagNs;
  const std::int64_t seconds = behind >= 0 ? behind / Second : -((Second - 1 - behind) / Second);
  return {clock.RealTime.tv_sec + seconds, behind - seconds * Second};
}

int Refuse(int error) {
  errno = error;
  return -1;
}

}  // namespace

StandingClock::StandingClock() {
  assert(standing == nullptr);
  standing = this;
}

StandingClock::~StandingClock() {
  standing = nullptr;
}

}  // namespace cvl

extern "C" int clock_gettime(clockid_t clock, timespec *now) noexcept {
  cvl::StandingClock *standing = cvl::standing;
  if (standing != nullptr) {
    switch (clock) {
      case CLOCK_REALTIME:
        ++standing->RealTimeReadings;
        *now = standing->RealTime;
        return 0;
      case CLOCK_REALTIME_COARSE:
        *now = cvl::CoarseOf(*standing);
        return 0;
      case CLOCK_MONOTONIC:
        *now = {standing->MonotonicMs / 1000, standing->MonotonicMs % 1000 * 1000000};
        return 0;
      default:
        break;
    }
  }
  return static_cast<int>(syscall(SYS_clock_gettime, clock, now));
}

// The machine's clock is nobody's toy: without a StandingClock each setting is refused.
extern "C" int clock_settime(clockid_t clock, const timespec *moment) noexcept {
  cvl::StandingClock *standing = cvl::standing;
  if (standing == nullptr || clock != CLOCK_REALTIME) return cvl::Refuse(EPERM);
  standing->Settings.push_back(*moment);
  if (moment->tv_sec < 0) return cvl::Refuse(EINVAL);
  if (standing->SettingError != 0) return cvl::Refuse(standing->SettingError);
  if (standing->MovesWhenSet) standing->RealTime = *moment;
  return 0;
}
