#include "tests/support/fake_network.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace cvl {

Bytes BytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

std::string TextOf(std::span<const std::uint8_t> bytes) {
  return {bytes.begin(), bytes.end()};
}

Endpoint At(std::string_view address, std::uint16_t port) {
  const std::optional<Ipv4Address> parsed = ParseAddress(address);
  if (!parsed) throw std::logic_error("no address: " + std::string(address));
  return {*parsed, port};
}

// FakeConnection.

void FakeConnection::Send(std::span<const std::uint8_t> bytes) {
  Unread_.insert(Unread_.end(), bytes.begin(), bytes.end());
  Changed();
}

void FakeConnection::Send(std::string_view text) {
  Send(BytesOf(text));
}

void FakeConnection::End() {
  PeerEnded_ = true;
  Changed();
}

void FakeConnection::Break(int error) {
  IsBroken_ = true;
  Error_ = error;
  Changed();
}

void FakeConnection::LeaveRoom(std::size_t bytes) {
  Room_ = bytes;
  Changed();
}

void FakeConnection::Establish() {
  IsConnecting_ = false;
  Changed();
}

void FakeConnection::Refuse(int error) {
  IsConnecting_ = false;
  IsRefused = true;
  Break(error);
}

Readiness FakeConnection::Ready() const {
  if (IsConnecting_) return {};
  return {.Read = !Unread_.empty() || PeerEnded_ || IsBroken_,
          .Write = Room_ > 0 || IsBroken_,
          .HangUp = PeerEnded_ || IsBroken_,
          .Error = IsBroken_ || (PeerEnded_ && HasEnded)};
}

void FakeConnection::Changed() {
  const auto open = Network_.Connected_.find(Socket_);
  if (open != Network_.Connected_.end()) Network_.Loop_.SetReady(Socket_, Ready());
}

int FakeConnection::TakeError() {
  return std::exchange(Error_, 0);
}

// FakeNetwork: what the test makes happen and sees.

bool FakeNetwork::Arrive(std::uint16_t port, Endpoint sender, std::span<const std::uint8_t> bytes,
                         Ipv4Address local_address) {
  SocketHandle handle = SocketHandle::None;
  Bound *socket = FindBound(Kind::Datagram, port, &handle);
  if (socket == nullptr) return false;
  socket->Datagrams.push_back({sender, local_address, Bytes(bytes.begin(), bytes.end())});
  MarkBound(handle);
  return true;
}

bool FakeNetwork::Arrive(std::uint16_t port, Endpoint sender, std::string_view text,
                         Ipv4Address local_address) {
  return Arrive(port, sender, BytesOf(text), local_address);
}

FakeConnection &FakeNetwork::Dial(std::uint16_t port, Endpoint client) {
  FakeConnection &connection = Connections.emplace_back(*this, NewHandle(), client);
  SocketHandle handle = SocketHandle::None;
  Bound *listener = FindBound(Kind::Listener, port, &handle);
  if (listener == nullptr) {
    connection.IsRefused = true;
    return connection;
  }
  listener->Requests.push_back(&connection);
  MarkBound(handle);
  return connection;
}

void FakeNetwork::Fail(Operation operation, int error, int times, int after) {
  Failing_[operation] = {error, times, after};
}

int FakeNetwork::NextFailure(Operation operation) {
  const auto failing = Failing_.find(operation);
  if (failing == Failing_.end()) return 0;
  if (failing->second.After > 0) {
    --failing->second.After;
    return 0;
  }
  const int error = failing->second.Error;
  if (failing->second.Times != Always && --failing->second.Times == 0) Failing_.erase(failing);
  return error;
}

bool FakeNetwork::IsDatagramOpen(std::uint16_t port) const {
  return std::any_of(Bound_.begin(), Bound_.end(), [port](const auto &each) {
    return each.second.What == Kind::Datagram && each.second.Port == port;
  });
}

bool FakeNetwork::IsListening(std::uint16_t port) const {
  return std::any_of(Bound_.begin(), Bound_.end(), [port](const auto &each) {
    return each.second.What == Kind::Listener && each.second.Port == port;
  });
}

// FakeNetwork: handles.

FakeNetwork::Bound *FakeNetwork::FindBound(Kind kind, std::uint16_t port, SocketHandle *handle) {
  for (auto &[socket, bound] : Bound_) {
    if (bound.What != kind || bound.Port != port) continue;
    if (handle != nullptr) *handle = socket;
    return &bound;
  }
  return nullptr;
}

FakeNetwork::Bound &FakeNetwork::BoundOf(SocketHandle socket, Kind kind) {
  const auto found = Bound_.find(socket);
  if (found == Bound_.end() || found->second.What != kind) {
    throw std::logic_error("an operation on a socket that isn't open or of another kind");
  }
  return found->second;
}

FakeConnection &FakeNetwork::ConnectionOf(SocketHandle socket) {
  const auto found = Connected_.find(socket);
  if (found == Connected_.end()) {
    throw std::logic_error("an operation on a connection that isn't open");
  }
  return *found->second;
}

void FakeNetwork::MarkBound(SocketHandle socket) {
  const Bound &bound = Bound_.at(socket);
  Loop_.SetReady(socket, {.Read = !bound.Datagrams.empty() || !bound.Requests.empty()});
}

Network::Opened FakeNetwork::Open(Kind kind, std::uint16_t port) {
  const bool is_free =
      !TakenPorts.contains(port) && HeldPorts_.insert({kind == Kind::Datagram, port}).second;
  if (!is_free) return {error_number::AddressInUse, SocketHandle::None};
  const SocketHandle handle = NewHandle();
  Bound_.insert({handle, Bound{kind, port, {}, {}}});
  return {0, handle};
}

// FakeNetwork: the operations.

Network::Opened FakeNetwork::OpenDatagram(std::uint16_t port) {
  const int error = NextFailure(Operation::OpenDatagram);
  return error != 0 ? Opened{error, SocketHandle::None} : Open(Kind::Datagram, port);
}

Network::Opened FakeNetwork::OpenStream(std::uint16_t port, Rebind) {
  const int error = NextFailure(Operation::OpenStream);
  return error != 0 ? Opened{error, SocketHandle::None} : Open(Kind::Stream, port);
}

int FakeNetwork::Listen(SocketHandle socket) {
  Bound &stream = BoundOf(socket, Kind::Stream);
  const int error = NextFailure(Operation::Listen);
  if (error == 0) stream.What = Kind::Listener;
  return error;
}

Network::Accepted FakeNetwork::Accept(SocketHandle listener) {
  ++Accepts;
  Bound &bound = BoundOf(listener, Kind::Listener);
  if (bound.Requests.empty()) return {error_number::WouldBlock, SocketHandle::None, {}};
  const int error = NextFailure(Operation::Accept);
  if (error != 0 && error != error_number::TooManyDescriptors) {
    return {error, SocketHandle::None, {}};
  }
  FakeConnection &connection = *bound.Requests.front();
  bound.Requests.pop_front();
  MarkBound(listener);
  if (error != 0) {
    connection.IsClosed = true;
    return {error, SocketHandle::None, {}};
  }
  connection.IsAccepted = true;
  Connected_[connection.Socket_] = &connection;
  connection.Changed();
  return {0, connection.Socket_, connection.Peer};
}

Network::Opened FakeNetwork::Connect(Endpoint peer) {
  const int error = NextFailure(Operation::Connect);
  if (error != 0) return {error, SocketHandle::None};
  FakeConnection &connection = Connections.emplace_back(*this, NewHandle(), peer);
  connection.IsConnecting_ = true;
  Connected_[connection.Socket_] = &connection;
  return {0, connection.Socket_};
}

int FakeNetwork::PendingError(SocketHandle socket) {
  return ConnectionOf(socket).TakeError();
}

Network::Transferred FakeNetwork::Send(SocketHandle socket, std::span<const std::uint8_t> bytes,
                                       HoldBack hold_back) {
  FakeConnection &connection = ConnectionOf(socket);
  if (const int error = NextFailure(Operation::Send); error != 0) return {error, 0};
  if (connection.IsBroken_) {
    const int error = connection.TakeError();
    return {error != 0 ? error : error_number::ConnectionReset, 0};
  }
  if (connection.Room_ == 0) return {error_number::WouldBlock, 0};
  const std::size_t length = std::min(bytes.size(), connection.Room_);
  if (connection.Room_ != std::numeric_limits<std::size_t>::max()) connection.Room_ -= length;
  const Bytes piece(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
  connection.Received.insert(connection.Received.end(), piece.begin(), piece.end());
  connection.Pieces.push_back(piece);
  connection.IsHeldBack = hold_back == HoldBack::Yes;
  connection.Changed();
  return {0, length};
}

Network::Transferred FakeNetwork::Receive(SocketHandle socket, std::span<std::uint8_t> into) {
  FakeConnection &connection = ConnectionOf(socket);
  if (const int error = NextFailure(Operation::Receive); error != 0) return {error, 0};
  if (connection.Unread_.empty()) {
    if (connection.IsBroken_) return {connection.TakeError(), 0};
    return {connection.PeerEnded_ ? 0 : error_number::WouldBlock, 0};
  }
  const std::size_t length = std::min(into.size(), connection.Unread_.size());
  const auto end = connection.Unread_.begin() + static_cast<std::ptrdiff_t>(length);
  std::copy(connection.Unread_.begin(), end, into.begin());
  connection.Unread_.erase(connection.Unread_.begin(), end);
  connection.Changed();
  return {0, length};
}

int FakeNetwork::SendTo(SocketHandle socket, std::span<const std::uint8_t> bytes, Endpoint to,
                        Ipv4Address from) {
  const Bound &bound = BoundOf(socket, Kind::Datagram);
  if (const int error = NextFailure(Operation::SendTo); error != 0) return error;
  Sent.push_back({bound.Port, to, from, Bytes(bytes.begin(), bytes.end())});
  return 0;
}

void FakeNetwork::Release(SocketHandle socket) {
  ConnectionOf(socket).IsHeldBack = false;
}

void FakeNetwork::FinishSending(SocketHandle socket) {
  FakeConnection &connection = ConnectionOf(socket);
  connection.IsHeldBack = false;
  connection.HasEnded = true;
  connection.Changed();
}

void FakeNetwork::Close(SocketHandle socket) {
  const auto connected = Connected_.find(socket);
  if (connected != Connected_.end()) {
    FakeConnection &connection = *connected->second;
    connection.IsClosed = true;
    connection.IsHeldBack = false;
    connection.WasReset = !connection.Unread_.empty();
    if (!connection.WasReset) connection.HasEnded = true;
    Connected_.erase(connected);
  } else if (const auto bound = Bound_.find(socket); bound != Bound_.end()) {
    for (FakeConnection *waiting : bound->second.Requests) {
      waiting->WasReset = true;
    }
    HeldPorts_.erase({bound->second.What == Kind::Datagram, bound->second.Port});
    Bound_.erase(bound);
  } else {
    ADD_FAILURE() << "closed twice: socket " << static_cast<int>(socket);
  }
  Loop_.Forget(socket);
}

// Datagrams.

class FakeNetwork::Batch final : public DatagramBatch {
 public:
  explicit Batch(FakeNetwork &network) : Network_(network) {}

  int Receive(SocketHandle socket, std::span<const Datagram> &received) override {
    received = {};
    Bound &bound = Network_.BoundOf(socket, Kind::Datagram);
    const int error = Network_.NextFailure(Operation::ReceiveDatagrams);
    if (error != 0) return error;
    if (bound.Datagrams.empty()) return error_number::WouldBlock;
    const std::size_t count =
        std::min({bound.Datagrams.size(), Network_.MostPerBatch, DatagramBatch::Most});
    Buffers_.clear();
    Datagrams_.clear();
    for (std::size_t at = 0; at < count; ++at) {
      Buffers_.push_back(std::move(bound.Datagrams.front()));
      bound.Datagrams.pop_front();
    }
    for (const Waiting &each : Buffers_) {
      Datagrams_.push_back({each.Sender, each.LocalAddress, each.Data});
    }
    Network_.MarkBound(socket);
    received = Datagrams_;
    return 0;
  }

 private:
  FakeNetwork &Network_;
  std::vector<Waiting> Buffers_;
  std::vector<Datagram> Datagrams_;
};

std::unique_ptr<DatagramBatch> FakeNetwork::MakeDatagramBatch() {
  return std::make_unique<Batch>(*this);
}

}  // namespace cvl
