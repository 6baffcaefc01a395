// The client protocol, port 3777: 24 bytes in, 24 bytes out, over TCP and UDP. The time in
// a reply is a stamp of TimeEngine::GrabCVLST, counted from 2002.
//
// A request begins with "CV" and has anything but "L" at offset 3; that is the whole test.
// The replies of the two transports differ, and both ways are meant: see the builders.

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "services/service_context.h"

namespace cvl {

/// Length of a request and of a reply.
inline constexpr std::size_t ClientMessageLength = 24;
using ClientMessage = std::array<std::uint8_t, ClientMessageLength>;

/// Whether REQUEST is one. Raises 9 when it is shorter than the offsets that are tested.
bool IsClientRequest(std::span<const std::uint8_t> request);

/// The reply over TCP: "CVLS", the major version's first digit, "UTC", bytes 8 to 15 of
/// REQUEST, the seconds of STAMP and its fraction, least significant byte first. What
/// REQUEST or STAMP doesn't have stays 0.
ClientMessage TcpClientReply(std::span<const std::uint8_t> request,
                             const std::optional<NtpTimestamp> &stamp);

/// Makes REQUEST the reply over UDP: "CVLS", the same digit, bytes 5 to 15 as they are, and
/// STAMP, most significant bytes first throughout. Without a stamp the client's own bytes
/// stay there.
void MakeUdpClientReply(ClientMessage &request, const std::optional<NtpTimestamp> &stamp);

class ClientProtocol {
 public:
  /// Connects the events of UDP3777 and TCP3777.
  explicit ClientProtocol(const ServiceContext &context);

  /// A reply as a client has it. Nothing in this program fills it.
  ClientMessage ServerMessage{};

  /// The stamp at OFFSET of ServerMessage, in seconds of local time since ClientEpoch.
  /// Raises 9 when it reaches beyond the message. No routine of this program calls it.
  double GetCVLSM(std::int16_t offset);

 private:
  void OnTcpRequest(RequestId request);
  void OnTcpArrival(std::int16_t index, std::int32_t bytes_total);
  void OnUdpArrival(std::int32_t bytes_total);
  void Log(std::string_view bytes_d, PeerAddress client, const Socket &local,
           std::string_view transport, std::int32_t bytes_total);

  ServiceContext Context_;
};

}  // namespace cvl
