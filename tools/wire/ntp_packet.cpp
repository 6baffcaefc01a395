#include "tools/wire/ntp_packet.h"

#include <algorithm>

namespace cvl::tools {

namespace {

constexpr std::size_t RootDelayOffset = 4;
constexpr std::size_t RootDispersionOffset = 8;
constexpr std::size_t ReferenceIdOffset = 12;
constexpr std::size_t ReferenceOffset = 16;
constexpr std::size_t ReceiveOffset = 32;

}  // namespace

std::array<std::uint8_t, NtpLength> EncodeNtpPacket(const NtpPacket &packet) {
  std::array<std::uint8_t, NtpLength> bytes{};
  bytes[0] = static_cast<std::uint8_t>((packet.Leap & 3) << 6 | (packet.Version & 7) << 3 |
                                       (packet.Mode & 7));
  bytes[1] = packet.Stratum;
  bytes[2] = static_cast<std::uint8_t>(packet.Poll);
  bytes[3] = static_cast<std::uint8_t>(packet.Precision);
  PutBig32(bytes, RootDelayOffset, packet.RootDelay);
  PutBig32(bytes, RootDispersionOffset, packet.RootDispersion);
  std::copy(packet.ReferenceId.begin(), packet.ReferenceId.end(),
            bytes.begin() + ReferenceIdOffset);
  WriteNtpTime(bytes, ReferenceOffset, packet.Reference);
  WriteNtpTime(bytes, NtpOriginateOffset, packet.Originate);
  WriteNtpTime(bytes, ReceiveOffset, packet.Receive);
  WriteNtpTime(bytes, NtpTransmitOffset, packet.Transmit);
  return bytes;
}

std::optional<NtpPacket> DecodeNtpPacket(ByteView bytes) {
  if (bytes.size() != NtpLength) {
    return std::nullopt;
  }
  NtpPacket packet;
  packet.Leap = static_cast<std::uint8_t>(bytes[0] >> 6);
  packet.Version = static_cast<std::uint8_t>(bytes[0] >> 3 & 7);
  packet.Mode = static_cast<std::uint8_t>(bytes[0] & 7);
  packet.Stratum = bytes[1];
  packet.Poll = static_cast<std::int8_t>(bytes[2]);
  packet.Precision = static_cast<std::int8_t>(bytes[3]);
  packet.RootDelay = Big32(bytes, RootDelayOffset);
  packet.RootDispersion = Big32(bytes, RootDispersionOffset);
  const ByteView id = bytes.subspan(ReferenceIdOffset, packet.ReferenceId.size());
  std::copy(id.begin(), id.end(), packet.ReferenceId.begin());
  packet.Reference = ReadNtpTime(bytes, ReferenceOffset);
  packet.Originate = ReadNtpTime(bytes, NtpOriginateOffset);
  packet.Receive = ReadNtpTime(bytes, ReceiveOffset);
  packet.Transmit = ReadNtpTime(bytes, NtpTransmitOffset);
  return packet;
}

NtpSample SampleOf(NtpTime sent, const NtpPacket &reply, NtpTime arrived) {
  const double there = SecondsBetween(sent, reply.Receive);
  const double back = SecondsBetween(reply.Transmit, arrived);
  return {(there - back) / 2, there + back};
}

}  // namespace cvl::tools
