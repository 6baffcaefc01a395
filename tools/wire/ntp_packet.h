// The 48 bytes of an NTP request or reply, without extensions or authenticator.

#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "tools/wire/bytes.h"
#include "tools/wire/ntp_time.h"

namespace cvl::tools {

constexpr std::size_t NtpLength = 48;
constexpr std::uint8_t NtpModeClient = 3;
constexpr std::uint8_t NtpModeServer = 4;

/// Where two of the timestamps lie in the packet.
constexpr std::size_t NtpOriginateOffset = 24;
constexpr std::size_t NtpTransmitOffset = 40;

/// The fields of RFC 5905, section 7.3, in the order of the wire.
struct NtpPacket {
  std::uint8_t Leap = 0;     ///< 0 to 3; 3 means "not synchronised"
  std::uint8_t Version = 4;  ///< 0 to 7
  std::uint8_t Mode = 0;     ///< 0 to 7
  std::uint8_t Stratum = 0;
  std::int8_t Poll = 0;              ///< power of two of seconds
  std::int8_t Precision = 0;         ///< power of two of seconds
  std::uint32_t RootDelay = 0;       ///< in units of 2^-16 s
  std::uint32_t RootDispersion = 0;  ///< in units of 2^-16 s
  std::array<std::uint8_t, 4> ReferenceId{};
  NtpTime Reference;
  NtpTime Originate;
  NtpTime Receive;
  NtpTime Transmit;
};

/// The packet as bytes. Leap, version and mode keep their low bits only.
std::array<std::uint8_t, NtpLength> EncodeNtpPacket(const NtpPacket &packet);

/// The fields of exactly 48 bytes, whatever they hold; nothing for any other length.
std::optional<NtpPacket> DecodeNtpPacket(ByteView bytes);

/// What a client learns from one exchange (RFC 5905, section 8).
struct NtpSample {
  double Offset = 0;  ///< seconds by which the server is ahead of the client
  double Delay = 0;   ///< seconds on the road, there and back
};

/// `sent` and `arrived` are read from the client's clock, the other two moments are
/// those of the reply.
NtpSample SampleOf(NtpTime sent, const NtpPacket &reply, NtpTime arrived);

}  // namespace cvl::tools
