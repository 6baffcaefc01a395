// The 24 bytes of the client protocol, from the client's side.
//
// A reply looks alike over UDP and TCP, but two things differ: only TCP says "UTC" at
// offset 5, where UDP returns what the client sent, and TCP has the fraction of the
// stamp in reversed byte order. Nothing in the reply tells the two apart, so the
// reader must know how it asked.

#pragma once

#include <array>
#include <cstdint>
#include <variant>

#include "tools/wire/bytes.h"
#include "tools/wire/ntp_time.h"

namespace cvl::tools {

constexpr std::size_t ClientLength = 24;

/// Which of the two forms a reply has.
enum class ClientForm { Udp, Tcp };

/// What a good reply tells.
struct ClientReply {
  char Release = ' ';          ///< first digit of the server's version, made printable
  std::uint32_t Seconds = 0;   ///< since 1 January 2002, UTC
  std::uint32_t Fraction = 0;  ///< in units of 2^-32 s

  /// The server had no stamp to give: it is all zero.
  [[nodiscard]] bool HasStamp() const { return Seconds != 0 || Fraction != 0; }
};

/// A request with code "1" and the eight bytes of `mark` as the client's own data,
/// which the reply returns.
std::array<std::uint8_t, ClientLength> EncodeClientRequest(NtpTime mark);

/// Why a reply isn't one.
enum class ClientFault {
  Length,    ///< not 24 bytes
  Head,      ///< doesn't begin with "CVLS"
  Zone,      ///< TCP: not "UTC" at offset 5
  NotMyData  ///< doesn't return the client's bytes
};

/// Judges and reads a reply to `request`, which is one of EncodeClientRequest.
std::variant<ClientReply, ClientFault> DecodeClientReply(ByteView reply, ByteView request,
                                                         ClientForm form);

}  // namespace cvl::tools
