// IPv4 addresses as numbers and as text.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cvl {

/// An address in the order of its text: 127.0.0.1 is 0x7F000001.
using Ipv4Address = std::uint32_t;

struct Endpoint {
  Ipv4Address Address = 0;
  std::uint16_t Port = 0;

  friend bool operator==(const Endpoint &, const Endpoint &) = default;
};

/// The address of a peer, or nothing while there has been none.
using PeerAddress = std::optional<Ipv4Address>;

/// "127.0.0.1". At most 15 characters, so that the text never allocates.
std::string AddressText(Ipv4Address address);

/// The text of a peer's address; empty for none.
std::string AddressText(PeerAddress address);

/// Adds AddressText of ADDRESS to the end of TEXT.
void AppendAddress(std::string &text, PeerAddress address);

/// The address of a text of four decimal numbers from 0 to 255 with full stops between
/// them; nothing for any other text.
std::optional<Ipv4Address> ParseAddress(std::string_view text);

}  // namespace cvl
