// The eight bytes that stand for a moment on the wire.

#pragma once

#include <array>
#include <cstdint>

namespace cvl {

/// In wire order: four bytes of seconds, four of fraction (RFC 5905, section 6).
using NtpTimestamp = std::array<std::uint8_t, 8>;

}  // namespace cvl
