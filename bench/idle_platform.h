// A loop and a network behind which there is no kernel: what is measured on them is the
// program alone.

#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "platform/network.h"

namespace cvl::bench {

/// Never waits and hands nothing out by itself; the benchmark calls the handlers.
class IdleLoop final : public EventLoop {
 public:
  /// Who watches SOCKET; it must be watched.
  ReadyHandler &HandlerOf(SocketHandle socket) { return *Watched_.at(socket); }

  void Watch(SocketHandle socket, Readiness, ReadyHandler &handler) override {
    Watched_[socket] = &handler;
  }
  void Unwatch(SocketHandle socket) override { Watched_.erase(socket); }
  SocketHandle Descriptor() const override { return SocketHandle::None; }
  std::int64_t MonotonicMs() override { return 0; }

 protected:
  void HandOut(Waiting) override {}
  void ArmTimer(std::int64_t) override {}
  void Kick() override {}

 private:
  std::map<SocketHandle, ReadyHandler *> Watched_;
};

/// Every operation succeeds and does nothing. A datagram socket has the number of its port
/// as its handle; each receipt yields the one datagram Arriving.
class IdleNetwork final : public Network {
 public:
  static SocketHandle DatagramHandle(std::uint16_t port) { return SocketHandle{port}; }

  /// What every datagram socket receives, always.
  Datagram Arriving;

  /// How many datagrams were sent, and the last one's first bytes.
  std::uint64_t SentCount = 0;
  std::array<std::uint8_t, 48> LastSent{};

  Opened OpenDatagram(std::uint16_t port) override { return {0, DatagramHandle(port)}; }
  Opened OpenStream(std::uint16_t port, Rebind) override {
    return {0, SocketHandle{FirstStream + port}};
  }
  [[nodiscard]] int Listen(SocketHandle) override { return 0; }
  Accepted Accept(SocketHandle) override { return {error_number::WouldBlock, {}, {}}; }
  Opened Connect(Endpoint peer) override { return {0, SocketHandle{FirstStream + peer.Port}}; }
  [[nodiscard]] int PendingError(SocketHandle) override { return 0; }
  Transferred Send(SocketHandle, std::span<const std::uint8_t> bytes, HoldBack) override {
    return {0, bytes.size()};
  }
  Transferred Receive(SocketHandle, std::span<std::uint8_t>) override {
    return {error_number::WouldBlock, 0};
  }
  [[nodiscard]] int SendTo(SocketHandle socket, std::span<const std::uint8_t> bytes, Endpoint to,
                           Ipv4Address from) override;
  std::size_t SendAll(SocketHandle socket, std::span<const Outgoing> datagrams) override;
  void Release(SocketHandle) override {}
  void FinishSending(SocketHandle) override {}
  void Close(SocketHandle) override {}
  std::unique_ptr<DatagramBatch> MakeDatagramBatch() override;
  Ipv4Address LocalAddress() override { return 0x7F000001; }
  std::string HostName() override { return "bench"; }

 private:
  class Batch;

  static constexpr std::intptr_t FirstStream = 0x10000;
};

}  // namespace cvl::bench
