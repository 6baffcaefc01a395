#include "tools/system/clock.h"

#include <ctime>

namespace cvl::tools {

NtpTime SystemClock::WallTime() const {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return NtpTimeOf(now.tv_sec, now.tv_nsec);
}

std::int64_t SystemClock::MonotonicMs() const {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

}  // namespace cvl::tools
