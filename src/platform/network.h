// The operating system's IPv4 sockets, all non-blocking, as thin as they come. What a
// socket means to the system is made of them in src/net/.
//
// Every operation tells how it went by a number: 0, or one of Winsock's socket failures
// (10035 for "would block"), the same numbers on every platform.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "platform/address.h"
#include "platform/event_loop.h"

namespace cvl {

/// One received datagram.
struct Datagram {
  Endpoint Sender;
  Ipv4Address LocalAddress = 0;  ///< the address of this machine that it was sent to
  std::span<const std::uint8_t> Bytes;
};

/// The buffers into which one socket receives, several datagrams at a time. Make it once
/// for a socket: what Receive yields is good until the next Receive.
class DatagramBatch {
 public:
  virtual ~DatagramBatch() = default;

  /// Receives what waits, at most Most datagrams, and returns how it went.
  [[nodiscard]] virtual int Receive(SocketHandle socket, std::span<const Datagram> &received) = 0;

  /// At most this many, so that one busy port can't starve the timers and the others.
  static constexpr std::size_t Most = 32;
};

/// Whether a stream socket may take a port whose former connections are in TIME_WAIT.
enum class Rebind { No, Yes };

/// Whether bytes may wait for what follows them, to leave in one segment with it.
enum class HoldBack { No, Yes };

class Network {
 public:
  struct Opened {
    int Error = 0;
    SocketHandle Socket = SocketHandle::None;
  };
  struct Accepted {
    int Error = 0;
    SocketHandle Socket = SocketHandle::None;
    Endpoint Peer;
  };
  struct Transferred {
    int Error = 0;
    std::size_t Bytes = 0;
  };
  /// A datagram to be sent, in the words of SendTo.
  struct Outgoing {
    std::span<const std::uint8_t> Bytes;
    Endpoint To;
    Ipv4Address From = 0;
  };

  virtual ~Network() = default;

  /// A datagram socket bound to PORT on every address, not shared with anybody.
  virtual Opened OpenDatagram(std::uint16_t port) = 0;

  /// A stream socket bound to PORT on every address.
  virtual Opened OpenStream(std::uint16_t port, Rebind rebind) = 0;

  /// Makes a bound stream socket listen.
  [[nodiscard]] virtual int Listen(SocketHandle socket) = 0;

  /// The next waiting connection, 10035 when there is none. When the descriptors that
  /// connections may use have run out, the connection is dropped and 10024 returned; where
  /// not even that is possible it goes on waiting, and another number is returned.
  virtual Accepted Accept(SocketHandle listener) = 0;

  /// Begins to connect a new stream socket; it is writable or broken when it is decided.
  virtual Opened Connect(Endpoint peer) = 0;

  /// What has broken a connection, 0 while it stands.
  [[nodiscard]] virtual int PendingError(SocketHandle socket) = 0;

  /// Sends as many of BYTES on a connection as there is room for. Held back, they are taken
  /// and leave with what follows: more bytes, the end of the stream, Release or the closing.
  virtual Transferred Send(SocketHandle socket, std::span<const std::uint8_t> bytes,
                           HoldBack hold_back) = 0;

  /// Lets go what was held back.
  virtual void Release(SocketHandle socket) = 0;

  /// Reads what waits on a connection, 0 bytes without an error at the end of the stream.
  virtual Transferred Receive(SocketHandle socket, std::span<std::uint8_t> into) = 0;

  /// Sends one datagram; FROM is the address of this machine that it leaves from, 0 for
  /// the one that the routing table chooses.
  [[nodiscard]] virtual int SendTo(SocketHandle socket, std::span<const std::uint8_t> bytes,
                                   Endpoint to, Ipv4Address from) = 0;

  /// Sends several datagrams in their order. Those that fail are lost; returns how many
  /// left.
  virtual std::size_t SendAll(SocketHandle socket, std::span<const Outgoing> datagrams) {
    std::size_t left = 0;
    for (const Outgoing &each : datagrams) {
      if (SendTo(socket, each.Bytes, each.To, each.From) == 0) ++left;
    }
    return left;
  }

  /// Ends our own stream behind what was sent; the peer's may go on.
  virtual void FinishSending(SocketHandle socket) = 0;

  virtual void Close(SocketHandle socket) = 0;

  virtual std::unique_ptr<DatagramBatch> MakeDatagramBatch() = 0;

  /// The first address of an interface that is up and isn't loopback, else 127.0.0.1.
  virtual Ipv4Address LocalAddress() = 0;

  /// The name of this machine.
  virtual std::string HostName() = 0;
};

}  // namespace cvl
