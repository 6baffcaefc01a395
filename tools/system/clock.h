// The machine's clocks, handed in so that a test can supply its own.

#pragma once

#include <cstdint>

#include "tools/wire/ntp_time.h"

namespace cvl::tools {

class Clock {
 public:
  virtual ~Clock() = default;
  /// UTC as the machine sees it. May jump.
  [[nodiscard]] virtual NtpTime WallTime() const = 0;
  /// Milliseconds from some fixed moment on; never goes back.
  [[nodiscard]] virtual std::int64_t MonotonicMs() const = 0;
};

/// The clocks of this machine, to the nanosecond and to the millisecond.
class SystemClock final : public Clock {
 public:
  [[nodiscard]] NtpTime WallTime() const override;
  [[nodiscard]] std::int64_t MonotonicMs() const override;
};

}  // namespace cvl::tools
