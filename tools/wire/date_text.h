// A count of seconds as a date that people read.

#pragma once

#include <cstdint>
#include <string>

namespace cvl::tools {

/// Seconds from 1 January 1970 to 1 January 1900, to 1 January 2002: the zeros of the
/// NTP and Time services, and of the client protocol.
constexpr std::int64_t UnixSecondsAt1900 = -2'208'988'800;
constexpr std::int64_t UnixSecondsAt2002 = 1'009'843'200;

/// UTC as "2002-10-03 12:00:00", for any count within the years 0 to 9999.
std::string DateText(std::int64_t unix_seconds);

/// The same with six decimals behind the seconds. `fraction` is in units of 2^-32 s and
/// is rounded to the nearest microsecond, into the next second where it must be.
std::string DateText(std::int64_t unix_seconds, std::uint32_t fraction);

/// What the 32-bit count of seconds since 1900 means. A count without its top bit is
/// read as one of the second era, which begins on 7 February 2036 (RFC 4330, section 3).
std::int64_t UnixSecondsOf1900Count(std::uint32_t count);

}  // namespace cvl::tools
