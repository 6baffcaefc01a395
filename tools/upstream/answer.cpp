#include "tools/upstream/answer.h"

#include <cassert>

#include "tools/wire/ntp_packet.h"

namespace cvl::tools {

namespace {

/// About a microsecond, which is what a read of the clock takes.
constexpr std::int8_t Precision = -20;

/// Half a millisecond, in units of 2^-16 s.
constexpr std::uint32_t RootDispersion = 33;

NtpTime TransmitStamp(const Behaviour &behaviour, NtpTime moment) {
  return {behaviour.Seconds.value_or(moment.Seconds), behaviour.Fraction.value_or(moment.Fraction)};
}

void SpoilEcho(std::span<std::uint8_t> packet, const Behaviour &behaviour) {
  for (std::size_t i = 0; i < behaviour.EchoBytes.size(); ++i) {
    if (!behaviour.EchoBytes[i]) {
      std::uint8_t &byte = packet[NtpOriginateOffset + i];
      byte = static_cast<std::uint8_t>(~byte);
    }
  }
}

}  // namespace

bool IsClientRequest(ByteView datagram) {
  const auto packet = DecodeNtpPacket(datagram);
  return packet && packet->Mode == NtpModeClient;
}

Bytes BuildAnswer(ByteView request, const Behaviour &behaviour, NtpTime received,
                  NtpTime transmitted) {
  const auto asked = DecodeNtpPacket(request);
  assert(asked);
  NtpPacket answer;
  answer.Version = asked->Version;
  answer.Mode = NtpModeServer;
  answer.Stratum = 1;
  answer.Poll = asked->Poll;
  answer.Precision = Precision;
  answer.RootDispersion = RootDispersion;
  answer.ReferenceId = {'L', 'O', 'C', 'L'};
  answer.Originate = asked->Transmit;
  answer.Receive = Shifted(received, behaviour.ShiftMs);
  answer.Transmit = TransmitStamp(behaviour, Shifted(transmitted, behaviour.ShiftMs));
  // A clock of stratum 1 was right at the beginning of this second, and so is ours.
  answer.Reference = {answer.Receive.Seconds, 0};

  const auto packet = EncodeNtpPacket(answer);
  Bytes bytes{packet.begin(), packet.end()};
  SpoilEcho(bytes, behaviour);
  bytes.resize(behaviour.Length.value_or(bytes.size()));
  return bytes;
}

}  // namespace cvl::tools
