// The timestamp of a server, taken apart into milliseconds and put onto the clock.

#pragma once

#include <cstdint>
#include <span>

#include "platform/clock.h"

namespace cvl {

/// The eight bytes at OFFSET in milliseconds since 1 January 1900 UTC (RFC 5905, section 6),
/// as a float of which some hundredths are exact. Raises 9 when they aren't all there.
double MillisecondsOf(std::size_t offset, std::span<const std::uint8_t> bytes);

/// The milliseconds within the second of MILLISECONDS, by way of its decimal text: with a
/// point the last six characters, else the last three. A text with one decimal so brings
/// a digit of the seconds along, and the number is then too large for any clock; that is
/// meant, and it can be 1000 and more.
std::int16_t MillisecondsOfText(double milliseconds);

/// The fields to set the clock to for a server's moment and half a round trip. Half the
/// ROUND_TRIP goes into the milliseconds field alone, without a carry: a field of 1000 or
/// more is refused by the clock and the setting lost, which is meant.
/// Raises 6 when a number doesn't fit.
SystemTime ClockFieldsOf(double milliseconds, std::int32_t round_trip);

}  // namespace cvl
