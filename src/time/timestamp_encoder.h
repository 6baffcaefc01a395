// Seconds and milliseconds as bytes on the wire, made in floats with powers of 256.

#pragma once

#include <array>
#include <cstdint>

#include "state/ntp_timestamp.h"

namespace cvl {

/// The eight bytes of a moment: SECONDS since some base date, and MILLISECONDS of the
/// second in progress.
///
/// The fraction field is one of 1000 that depend on the milliseconds alone. Each of its
/// bytes is rounded by itself, ties to even, with what lies below it still in hand, so it
/// may be one too high; and a byte that divides without a remainder is 0x0A (see mdiv).
/// Clients see this shape; TimestampEncoder tests pin it.
/// Raises 6 when MILLISECONDS is 999, whose fraction fits no byte, and when SECONDS
/// reaches 2^32.
NtpTimestamp EncodeTimestamp(double seconds, int milliseconds);

/// Whole SECONDS in four bytes, the most significant first (RFC 868). Raises 6 from 2^32 on.
std::array<std::uint8_t, 4> EncodeSeconds(double seconds);

}  // namespace cvl
