// Datagrams of Linux, received in batches and answered from the address they came to.

#pragma once

#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <memory>

#include "platform/network.h"

namespace cvl {

sockaddr_in ToSystem(Endpoint endpoint);
Endpoint FromSystem(const sockaddr_in &address);

/// Sends one datagram, as Network::SendTo tells.
[[nodiscard]] int SendDatagram(int descriptor, std::span<const std::uint8_t> bytes, Endpoint to,
                               Ipv4Address from);

/// Sends several, as Network::SendAll tells.
std::size_t SendDatagrams(int descriptor, std::span<const Network::Outgoing> datagrams);

class LinuxDatagramBatch final : public DatagramBatch {
 public:
  LinuxDatagramBatch();
  [[nodiscard]] int Receive(SocketHandle socket, std::span<const Datagram> &received) override;

 private:
  // The largest datagram of IPv4 fits, so that none is ever cut. The odd 192 bytes keep
  // the buffers off each other's lines in the processor's cache.
  static constexpr std::size_t Stride = 65536 + 192;
  static constexpr std::size_t ControlSize = CMSG_SPACE(sizeof(in_pktinfo));

  // Never written before the kernel does, so memory that no datagram reached isn't used.
  std::unique_ptr<std::uint8_t[]> Bytes_;
  std::array<mmsghdr, Most> Headers_{};
  std::array<iovec, Most> Vectors_{};
  std::array<sockaddr_in, Most> Senders_{};
  struct alignas(cmsghdr) Control {
    std::array<std::uint8_t, ControlSize> Bytes;
  };
  std::array<Control, Most> Controls_{};
  std::array<Datagram, Most> Datagrams_{};
};

}  // namespace cvl
