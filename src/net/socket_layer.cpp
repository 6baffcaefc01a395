#include "net/socket_layer.h"

#include <algorithm>
#include <new>
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

bool SocketLayer::HasMemoryForConnections() {
  void *memory = ::operator new(MemoryKeptBack, std::nothrow);
  ::operator delete(memory);
  return memory != nullptr;
}

RequestId SocketLayer::AddRequest(SocketHandle socket, Endpoint peer) {
  LastRequest_ = LastRequest_ == INT32_MAX ? 1 : LastRequest_ + 1;
  Requests_.push_back({LastRequest_, socket, peer});
  return LastRequest_;
}

SocketLayer::Request SocketLayer::TakeRequest(RequestId id, TcpSocket &taker) {
  const auto found = FindRequest(id);
  if (found == Requests_.end() || found->Taker != nullptr) {
    throw RuntimeError(error_number::InvalidArgument);
  }
  const Request request = *found;
  found->Socket = SocketHandle::None;
  found->Taker = &taker;
  return request;
}

TcpSocket *SocketLayer::TakerOf(RequestId id) {
  const auto found = FindRequest(id);
  return found == Requests_.end() ? nullptr : found->Taker;
}

void SocketLayer::DropRequest(RequestId id) {
  const auto found = FindRequest(id);
  if (found == Requests_.end()) return;
  if (found->Socket != SocketHandle::None) System.Close(found->Socket);
  Requests_.erase(found);
}

std::vector<SocketLayer::Request>::iterator SocketLayer::FindRequest(RequestId id) {
  return std::find_if(Requests_.begin(), Requests_.end(),
                      [id](const Request &each) { return each.Id == id; });
}

}  // namespace cvl
