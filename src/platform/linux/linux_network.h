// IPv4 sockets of Linux.

#pragma once

#include <cstdint>

#include "platform/network.h"

namespace cvl {

class LinuxNetwork final : public Network {
 public:
  /// Connections leave this many descriptors to the rest of the program: the log, name
  /// lookups, the settings and the exchange. Under a limit of less than twice as many they
  /// leave half of it.
  static constexpr int KeptBack = 32;

  LinuxNetwork();
  ~LinuxNetwork() override;
  LinuxNetwork(const LinuxNetwork &) = delete;
  LinuxNetwork &operator=(const LinuxNetwork &) = delete;

  Opened OpenDatagram(std::uint16_t port) override;
  Opened OpenStream(std::uint16_t port, Rebind rebind) override;
  [[nodiscard]] int Listen(SocketHandle socket) override;
  Accepted Accept(SocketHandle listener) override;
  Opened Connect(Endpoint peer) override;
  [[nodiscard]] int PendingError(SocketHandle socket) override;
  Transferred Send(SocketHandle socket, std::span<const std::uint8_t> bytes,
                   HoldBack hold_back) override;
  void Release(SocketHandle socket) override;
  Transferred Receive(SocketHandle socket, std::span<std::uint8_t> into) override;
  [[nodiscard]] int SendTo(SocketHandle socket, std::span<const std::uint8_t> bytes, Endpoint to,
                           Ipv4Address from) override;
  std::size_t SendAll(SocketHandle socket, std::span<const Outgoing> datagrams) override;
  void FinishSending(SocketHandle socket) override;
  void Close(SocketHandle socket) override;
  std::unique_ptr<DatagramBatch> MakeDatagramBatch() override;
  Ipv4Address LocalAddress() override;
  std::string HostName() override;

 private:
  void OpenSpare();
  void ReadDescriptorLimit();
  bool IsKeptBack(int descriptor);
  Accepted DropForLackOfDescriptors(int listener);

  // A descriptor held in reserve: given up for a moment, it lets a connection be taken
  // and dropped when there is no other, which would otherwise wake the loop for ever.
  int Spare_ = -1;

  // A connection's descriptor is below this number. The kernel gives the lowest free one, so
  // those from here on are left to others.
  int ConnectionsEnd_ = INT32_MAX;
};

/// Raises the limit of descriptors to what the system allows this process.
void RaiseDescriptorLimit();

}  // namespace cvl
