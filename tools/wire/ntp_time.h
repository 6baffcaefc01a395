// A moment in the 64 bits of NTP: 32 of seconds since 1900, 32 of fraction.

#pragma once

#include <cstdint>
#include <string>

#include "tools/wire/bytes.h"

namespace cvl::tools {

/// RFC 5905, section 6. All zero means "not known".
struct NtpTime {
  std::uint32_t Seconds = 0;
  std::uint32_t Fraction = 0;  ///< in units of 2^-32 s

  bool operator==(const NtpTime &) const = default;
};

/// The moment `nanoseconds` (0 to 999999999) after a whole second of UTC.
NtpTime NtpTimeOf(std::int64_t unix_seconds, std::int64_t nanoseconds);

/// The moment that many milliseconds later, or earlier when negative. Wraps at the end
/// of an era.
NtpTime Shifted(NtpTime moment, std::int64_t milliseconds);

/// Seconds from one moment to another, negative when `to` lies before `from`. Right for
/// any two moments less than 68 years apart, also across the end of an era.
double SecondsBetween(NtpTime from, NtpTime to);

/// "2002-10-03 12:00:00.250000 UTC", or "none" for the all-zero moment.
std::string TimeText(NtpTime moment);

/// The eight bytes from `offset` on. The caller has checked that they exist.
NtpTime ReadNtpTime(ByteView bytes, std::size_t offset);
void WriteNtpTime(std::span<std::uint8_t> bytes, std::size_t offset, NtpTime moment);

}  // namespace cvl::tools
