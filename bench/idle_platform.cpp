#include "bench/idle_platform.h"

#include <algorithm>
#include <cstring>

namespace cvl::bench {

class IdleNetwork::Batch final : public DatagramBatch {
 public:
  explicit Batch(const IdleNetwork &network) : Network_(network) {}

  [[nodiscard]] int Receive(SocketHandle, std::span<const Datagram> &received) override {
    received = {&Network_.Arriving, 1};
    return 0;
  }

 private:
  const IdleNetwork &Network_;
};

int IdleNetwork::SendTo(SocketHandle, std::span<const std::uint8_t> bytes, Endpoint, Ipv4Address) {
  ++SentCount;
  std::memcpy(LastSent.data(), bytes.data(), std::min(bytes.size(), LastSent.size()));
  return 0;
}

std::size_t IdleNetwork::SendAll(SocketHandle, std::span<const Outgoing> datagrams) {
  SentCount += datagrams.size();
  const std::span<const std::uint8_t> bytes = datagrams.back().Bytes;
  if (bytes.size() == LastSent.size()) std::memcpy(LastSent.data(), bytes.data(), LastSent.size());
  return datagrams.size();
}

std::unique_ptr<DatagramBatch> IdleNetwork::MakeDatagramBatch() {
  return std::make_unique<Batch>(*this);
}

}  // namespace cvl::bench
