#include "net/udp_socket.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace cvl {

UdpSocket::~UdpSocket() {
  UdpSocket::Close();
}

void UdpSocket::Bind() {
  if (State_ != SocketState::Closed) throw RuntimeError(error_number::BadProtocolOrState);
  Open(LocalPort_);
}

void UdpSocket::Open(std::int32_t port) {
  Handle_ = Layer_.OpenOnPort(
      port, [this](std::uint16_t each) { return Layer_.System.OpenDatagram(each); });
  const Failure failure = Trap([this] {
    if (!Batch_) Batch_ = Layer_.System.MakeDatagramBatch();
    Layer_.Loop.Watch(Handle_, {.Read = true}, *this);
  });
  if (failure) {
    Layer_.System.Close(std::exchange(Handle_, SocketHandle::None));
    throw RuntimeError(failure.Number, failure.Description);
  }
  LocalPort_ = port;
  State_ = SocketState::Open;
}

void UdpSocket::Close() {
  if (State_ == SocketState::Closed) return;
  SendQueued();
  Layer_.Loop.Unwatch(Handle_);
  Layer_.System.Close(Handle_);
  Handle_ = SocketHandle::None;
  State_ = SocketState::Closed;
  Unsettled::Unlink();
  PostedEvent::Unlink();
  Waiting_ = {};
  Present_ = nullptr;
  ++Closings_;
}

void UdpSocket::OnReady(Readiness) {
  if (Waiting_.empty() && Present_ == nullptr) {
    // A failure here is one of an earlier answer's, which nobody waits for any more.
    if (Batch_->Receive(Handle_, Waiting_) != 0) Waiting_ = {};
  }
  Deliver();
}

void UdpSocket::Deliver() {
  HandOutWaiting();
  SendQueued();
}

void UdpSocket::HandOutWaiting() {
  const unsigned closings = Closings_;
  while (!Waiting_.empty()) {
    const Datagram &datagram = Waiting_.front();
    Waiting_ = Waiting_.subspan(1);
    // The system doesn't know of those any more, but a pass inside the handler shall.
    if (!Waiting_.empty()) Layer_.Loop.Post(*this);
    if (IsHeldBack(datagram)) continue;
    const Datagram *outer = Present_;
    const bool outer_read = PresentRead_;
    Present_ = &datagram;
    PresentRead_ = false;
    SetPeer(datagram.Sender);
    if (OnDataArrival) {
      Layer_.Loop.Dispatch(
          [&] { OnDataArrival(static_cast<std::int32_t>(datagram.Bytes.size())); });
    }
    // A handler that opened the socket anew has made an end of this batch as well.
    if (Closings_ != closings || Layer_.Loop.IsQuitting()) return;
    Present_ = outer;
    PresentRead_ = outer_read;
  }
  PostedEvent::Unlink();
}

bool UdpSocket::IsHeldBack(const Datagram &datagram) {
  if (!LoopGuard::IsSuspicious(datagram.Sender.Port, LocalPort_)) return false;
  // An upstream always sends from a suspicious port. Counted with the rest, its reply would be
  // lost to anyone who forges fifty datagrams a second in its name.
  if (IsAwaitedReply && IsAwaitedReply(datagram.Bytes)) return false;
  if (!Guard_) Guard_ = std::make_unique<LoopGuard>();
  return !Guard_->Admit(datagram.Sender.Address, Layer_.Loop.MonotonicMs());
}

const Datagram &UdpSocket::Present() const {
  if (Present_ == nullptr || PresentRead_) throw RuntimeError(error_number::WouldBlock);
  return *Present_;
}

std::size_t UdpSocket::GetData(std::span<std::uint8_t> into) {
  const Datagram &datagram = Present();
  PresentRead_ = true;
  const std::size_t length = std::min(into.size(), datagram.Bytes.size());
  if (length > 0) std::memcpy(into.data(), datagram.Bytes.data(), length);
  return length;
}

std::string UdpSocket::GetText() {
  const Datagram &datagram = Present();
  PresentRead_ = true;
  return {datagram.Bytes.begin(), datagram.Bytes.end()};
}

Endpoint UdpSocket::Destination() {
  if (const Ipv4Address *number = RemoteNumber()) return {*number, RemotePort_};
  const std::optional<Ipv4Address> address = RemoteAddress();
  if (!address) throw RuntimeError(error_number::HostNotFound);
  return {*address, RemotePort_};
}

void UdpSocket::SendData(std::span<const std::uint8_t> bytes) {
  const Endpoint to = Destination();
  if (State_ == SocketState::Closed) Open(0);
  SendQueued();
  const int error =
      Layer_.System.SendTo(Handle_, bytes, to, IsAnswer(to) ? Present_->LocalAddress : 0);
  if (error != 0) throw RuntimeError(error);
}

void UdpSocket::SendAnswer(std::span<const std::uint8_t> bytes) {
  const Endpoint to = Destination();
  if (!IsAnswer(to) || bytes.size() > AnswerQueue::LongestAnswer) {
    SendData(bytes);
    if (OnAnswersSent) OnAnswersSent();
    return;
  }
  if (Queued_.IsFull()) SendQueued();
  Queued_.Add(bytes, to, Present_->LocalAddress);
  // The answers wait for the rest of the batch; but a handler that lets the loop run may take
  // long.
  if (!Unsettled::IsLinked()) Layer_.Loop.SettleBeforePass(*this);
}

bool UdpSocket::Settle(SettlePoint) {
  SendQueued();
  return true;
}

void UdpSocket::SendQueued() {
  if (Queued_.IsEmpty()) return;
  Unsettled::Unlink();
  if (Queued_.SendAll(Layer_.System, Handle_) > 0 && OnAnswersSent) OnAnswersSent();
}

void UdpSocket::SendText(std::string_view text) {
  SendData({reinterpret_cast<const std::uint8_t *>(text.data()), text.size()});
}

}  // namespace cvl
