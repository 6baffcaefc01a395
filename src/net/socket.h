// The socket control: one socket with its states, properties and events. TcpSocket and
// UdpSocket are its two kinds; this is what both have.
//
// Sockets never block. All events come on the loop's thread.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

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
  std::string RemoteHost() const;
  void SetRemoteHost(std::string_view host) { RemoteHost_ = std::string(host); }
  void SetRemoteHost(PeerAddress host) {
    if (host) {
      RemoteHost_ = *host;
    } else {
      RemoteHost_ = std::string();
    }
  }
  std::int32_t RemotePort() const { return RemotePort_; }
  void SetRemotePort(std::uint16_t port) { RemotePort_ = port; }

  /// The dotted address of the peer: of a datagram socket the sender of the last datagram,
  /// of a listener the last that asked for a connection. Empty before the first.
  std::string RemoteHostIP() const { return AddressText(Peer()); }

  /// The same as a number; nothing before the first.
  PeerAddress Peer() const { return Peer_; }

  /// This machine's own address, and its name.
  std::string LocalIP() const { return AddressText(Layer_.System.LocalAddress()); }
  std::string LocalHostName() const { return Layer_.System.HostName(); }

  /// Takes the local port. Raises the socket failure: 10048 when it is taken.
  virtual void Bind() = 0;

  /// Closes at once for us; a connection's unsent answer still goes out.
  virtual void Close() = 0;

 protected:
  void SetPeer(Endpoint peer) {
    Peer_ = peer.Address;
    RemotePort_ = peer.Port;
  }

  /// The remote host where it was set as a number, else null.
  const Ipv4Address *RemoteNumber() const { return std::get_if<Ipv4Address>(&RemoteHost_); }

  /// The address of the remote host; nothing for a name without a fresh answer.
  std::optional<Ipv4Address> RemoteAddress() const;

  SocketLayer &Layer_;
  SocketState State_ = SocketState::Closed;
  SocketHandle Handle_ = SocketHandle::None;
  std::int32_t LocalPort_ = 0;
  std::uint16_t RemotePort_ = 0;  ///< the last peer's, until another is set

 private:
  // An answer goes to an address that is at hand as a number and needs no text.
  std::variant<std::string, Ipv4Address> RemoteHost_;
  PeerAddress Peer_;
};

}  // namespace cvl
