// The socket control: one socket with its states, properties and events. TcpSocket and
// UdpSocket are its two kinds; this is what both have.
//
// Sockets never block. All events come on the loop's thread.

#pragma once

#include <cstdint>
#include <string>

#include "net/socket_layer.h"

namespace cvl {

/// The numbers are Winsock's.
enum class SocketState : std::int16_t {
  Closed = 0,
  Open = 1,  ///< bound
  Listening = 2,
  ResolvingHost = 4,
  Connecting = 6,
  Connected = 7,
  Closing = 8,  ///< the peer has ended the connection
  Error = 9,
};

class Socket {
 public:
  explicit Socket(SocketLayer &layer) : Layer_(layer) {}
  virtual ~Socket() = default;
  Socket(const Socket &) = delete;
  Socket &operator=(const Socket &) = delete;

  SocketState State() const { return State_; }

  /// The local port: what was set, and once the socket is open the one it has. 0 takes any
  /// free one of at most 32767. Setting a negative one raises 380.
  std::int32_t LocalPort() const { return LocalPort_; }
  void SetLocalPort(std::int16_t port);

  /// Where SendData and Connect go: a dotted address or a name.
  const std::string &RemoteHost() const { return RemoteHost_; }
  void SetRemoteHost(std::string_view host) { RemoteHost_ = host; }
  std::int32_t RemotePort() const { return Remote_.Port; }
  void SetRemotePort(std::uint16_t port) { Remote_.Port = port; }

  /// The dotted address of the peer: of a datagram socket the sender of the last datagram,
  /// of a listener the last that asked for a connection. Empty before the first.
  const std::string &RemoteHostIP() const;

  /// This machine's own address, and its name.
  std::string LocalIP() const { return AddressText(Layer_.System.LocalAddress()); }
  std::string LocalHostName() const { return Layer_.System.HostName(); }

  /// Takes the local port. Raises the socket failure: 10048 when it is taken.
  virtual void Bind() = 0;

  /// Closes at once for us; a connection's unsent answer still goes out.
  virtual void Close() = 0;

 protected:
  void SetPeer(Endpoint peer);

  SocketLayer &Layer_;
  SocketState State_ = SocketState::Closed;
  SocketHandle Handle_ = SocketHandle::None;
  std::int32_t LocalPort_ = 0;
  std::string RemoteHost_;
  Endpoint Remote_;  ///< the last peer's address, and the port that the next send goes to

 private:
  // Made when asked for: most peers' addresses are never read as text.
  mutable std::string RemoteHostIP_;
  mutable bool RemoteHostIPStale_ = false;
};

}  // namespace cvl
