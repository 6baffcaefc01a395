// Clocks that stand where they are put.

#pragma once

#include "tools/system/clock.h"

namespace cvl::tools {

class FakeClock final : public Clock {
 public:
  NtpTime Wall{0xC146AFC0, 0x40000000};  // 3 October 2002, 12:00:00.250 UTC
  std::int64_t Ms = 1000;

  [[nodiscard]] NtpTime WallTime() const override { return Wall; }
  [[nodiscard]] std::int64_t MonotonicMs() const override { return Ms; }
};

}  // namespace cvl::tools
