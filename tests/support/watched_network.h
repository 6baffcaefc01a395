// A network whose openings and closings are written down, by port.

#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/network.h"
#include "tests/support/call_journal.h"

namespace cvl {

class WatchedNetwork final : public Network {
 public:
  /// Passes everything on to NETWORK.
  WatchedNetwork(Network &network, CallJournal &journal) : Network_(network), Journal_(journal) {}

  Opened OpenDatagram(std::uint16_t port) override {
    return Named("udp " + std::to_string(port), [&] { return Network_.OpenDatagram(port); });
  }
  Opened OpenStream(std::uint16_t port, Rebind rebind) override {
    return Named("tcp " + std::to_string(port), [&] { return Network_.OpenStream(port, rebind); });
  }
  [[nodiscard]] int Listen(SocketHandle socket) override { return Network_.Listen(socket); }
  Accepted Accept(SocketHandle listener) override { return Network_.Accept(listener); }
  Opened Connect(Endpoint peer) override {
    return Named("connection to " + AddressText(peer.Address),
                 [&] { return Network_.Connect(peer); });
  }
  [[nodiscard]] int PendingError(SocketHandle socket) override {
    return Network_.PendingError(socket);
  }
  Transferred Send(SocketHandle socket, std::span<const std::uint8_t> bytes,
                   HoldBack hold_back) override {
    return Network_.Send(socket, bytes, hold_back);
  }
  void Release(SocketHandle socket) override { Network_.Release(socket); }
  Transferred Receive(SocketHandle socket, std::span<std::uint8_t> into) override {
    return Network_.Receive(socket, into);
  }
  [[nodiscard]] int SendTo(SocketHandle socket, std::span<const std::uint8_t> bytes, Endpoint to,
                           Ipv4Address from) override {
    Journal_.Add("send to " + AddressText(to.Address) + ":" + std::to_string(to.Port));
    return Network_.SendTo(socket, bytes, to, from);
  }
  void FinishSending(SocketHandle socket) override { Network_.FinishSending(socket); }
  void Close(SocketHandle socket) override {
    const auto name = Names_.find(socket);
    if (name != Names_.end()) Journal_.Add("close " + name->second);
    Network_.Close(socket);
  }
  std::unique_ptr<DatagramBatch> MakeDatagramBatch() override {
    return Network_.MakeDatagramBatch();
  }
  Ipv4Address LocalAddress() override {
    Journal_.Add("local address");
    return Network_.LocalAddress();
  }
  std::string HostName() override {
    Journal_.Add("host name");
    return Network_.HostName();
  }

 private:
  template <class Open>
  Opened Named(const std::string &name, Open &&open) {
    Journal_.Add("open " + name);
    const Opened opened = open();
    if (opened.Error == 0) Names_[opened.Socket] = name;
    return opened;
  }

  Network &Network_;
  CallJournal &Journal_;
  std::map<SocketHandle, std::string> Names_;
};

}  // namespace cvl
