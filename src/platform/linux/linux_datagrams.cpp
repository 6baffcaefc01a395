#include "platform/linux/linux_datagrams.h"

#include <arpa/inet.h>

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
  sockaddr_in address = ToSystem(to);
  if (from == 0) {
    return Result(sendto(descriptor, bytes.data(), bytes.size(), 0,
                         reinterpret_cast<const sockaddr *>(&address), sizeof address),
                  "sendto");
  }
  struct alignas(cmsghdr) {
    std::array<std::uint8_t, CMSG_SPACE(sizeof(in_pktinfo))> Bytes;
  } control{};
  iovec vector{const_cast<std::uint8_t *>(bytes.data()), bytes.size()};
  msghdr message{};
  message.msg_name = &address;
  message.msg_namelen = sizeof address;
  message.msg_iov = &vector;
  message.msg_iovlen = 1;
  message.msg_control = control.Bytes.data();
  message.msg_controllen = control.Bytes.size();
  cmsghdr *header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = IPPROTO_IP;
  header->cmsg_type = IP_PKTINFO;
  header->cmsg_len = CMSG_LEN(sizeof(in_pktinfo));
  in_pktinfo info{};
  info.ipi_spec_dst.s_addr = htonl(from);
  std::memcpy(CMSG_DATA(header), &info, sizeof info);
  return Result(sendmsg(descriptor, &message, 0), "sendmsg");
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
