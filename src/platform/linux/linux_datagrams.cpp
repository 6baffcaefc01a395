#include "platform/linux/linux_datagrams.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/linux/error_table.h"

namespace cvl {

namespace {

/// The address of this machine that a message was sent to; 0 if the kernel didn't say.
Ipv4Address DestinationOf(const msghdr &message) {
  const cmsghdr *header = CMSG_FIRSTHDR(&message);
  if (header == nullptr || header->cmsg_level != IPPROTO_IP || header->cmsg_type != IP_PKTINFO ||
      header->cmsg_len < CMSG_LEN(sizeof(in_pktinfo))) {
    return 0;
  }
  in_pktinfo info{};
  std::memcpy(&info, CMSG_DATA(header), sizeof info);
  // For a broadcast or multicast this is the interface's own address, which can be
  // answered from; ipi_addr would be the group's.
  return ntohl(info.ipi_spec_dst.s_addr);
}

/// What the kernel wants to know of a datagram that leaves from an address of choice.
class Message {
 public:
  /// Describes DATAGRAM in HEADER, which points into this object and to the bytes.
  void Describe(const Network::Outgoing &datagram, msghdr &header) {
    Address_ = ToSystem(datagram.To);
    Vector_ = {const_cast<std::uint8_t *>(datagram.Bytes.data()), datagram.Bytes.size()};
    header = {};
    header.msg_name = &Address_;
    header.msg_namelen = sizeof Address_;
    header.msg_iov = &Vector_;
    header.msg_iovlen = 1;
    if (datagram.From == 0) return;
    Control_ = {};
    header.msg_control = Control_.data();
    header.msg_controllen = Control_.size();
    cmsghdr *control = CMSG_FIRSTHDR(&header);
    control->cmsg_level = IPPROTO_IP;
    control->cmsg_type = IP_PKTINFO;
    control->cmsg_len = CMSG_LEN(sizeof(in_pktinfo));
    in_pktinfo info{};
    info.ipi_spec_dst.s_addr = htonl(datagram.From);
    std::memcpy(CMSG_DATA(control), &info, sizeof info);
  }

 private:
  sockaddr_in Address_;
  iovec Vector_;
  alignas(cmsghdr) std::array<std::uint8_t, CMSG_SPACE(sizeof(in_pktinfo))> Control_;
};

int Result(ssize_t sent, const char *operation) {
  if (sent >= 0) return 0;
  const int error = errno;
  TraceFailure(operation, error);
  return SocketErrorOf(error);
}

}  // namespace

sockaddr_in ToSystem(Endpoint endpoint) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(endpoint.Port);
  address.sin_addr.s_addr = htonl(endpoint.Address);
  return address;
}

Endpoint FromSystem(const sockaddr_in &address) {
  return {ntohl(address.sin_addr.s_addr), ntohs(address.sin_port)};
}

int SendDatagram(int descriptor, std::span<const std::uint8_t> bytes, Endpoint to,
                 Ipv4Address from) {
  Message message;
  msghdr header;
  message.Describe({bytes, to, from}, header);
  return Result(sendmsg(descriptor, &header, 0), "sendmsg");
}

std::size_t SendDatagrams(int descriptor, std::span<const Network::Outgoing> datagrams) {
  std::size_t left = 0;
  constexpr std::size_t MostAtOnce = 16;
  while (!datagrams.empty()) {
    std::array<Message, MostAtOnce> messages;
    std::array<mmsghdr, MostAtOnce> headers;
    const std::size_t count = std::min(datagrams.size(), MostAtOnce);
    for (std::size_t at = 0; at < count; ++at) {
      messages[at].Describe(datagrams[at], headers[at].msg_hdr);
    }
    const int sent = sendmmsg(descriptor, headers.data(), static_cast<unsigned>(count), 0);
    // It stops at a failure and tells of it only when it is the first datagram's, which is
    // passed over.
    static_cast<void>(Result(sent, "sendmmsg"));
    if (sent > 0) left += static_cast<std::size_t>(sent);
    datagrams = datagrams.subspan(sent > 0 ? static_cast<std::size_t>(sent) : 1);
  }
  return left;
}

LinuxDatagramBatch::LinuxDatagramBatch() : Bytes_(new std::uint8_t[Most * Stride]) {
  for (std::size_t at = 0; at < Most; ++at) {
    Vectors_[at] = {Bytes_.get() + at * Stride, 65536};
    msghdr &message = Headers_[at].msg_hdr;
    message.msg_name = &Senders_[at];
    message.msg_iov = &Vectors_[at];
    message.msg_iovlen = 1;
    message.msg_control = Controls_[at].Bytes.data();
  }
}

int LinuxDatagramBatch::Receive(SocketHandle socket, std::span<const Datagram> &received) {
  for (mmsghdr &header : Headers_) {
    // The kernel shortens both to what it has written.
    header.msg_hdr.msg_namelen = sizeof(sockaddr_in);
    header.msg_hdr.msg_controllen = ControlSize;
  }
  const int count =
      recvmmsg(static_cast<int>(socket), Headers_.data(), Most, MSG_DONTWAIT, nullptr);
  if (count < 0) {
    received = {};
    return Result(count, "recvmmsg");
  }
  for (std::size_t at = 0; at < static_cast<std::size_t>(count); ++at) {
    Datagrams_[at] = {FromSystem(Senders_[at]),
                      DestinationOf(Headers_[at].msg_hdr),
                      {Bytes_.get() + at * Stride, Headers_[at].msg_len}};
  }
  received = {Datagrams_.data(), static_cast<std::size_t>(count)};
  return 0;
}

}  // namespace cvl
