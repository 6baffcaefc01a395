#include "platform/linux/linux_network.h"

#include <fcntl.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include "base/runtime_error.h"
#include "platform/linux/error_table.h"
#include "platform/linux/linux_datagrams.h"

namespace cvl {

namespace {

// Behind a bind that fails for want of room, how many may wait to be accepted.
constexpr int Backlog = 4096;

int Descriptor(SocketHandle socket) {
  return static_cast<int>(socket);
}

int Failed(const char *operation) {
  const int error = errno;
  TraceFailure(operation, error);
  return SocketErrorOf(error);
}

// How much of the datagrams that wait on a socket the kernel is asked to keep.
constexpr int ReceiveBuffer = 1024 * 1024;

void Set(int descriptor, int level, int option, int value, const char *name) {
  if (setsockopt(descriptor, level, option, &value, sizeof value) != 0) TraceFailure(name, errno);
}

void Enable(int descriptor, int level, int option, const char *name) {
  Set(descriptor, level, option, 1, name);
}

/// The size that a socket's receive buffer was set to; 0 when the system doesn't say.
int ReceiveBufferOf(int descriptor) {
  int size = 0;
  socklen_t length = sizeof size;
  if (getsockopt(descriptor, SOL_SOCKET, SO_RCVBUF, &size, &length) != 0) {
    TraceFailure("SO_RCVBUF", errno);
    return 0;
  }
  return size / 2;  // the kernel doubles what it is asked for
}

/// A new socket bound to PORT of every address. PREPARE sets options before the bind.
template <class Prepare>
Network::Opened OpenBound(int type, std::uint16_t port, Prepare &&prepare) {
  const int descriptor = socket(AF_INET, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (descriptor < 0) return {Failed("socket"), SocketHandle::None};
  prepare(descriptor);
  const sockaddr_in address = ToSystem({INADDR_ANY, port});
  if (bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
    const int error = Failed("bind");
    close(descriptor);
    return {error, SocketHandle::None};
  }
  return {0, SocketHandle{descriptor}};
}

}  // namespace

void RaiseDescriptorLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  if (setrlimit(RLIMIT_NOFILE, &limit) != 0) TraceFailure("setrlimit", errno);
}

LinuxNetwork::LinuxNetwork() {
  OpenSpare();
  ReadDescriptorLimit();
}

LinuxNetwork::~LinuxNetwork() {
  if (Spare_ >= 0) close(Spare_);
}

void LinuxNetwork::OpenSpare() {
  if (Spare_ < 0) Spare_ = open("/dev/null", O_RDONLY | O_CLOEXEC);
}

void LinuxNetwork::ReadDescriptorLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  const int end = static_cast<int>(std::min<rlim_t>(limit.rlim_cur, INT_MAX));
  ConnectionsEnd_ = std::max(end - KeptBack, end / 2);
}

bool LinuxNetwork::IsKeptBack(int descriptor) {
  if (descriptor < ConnectionsEnd_) return false;
  // The limit may have been raised meanwhile.
  ReadDescriptorLimit();
  return descriptor >= ConnectionsEnd_;
}

Network::Opened LinuxNetwork::OpenDatagram(std::uint16_t port) {
  return OpenBound(SOCK_DGRAM, port, [](int descriptor) {
    Enable(descriptor, IPPROTO_IP, IP_PKTINFO, "IP_PKTINFO");
    // A reply must find room after a flood of empty datagrams, each of which takes some 800
    // bytes of it. The system gives less where its own limit is lower.
    if (ReceiveBufferOf(descriptor) < ReceiveBuffer) {
      Set(descriptor, SOL_SOCKET, SO_RCVBUF, ReceiveBuffer, "SO_RCVBUF");
    }
  });
}

Network::Opened LinuxNetwork::OpenStream(std::uint16_t port, Rebind rebind) {
  return OpenBound(SOCK_STREAM, port, [rebind](int descriptor) {
    if (rebind == Rebind::Yes) Enable(descriptor, SOL_SOCKET, SO_REUSEADDR, "SO_REUSEADDR");
    // Accepted connections inherit both: a peer that vanished without a word gives its
    // descriptor back some day, and an answer never waits for an acknowledgement.
    Enable(descriptor, SOL_SOCKET, SO_KEEPALIVE, "SO_KEEPALIVE");
    Enable(descriptor, IPPROTO_TCP, TCP_NODELAY, "TCP_NODELAY");
  });
}

int LinuxNetwork::Listen(SocketHandle socket) {
  return listen(Descriptor(socket), Backlog) == 0 ? 0 : Failed("listen");
}

Network::Accepted LinuxNetwork::Accept(SocketHandle listener) {
  sockaddr_in peer{};
  socklen_t length = sizeof peer;
  const int descriptor = accept4(Descriptor(listener), reinterpret_cast<sockaddr *>(&peer), &length,
                                 SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (descriptor >= 0 && IsKeptBack(descriptor)) {
    TraceFailure("accept", EMFILE);
    close(descriptor);
    return {error_number::TooManyDescriptors, SocketHandle::None, {}};
  }
  if (descriptor >= 0) return {0, SocketHandle{descriptor}, FromSystem(peer)};
  if (errno == EMFILE || errno == ENFILE) return DropForLackOfDescriptors(Descriptor(listener));
  return {Failed("accept"), SocketHandle::None, {}};
}

Network::Accepted LinuxNetwork::DropForLackOfDescriptors(int listener) {
  TraceFailure("accept", EMFILE);
  ReadDescriptorLimit();  // it may have been lowered meanwhile
  if (Spare_ >= 0) close(std::exchange(Spare_, -1));
  const int dropped = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
  const int error = errno;
  if (dropped >= 0) close(dropped);
  OpenSpare();
  if (dropped >= 0) return {error_number::TooManyDescriptors, SocketHandle::None, {}};
  // There was no reserve, and the connection waits still: no room at all for the moment.
  if (error == EMFILE || error == ENFILE) return {error_number::NoBuffers, SocketHandle::None, {}};
  // The connection had gone meanwhile, or something else is wrong with it.
  return {SocketErrorOf(error), SocketHandle::None, {}};
}

Network::Opened LinuxNetwork::Connect(Endpoint peer) {
  const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (descriptor < 0) return {Failed("socket"), SocketHandle::None};
  const sockaddr_in address = ToSystem(peer);
  if (connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 &&
      errno != EINPROGRESS) {
    const int error = Failed("connect");
    close(descriptor);
    return {error, SocketHandle::None};
  }
  return {0, SocketHandle{descriptor}};
}

int LinuxNetwork::PendingError(SocketHandle socket) {
  int error = 0;
  socklen_t length = sizeof error;
  if (getsockopt(Descriptor(socket), SOL_SOCKET, SO_ERROR, &error, &length) != 0) {
    return Failed("SO_ERROR");
  }
  if (error != 0) TraceFailure("connection", error);
  return SocketErrorOf(error);
}

Network::Transferred LinuxNetwork::Send(SocketHandle socket, std::span<const std::uint8_t> bytes,
                                        HoldBack hold_back) {
  const int flags = MSG_NOSIGNAL | (hold_back == HoldBack::Yes ? MSG_MORE : 0);
  const ssize_t sent = send(Descriptor(socket), bytes.data(), bytes.size(), flags);
  if (sent < 0) return {Failed("send"), 0};
  return {0, static_cast<std::size_t>(sent)};
}

Network::Transferred LinuxNetwork::Receive(SocketHandle socket, std::span<std::uint8_t> into) {
  const ssize_t received = recv(Descriptor(socket), into.data(), into.size(), 0);
  if (received < 0) return {Failed("recv"), 0};
  return {0, static_cast<std::size_t>(received)};
}

void LinuxNetwork::Release(SocketHandle socket) {
  // Setting it sends what waits, also where it is set already.
  Enable(Descriptor(socket), IPPROTO_TCP, TCP_NODELAY, "TCP_NODELAY");
}

int LinuxNetwork::SendTo(SocketHandle socket, std::span<const std::uint8_t> bytes, Endpoint to,
                         Ipv4Address from) {
  return SendDatagram(Descriptor(socket), bytes, to, from);
}

std::size_t LinuxNetwork::SendAll(SocketHandle socket, std::span<const Outgoing> datagrams) {
  return SendDatagrams(Descriptor(socket), datagrams);
}

void LinuxNetwork::FinishSending(SocketHandle socket) {
  if (shutdown(Descriptor(socket), SHUT_WR) != 0) TraceFailure("shutdown", errno);
}

void LinuxNetwork::Close(SocketHandle socket) {
  if (close(Descriptor(socket)) != 0) TraceFailure("close", errno);
  // Another thread may have taken the reserve while it was given up.
  OpenSpare();
}

std::unique_ptr<DatagramBatch> LinuxNetwork::MakeDatagramBatch() {
  return std::make_unique<LinuxDatagramBatch>();
}

Ipv4Address LinuxNetwork::LocalAddress() {
  Ipv4Address found = INADDR_LOOPBACK;
  ifaddrs *interfaces = nullptr;
  if (getifaddrs(&interfaces) != 0) {
    TraceFailure("getifaddrs", errno);
    return found;
  }
  for (const ifaddrs *each = interfaces; each != nullptr; each = each->ifa_next) {
    if (each->ifa_addr == nullptr || each->ifa_addr->sa_family != AF_INET) continue;
    if ((each->ifa_flags & IFF_UP) == 0 || (each->ifa_flags & IFF_LOOPBACK) != 0) continue;
    sockaddr_in address{};
    std::memcpy(&address, each->ifa_addr, sizeof address);
    found = FromSystem(address).Address;
    break;
  }
  freeifaddrs(interfaces);
  return found;
}

std::string LinuxNetwork::HostName() {
  char name[256] = {};
  if (gethostname(name, sizeof name - 1) != 0) TraceFailure("gethostname", errno);
  return name;
}

}  // namespace cvl
