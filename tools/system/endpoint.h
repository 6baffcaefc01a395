// An IPv4 address with a port.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace cvl::tools {

struct Endpoint {
  std::uint32_t Address = 0;  ///< most significant byte first: 127.0.0.1 is 0x7F000001
  std::uint16_t Port = 0;

  bool operator==(const Endpoint &) const = default;
};

constexpr std::uint32_t LoopbackAddress = 0x7F00'0001;

/// "127.0.0.1".
std::string AddressText(std::uint32_t address);

/// "127.0.0.1:123".
std::string EndpointText(const Endpoint &endpoint);

/// The address of four decimal numbers with full stops between them, or nothing.
std::optional<std::uint32_t> ParseAddress(const std::string &text);

/// The first IPv4 address of a host given by name or by address, or nothing when the
/// name isn't known. May take as long as the system's name service does.
std::optional<std::uint32_t> ResolveHost(const std::string &host);

/// Whether a socket of this machine may send from that address.
bool IsLocalAddress(std::uint32_t address);

}  // namespace cvl::tools
