#include "net/socket_layer.h"

#include <algorithm>
#include <random>

namespace cvl {

SocketLayer::SocketLayer(EventLoop &loop, Network &network, Resolver &resolver)
    : Loop(loop), System(network), Names(loop, resolver), Lingering(loop, network) {}

void SocketLayer::RequireOpen() const {
  if (Shut_) throw RuntimeError(error_number::NetworkDown);
}

std::int32_t SocketLayer::DrawPort() {
  // Drawn from the system's own randomness: the port is half of what keeps a stranger from
  // forging an answer to our request.
  std::random_device device;
  return std::uniform_int_distribution<std::int32_t>(1024, 32767)(device);
}

RequestId SocketLayer::AddRequest(SocketHandle socket, Endpoint peer) {
  LastRequest_ = LastRequest_ == INT32_MAX ? 1 : LastRequest_ + 1;
  Requests_.push_back({LastRequest_, socket, peer});
  return LastRequest_;
}

SocketLayer::Request SocketLayer::TakeRequest(RequestId id) {
  const auto found = std::find_if(Requests_.begin(), Requests_.end(),
                                  [id](const Request &each) { return each.Id == id; });
  if (found == Requests_.end()) throw RuntimeError(error_number::InvalidArgument);
  const Request request = *found;
  Requests_.erase(found);
  return request;
}

void SocketLayer::DropRequest(RequestId id) {
  const auto found = std::find_if(Requests_.begin(), Requests_.end(),
                                  [id](const Request &each) { return each.Id == id; });
  if (found == Requests_.end()) return;
  System.Close(found->Socket);
  Requests_.erase(found);
}

}  // namespace cvl
