#include "tests/support/net_peer.h"

#include <arpa/inet.h>
#include <fcntl.h>
// The kernel's own header: the library's lacks the counts of segments.
#include <linux/tcp.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace cvl {

namespace {

[[noreturn]] void Fail(const char *operation) {
  throw std::runtime_error(std::string(operation) + ": " + std::strerror(errno));
}

void Require(bool went_well, const char *operation) {
  if (!went_well) Fail(operation);
}

sockaddr_in AddressOf(Ipv4Address address, std::uint16_t port) {
  sockaddr_in system{};
  system.sin_family = AF_INET;
  system.sin_port = htons(port);
  system.sin_addr.s_addr = htonl(address);
  return system;
}

Endpoint LocalOf(int descriptor) {
  sockaddr_in address{};
  socklen_t length = sizeof address;
  Require(getsockname(descriptor, reinterpret_cast<sockaddr *>(&address), &length) == 0,
          "getsockname");
  return {ntohl(address.sin_addr.s_addr), ntohs(address.sin_port)};
}

bool Bind(int descriptor, Ipv4Address address, std::uint16_t port) {
  const sockaddr_in system = AddressOf(address, port);
  return bind(descriptor, reinterpret_cast<const sockaddr *>(&system), sizeof system) == 0;
}

OwnedDescriptor MakeSocket(int type) {
  return OwnedDescriptor(socket(AF_INET, type | SOCK_CLOEXEC, 0));
}

bool CanBind(int type, std::int32_t port) {
  const OwnedDescriptor socket = MakeSocket(type);
  return Bind(socket.Number(), INADDR_ANY, static_cast<std::uint16_t>(port));
}

}  // namespace

OwnedDescriptor::OwnedDescriptor(int number) : Number_(number) {
  Require(number >= 0, "socket");
}

OwnedDescriptor::OwnedDescriptor(OwnedDescriptor &&other) noexcept
    : Number_(std::exchange(other.Number_, -1)) {}

void OwnedDescriptor::Close() {
  if (Number_ >= 0) close(std::exchange(Number_, -1));
}

TcpPeer::TcpPeer() : Socket_(MakeSocket(SOCK_STREAM)) {}

TcpPeer::TcpPeer(std::int32_t port) : TcpPeer() {
  Connect(port);
}

void TcpPeer::Connect(std::int32_t port) {
  const sockaddr_in server = AddressOf(Loopback, static_cast<std::uint16_t>(port));
  Require(
      connect(Socket_.Number(), reinterpret_cast<const sockaddr *>(&server), sizeof server) == 0,
      "connect");
}

void TcpPeer::Send(std::string_view bytes) {
  const ssize_t sent =
      send(Socket_.Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  Require(sent == static_cast<ssize_t>(bytes.size()), "send");
}

void TcpPeer::End() {
  Require(shutdown(Socket_.Number(), SHUT_WR) == 0, "shutdown");
}

void TcpPeer::Reset() {
  const linger at_once{1, 0};
  Require(setsockopt(Socket_.Number(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once) == 0,
          "SO_LINGER");
  Socket_.Close();
}

TcpPeer::Stream TcpPeer::Read() {
  std::array<char, 4096> buffer;
  while (Stream_ == Stream::Open) {
    const ssize_t length = recv(Socket_.Number(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (length < 0 && errno == EAGAIN) break;
    if (length < 0) {
      Require(errno == ECONNRESET, "recv");
      Stream_ = Stream::Reset;
    } else if (length == 0) {
      Stream_ = Stream::Ended;
    } else {
      Received.append(buffer.data(), static_cast<std::size_t>(length));
    }
  }
  return Stream_;
}

std::uint32_t TcpPeer::DataSegmentsIn() const {
  tcp_info info{};
  socklen_t length = sizeof info;
  Require(getsockopt(Socket_.Number(), IPPROTO_TCP, TCP_INFO, &info, &length) == 0, "TCP_INFO");
  return info.tcpi_data_segs_in;
}

std::uint16_t TcpPeer::LocalPort() const {
  return LocalOf(Socket_.Number()).Port;
}

UdpPeer::UdpPeer(Ipv4Address address, std::uint16_t port) : Socket_(MakeSocket(SOCK_DGRAM)) {
  Require(Bind(Socket_.Number(), address, port), "bind");
}

void UdpPeer::Send(Endpoint to, std::string_view bytes) {
  const sockaddr_in address = AddressOf(to.Address, to.Port);
  const ssize_t sent = sendto(Socket_.Number(), bytes.data(), bytes.size(), 0,
                              reinterpret_cast<const sockaddr *>(&address), sizeof address);
  Require(sent == static_cast<ssize_t>(bytes.size()), "sendto");
}

std::optional<UdpPeer::Message> UdpPeer::Read() {
  std::array<char, 2048> buffer;
  sockaddr_in sender{};
  socklen_t sender_length = sizeof sender;
  const ssize_t length = recvfrom(Socket_.Number(), buffer.data(), buffer.size(), MSG_DONTWAIT,
                                  reinterpret_cast<sockaddr *>(&sender), &sender_length);
  if (length < 0) {
    Require(errno == EAGAIN, "recvfrom");
    return std::nullopt;
  }
  return Message{{ntohl(sender.sin_addr.s_addr), ntohs(sender.sin_port)},
                 std::string(buffer.data(), static_cast<std::size_t>(length))};
}

Endpoint UdpPeer::Local() const {
  return LocalOf(Socket_.Number());
}

bool CanBindDatagram(std::int32_t port) {
  return CanBind(SOCK_DGRAM, port);
}

bool CanBindStream(std::int32_t port) {
  return CanBind(SOCK_STREAM, port);
}

int OpenDescriptors() {
  const std::filesystem::directory_iterator open("/proc/self/fd");
  // The listing itself takes one.
  return static_cast<int>(std::distance(begin(open), end(open))) - 1;
}

NoMoreDescriptors::NoMoreDescriptors(int spare) {
  rlimit limit{};
  Require(getrlimit(RLIMIT_NOFILE, &limit) == 0, "getrlimit");
  Before_ = limit.rlim_cur;
  // The limit is one on numbers, and the kernel gives out the lowest free one.
  const int next = dup(STDERR_FILENO);
  Require(next >= 0, "dup");
  close(next);
  limit.rlim_cur = static_cast<rlim_t>(next + spare);
  Require(setrlimit(RLIMIT_NOFILE, &limit) == 0, "setrlimit");
}

NoMoreDescriptors::~NoMoreDescriptors() {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = Before_;
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace cvl
