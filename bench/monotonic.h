// The clock by which benchmarks measure.

#pragma once

#include <time.h>

#include <cstdint>

namespace cvl::bench {

/// Nanoseconds of the monotonic clock.
inline std::int64_t MonotonicNs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

}  // namespace cvl::bench
