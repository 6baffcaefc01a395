#include "tools/system/endpoint.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <sys/socket.h>

#include <cerrno>
#include <memory>

#include "tools/system/descriptor.h"
#include "tools/system/socket_address.h"

namespace cvl::tools {

std::string AddressText(std::uint32_t address) {
  return std::to_string(address >> 24) + "." + std::to_string(address >> 16 & 0xFF) + "." +
         std::to_string(address >> 8 & 0xFF) + "." + std::to_string(address & 0xFF);
}

std::string EndpointText(const Endpoint &endpoint) {
  return AddressText(endpoint.Address) + ":" + std::to_string(endpoint.Port);
}

std::optional<std::uint32_t> ParseAddress(const std::string &text) {
  in_addr address{};
  if (inet_pton(AF_INET, text.c_str(), &address) != 1) {
    return std::nullopt;
  }
  return ntohl(address.s_addr);
}

std::optional<std::uint32_t> ResolveHost(const std::string &host) {
  addrinfo wanted{};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_DGRAM;
  addrinfo *found = nullptr;
  if (getaddrinfo(host.c_str(), nullptr, &wanted, &found) != 0) {
    return std::nullopt;
  }
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> owner{found, &freeaddrinfo};
  // The wanted family is the only one that comes back.
  return FromSocketAddress(*reinterpret_cast<const sockaddr_in *>(found->ai_addr)).Address;
}

bool IsLocalAddress(std::uint32_t address) {
  const Descriptor probe{socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
  const sockaddr_in wanted = ToSocketAddress({address, 0});
  return bind(probe.Number(), reinterpret_cast<const sockaddr *>(&wanted), sizeof wanted) == 0;
}

sockaddr_in ToSocketAddress(const Endpoint &endpoint) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(endpoint.Port);
  address.sin_addr.s_addr = htonl(endpoint.Address);
  return address;
}

Endpoint FromSocketAddress(const sockaddr_in &address) {
  return {ntohl(address.sin_addr.s_addr), ntohs(address.sin_port)};
}

Endpoint LocalEndOf(int socket_number) {
  sockaddr_in address{};
  socklen_t length = sizeof address;
  if (getsockname(socket_number, reinterpret_cast<sockaddr *>(&address), &length) != 0) {
    RaiseSystemError(errno, "cannot read the local address");
  }
  return FromSocketAddress(address);
}

}  // namespace cvl::tools
