#include "net/socket.h"

namespace cvl {

void Socket::SetLocalPort(std::int16_t port) {
  if (port < 0) throw RuntimeError(error_number::InvalidPropertyValue);
  LocalPort_ = port;
}

const std::string &Socket::RemoteHostIP() const {
  if (RemoteHostIPStale_) {
    RemoteHostIP_ = AddressText(Remote_.Address);
    RemoteHostIPStale_ = false;
  }
  return RemoteHostIP_;
}

void Socket::SetPeer(Endpoint peer) {
  if (peer.Address != Remote_.Address || RemoteHostIP_.empty()) RemoteHostIPStale_ = true;
  Remote_ = peer;
}

}  // namespace cvl
