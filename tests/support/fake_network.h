// A network without a kernel. A test says what arrives, from whom and what fails, and sees
// what the program sent, where to and from which address.
//
//   TestLoop loop;
//   FakeNetwork network(loop);
//   FakeResolver resolver(loop);
//   SocketLayer layer(loop, network, resolver);
//   ...                                                    // the program opens its sockets
//
//   network.Arrive(123, At("10.0.0.7", 4000), request);    // a datagram
//   loop.Drain();
//   network.Sent.at(0).Data                                // the answer
//
//   FakeConnection &client = network.Dial(13, At("10.0.0.7", 4000));
//   loop.Drain();
//   TextOf(client.Received)                                // what the service sent
//
// It keeps to what the real one promises in platform/network.h, and to the oddities of
// Linux that matter to a caller: a broken connection tells its failure once, to the first
// that asks, and reads as ended from then on; a connection closed over unread input is
// reset.

#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/network.h"
#include "tests/support/test_loop.h"

namespace cvl {

using Bytes = std::vector<std::uint8_t>;

Bytes BytesOf(std::string_view text);
std::string TextOf(std::span<const std::uint8_t> bytes);

/// An endpoint by its text, At("10.0.0.7", 4000).
Endpoint At(std::string_view address, std::uint16_t port);

class FakeNetwork;

/// A connection as its peer sees it. It lives as long as the network.
class FakeConnection {
 public:
  FakeConnection(FakeNetwork &network, SocketHandle socket, Endpoint peer)
      : Peer(peer), Network_(network), Socket_(socket) {}
  FakeConnection(const FakeConnection &) = delete;
  FakeConnection &operator=(const FakeConnection &) = delete;

  // What the peer does.

  void Send(std::span<const std::uint8_t> bytes);
  void Send(std::string_view text);
  /// Ends the peer's stream; ours may go on.
  void End();
  /// Breaks the connection; what the peer sent before can still be read.
  void Break(int error = error_number::ConnectionReset);
  /// Takes in this many bytes more and then no others. At first there is no end to it.
  void LeaveRoom(std::size_t bytes);

  // How a connection that the program began goes on.

  void Establish();
  void Refuse(int error = error_number::ConnectionRefused);

  // What the peer sees.

  const Endpoint Peer;
  /// All that the program has sent, and each piece that it handed to the system by itself.
  Bytes Received;
  std::vector<Bytes> Pieces;
  /// Nobody listened.
  bool IsRefused = false;
  /// Taken from the listener's queue.
  bool IsAccepted = false;
  /// The program's stream has ended in good order.
  bool HasEnded = false;
  /// What the program sent last still waits for what follows it.
  bool IsHeldBack = false;
  /// The program closed over input that it hadn't read.
  bool WasReset = false;
  /// The program has given its descriptor back.
  bool IsClosed = false;

  /// The program's handle of it.
  SocketHandle Handle() const { return Socket_; }

 private:
  friend class FakeNetwork;

  Readiness Ready() const;
  void Changed();
  int TakeError();

  FakeNetwork &Network_;
  SocketHandle Socket_;
  std::deque<std::uint8_t> Unread_;
  std::size_t Room_ = std::numeric_limits<std::size_t>::max();
  bool IsConnecting_ = false;
  bool PeerEnded_ = false;
  bool IsBroken_ = false;
  int Error_ = 0;  // not yet told
};

class FakeNetwork final : public Network {
 public:
  explicit FakeNetwork(TestLoop &loop) : Loop_(loop) {}
  FakeNetwork(const FakeNetwork &) = delete;
  FakeNetwork &operator=(const FakeNetwork &) = delete;

  // What the test makes happen.

  /// A datagram for our PORT. False when no socket is bound to it: the datagram is lost.
  bool Arrive(std::uint16_t port, Endpoint sender, std::span<const std::uint8_t> bytes,
              Ipv4Address local_address = 0x7F000001);
  bool Arrive(std::uint16_t port, Endpoint sender, std::string_view text,
              Ipv4Address local_address = 0x7F000001);

  /// A client asks for a connection to our PORT.
  FakeConnection &Dial(std::uint16_t port, Endpoint client);

  enum class Operation {
    OpenDatagram,
    OpenStream,
    Listen,
    Accept,  ///< 10024 drops the connection, any other failure leaves it waiting
    Connect,
    Send,
    Receive,
    SendTo,
    ReceiveDatagrams,
  };

  static constexpr int Always = std::numeric_limits<int>::max();

  /// Makes TIMES calls of an operation fail, doing nothing, behind AFTER more that succeed.
  void Fail(Operation operation, int error, int times = 1, int after = 0);
  /// Lets it succeed again.
  void Mend(Operation operation) { Failing_.erase(operation); }

  /// Ports that another program holds: opening one fails with 10048.
  std::set<std::uint16_t> TakenPorts;

  /// At most this many datagrams come in one batch.
  std::size_t MostPerBatch = DatagramBatch::Most;

  /// What LocalAddress and HostName tell.
  Ipv4Address OwnAddress = 0x0A4D0001;  // 10.77.0.1
  std::string OwnName = "timehost";

  // What the test sees.

  /// How often a listener was asked for its next connection.
  int Accepts = 0;

  struct SentDatagram {
    std::uint16_t Port;  ///< ours
    Endpoint To;
    Ipv4Address From;  ///< 0 when the routing table was to choose
    Bytes Data;
  };

  /// Every datagram that was sent, in order.
  std::vector<SentDatagram> Sent;

  /// Every connection there ever was, in order; those that the program began included.
  std::deque<FakeConnection> Connections;

  bool IsDatagramOpen(std::uint16_t port) const;
  bool IsListening(std::uint16_t port) const;
  /// How many handles are open, connections that wait to be accepted not counted.
  std::size_t OpenCount() const { return Bound_.size() + Connected_.size(); }

  // Network.

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
  void FinishSending(SocketHandle socket) override;
  void Close(SocketHandle socket) override;
  std::unique_ptr<DatagramBatch> MakeDatagramBatch() override;
  Ipv4Address LocalAddress() override { return OwnAddress; }
  std::string HostName() override { return OwnName; }

 private:
  friend class FakeConnection;
  class Batch;

  enum class Kind { Datagram, Stream, Listener };

  struct Waiting {
    Endpoint Sender;
    Ipv4Address LocalAddress;
    Bytes Data;
  };
  // A socket with a port: one for datagrams, a listener, or a stream that only holds it.
  struct Bound {
    Kind What;
    std::uint16_t Port;
    std::deque<Waiting> Datagrams;
    std::deque<FakeConnection *> Requests;
  };
  struct Failure {
    int Error;
    int Times;
    int After;
  };

  Opened Open(Kind kind, std::uint16_t port);
  Bound *FindBound(Kind kind, std::uint16_t port, SocketHandle *handle = nullptr);
  Bound &BoundOf(SocketHandle socket, Kind kind);
  FakeConnection &ConnectionOf(SocketHandle socket);
  void MarkBound(SocketHandle socket);
  int NextFailure(Operation operation);
  SocketHandle NewHandle() { return SocketHandle{++LastHandle_}; }

  TestLoop &Loop_;
  std::intptr_t LastHandle_ = 99;
  std::map<SocketHandle, Bound> Bound_;
  std::set<std::pair<bool, std::uint16_t>> HeldPorts_;  // for datagrams or not
  std::map<SocketHandle, FakeConnection *> Connected_;
  std::map<Operation, Failure> Failing_;
};

}  // namespace cvl
