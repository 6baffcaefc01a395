#include "net/socket.h"

namespace cvl {

void Socket::SetLocalPort(std::int16_t port) {
  if (port < 0) throw RuntimeError(error_number::InvalidPropertyValue);
  LocalPort_ = port;
}

std::string Socket::RemoteHost() const {
  if (const Ipv4Address *number = RemoteNumber()) return AddressText(*number);
  return std::get<std::string>(RemoteHost_);
}

std::optional<Ipv4Address> Socket::RemoteAddress() const {
  if (const Ipv4Address *number = RemoteNumber()) return *number;
  return Layer_.Names.Find(std::get<std::string>(RemoteHost_));
}

}  // namespace cvl
