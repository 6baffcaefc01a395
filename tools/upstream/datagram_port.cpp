#include "tools/upstream/datagram_port.h"

#include <sys/socket.h>

#include <cerrno>
#include <cstring>

#include "tools/system/socket_address.h"

namespace cvl::tools {

namespace {

constexpr std::size_t LargestDatagram = 65'536;

/// Room for the one control message that is used here, aligned as the system wants it.
union PacketInfoRoom {
  cmsghdr Header;
  char Room[CMSG_SPACE(sizeof(in_pktinfo))];
};

/// The local address of a received message, or 0 where the system didn't tell.
std::uint32_t LocalAddressOf(msghdr &message) {
  for (cmsghdr *part = CMSG_FIRSTHDR(&message); part != nullptr;
       part = CMSG_NXTHDR(&message, part)) {
    if (part->cmsg_level == IPPROTO_IP && part->cmsg_type == IP_PKTINFO) {
      in_pktinfo info{};
      std::memcpy(&info, CMSG_DATA(part), sizeof info);
      return ntohl(info.ipi_spec_dst.s_addr);
    }
  }
  return 0;
}

}  // namespace

DatagramPort::DatagramPort(const Endpoint &local)
    : Socket_{socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)},
      Buffer_(LargestDatagram) {
  if (!Socket_.IsOpen()) {
    RaiseSystemError(errno, "cannot make a socket");
  }
  const int yes = 1;
  if (setsockopt(Number(), IPPROTO_IP, IP_PKTINFO, &yes, sizeof yes) != 0) {
    RaiseSystemError(errno, "cannot ask for local addresses");
  }
  const sockaddr_in wanted = ToSocketAddress(local);
  if (bind(Number(), reinterpret_cast<const sockaddr *>(&wanted), sizeof wanted) != 0) {
    RaiseSystemError(errno, "cannot listen on " + EndpointText(local));
  }
  Local_ = LocalEndOf(Number());
}

std::optional<DatagramPort::Arrival> DatagramPort::Receive() {
  sockaddr_in sender{};
  PacketInfoRoom room{};
  iovec part{Buffer_.data(), Buffer_.size()};
  msghdr message{};
  message.msg_name = &sender;
  message.msg_namelen = sizeof sender;
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = &room;
  message.msg_controllen = sizeof room;
  const ssize_t count = recvmsg(Number(), &message, 0);
  if (count < 0) {
    return std::nullopt;
  }
  return Arrival{ByteView{Buffer_}.first(static_cast<std::size_t>(count)),
                 FromSocketAddress(sender), LocalAddressOf(message)};
}

std::string DatagramPort::Send(ByteView data, const Endpoint &to, std::uint32_t from) {
  sockaddr_in target = ToSocketAddress(to);
  PacketInfoRoom room{};
  // The system only reads what is sent, though its interface doesn't say so.
  iovec part{const_cast<std::uint8_t *>(data.data()), data.size()};
  msghdr message{};
  message.msg_name = &target;
  message.msg_namelen = sizeof target;
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = &room;
  message.msg_controllen = sizeof room;

  in_pktinfo info{};
  info.ipi_spec_dst.s_addr = htonl(from);
  cmsghdr *const header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = IPPROTO_IP;
  header->cmsg_type = IP_PKTINFO;
  header->cmsg_len = CMSG_LEN(sizeof info);
  std::memcpy(CMSG_DATA(header), &info, sizeof info);

  if (sendmsg(Number(), &message, MSG_NOSIGNAL) < 0) {
    return ErrorText(errno);
  }
  return "";
}

}  // namespace cvl::tools
