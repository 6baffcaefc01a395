#include "net/tcp_socket.h"

#include <algorithm>
#include <array>
#include <utility>

namespace cvl {

TcpSocket::TcpSocket(SocketLayer &layer, const TcpEvents &events, std::int16_t index,
                     const ClosedChanged *closed_changed)
    : Socket(layer), Events_(events), ClosedChanged_(closed_changed), Index_(index) {}

TcpSocket::~TcpSocket() {
  ClosedChanged_ = nullptr;
  TcpSocket::Close();
}

void TcpSocket::SetState(SocketState state) {
  const bool was_closed = State_ == SocketState::Closed;
  State_ = state;
  const bool is_closed = state == SocketState::Closed;
  if (was_closed != is_closed && ClosedChanged_ != nullptr) (*ClosedChanged_)(Index_, is_closed);
}

void TcpSocket::Bind() {
  if (State_ != SocketState::Closed) throw RuntimeError(error_number::BadProtocolOrState);
  Handle_ = Layer_.OpenOnPort(LocalPort_, [this](std::uint16_t port) {
    return Layer_.System.OpenStream(port, Rebind::No);
  });
  SetState(SocketState::Open);
}

void TcpSocket::Accept(RequestId request) {
  if (State_ != SocketState::Closed) throw RuntimeError(error_number::BadProtocolOrState);
  const SocketLayer::Request taken = Layer_.TakeRequest(request, *this);
  Request_ = request;
  Handle_ = taken.Socket;
  SetPeer(taken.Peer);
  SetRemoteHost(taken.Peer.Address);
  SetState(SocketState::Connected);
  Layer_.Loop.SettleLater(*this);
}

void TcpSocket::Connect() {
  if (State_ != SocketState::Closed) throw RuntimeError(error_number::BadProtocolOrState);
  Layer_.RequireOpen();
  SetState(SocketState::ResolvingHost);
  if (!NameWait_) NameWait_ = std::make_unique<NameWait>(Layer_.Loop, Layer_.Names);
  if (RemoteAddress()) {
    OpenConnection();
  } else {
    NameWait_->Start(RemoteHost(), 0, [this] { OpenConnection(); });
  }
}

void TcpSocket::OpenConnection() {
  // The layer may have been shut while the name was looked up.
  if (const Failure refused = Trap([this] { Layer_.RequireOpen(); })) {
    Break(refused.Number);
    return;
  }
  const std::optional<Ipv4Address> address = RemoteAddress();
  if (!address) {
    Break(error_number::HostNotFound);
    return;
  }
  const auto port = static_cast<std::uint16_t>(RemotePort());
  const Network::Opened opened = Layer_.System.Connect({*address, port});
  if (opened.Error != 0) {
    // An event of its own in every case: the caller of Connect is still at work.
    BrokenBy_ = opened.Error;
    Layer_.Loop.Post(*this);
    return;
  }
  Handle_ = opened.Socket;
  SetPeer({*address, port});
  SetState(SocketState::Connecting);
  UpdateWatch();
}

void TcpSocket::Close() {
  Unsettled::Unlink();
  if (NameWait_) NameWait_->Cancel();
  AcceptPause_.reset();
  if (Handle_ != SocketHandle::None) {
    const bool connected = State_ == SocketState::Connected || State_ == SocketState::Closing;
    if (connected) Flush(HoldBack::No);
    Unwatch();
    const SocketHandle handle = std::exchange(Handle_, SocketHandle::None);
    if (connected) {
      Layer_.Lingering.Add(handle, std::move(Unsent_));
    } else {
      Layer_.System.Close(handle);
    }
  }
  // The flush may have had something to report that now interests nobody.
  BrokenBy_ = 0;
  SendCompletePending_ = false;
  HeldBack_ = false;
  PostedEvent::Unlink();
  Unread_.clear();
  Unsent_.clear();
  Request_ = 0;
  SetState(SocketState::Closed);
}

void TcpSocket::SendText(std::string_view text) {
  SendData({reinterpret_cast<const std::uint8_t *>(text.data()), text.size()});
}

void TcpSocket::SendData(std::span<const std::uint8_t> bytes) {
  if (State_ != SocketState::Connected) throw RuntimeError(error_number::BadProtocolOrState);
  if (BrokenBy_ == 0 && Unsent_.empty()) BrokenBy_ = Layer_.System.PendingError(Handle_);
  if (BrokenBy_ != 0) {
    Layer_.Loop.Post(*this);
    throw RuntimeError(BrokenBy_);
  }
  Unsent_.insert(Unsent_.end(), bytes.begin(), bytes.end());
  SendCompletePending_ = true;
  Layer_.Loop.SettleLater(*this);
}

std::size_t TcpSocket::GetData(std::span<std::uint8_t> into) {
  if (Unread_.empty()) throw RuntimeError(error_number::WouldBlock);
  const auto length = static_cast<std::ptrdiff_t>(std::min(into.size(), Unread_.size()));
  std::copy_n(Unread_.begin(), length, into.begin());
  Unread_.erase(Unread_.begin(), Unread_.begin() + length);
  Layer_.Loop.SettleLater(*this);  // there is room again for what was held up
  return static_cast<std::size_t>(length);
}

std::string TcpSocket::GetText() {
  if (Unread_.empty()) throw RuntimeError(error_number::WouldBlock);
  std::string text(Unread_.begin(), Unread_.end());
  Unread_.clear();
  Layer_.Loop.SettleLater(*this);
  return text;
}

bool TcpSocket::Settle(SettlePoint point) {
  if (State_ == SocketState::Closing) {
    SendRest();
    return true;
  }
  if (point == SettlePoint::NestedPass) {
    // Most handlers that let the loop run close the connection behind it: then answer and
    // end leave in one segment, and the connection need never be watched.
    Flush(HoldBack::Yes);
    if (HeldBack_ || !Watched_) return false;
  } else {
    Flush(HoldBack::No);
    if (HeldBack_ && Handle_ != SocketHandle::None) Layer_.System.Release(Handle_);
    HeldBack_ = false;
  }
  UpdateWatch();
  return true;
}

void TcpSocket::Flush(HoldBack hold_back) {
  if (!Unsent_.empty() && Handle_ != SocketHandle::None && BrokenBy_ == 0) {
    const Network::Transferred sent = Layer_.System.Send(Handle_, Unsent_, hold_back);
    if (sent.Error == 0) {
      HeldBack_ = hold_back == HoldBack::Yes;
      Unsent_.erase(Unsent_.begin(), Unsent_.begin() + static_cast<std::ptrdiff_t>(sent.Bytes));
    } else if (sent.Error != error_number::WouldBlock) {
      BrokenBy_ = sent.Error;
      SendCompletePending_ = false;
      Unsent_.clear();
      Layer_.Loop.Post(*this);
      return;
    }
  }
  // One that is posted already stays where it is: a peer that goes on sending would put it
  // off for ever.
  const bool is_due = Unsent_.empty() && SendCompletePending_ && Events_.SendComplete;
  if (is_due && !PostedEvent::IsLinked()) Layer_.Loop.Post(*this);
}

void TcpSocket::OnPosted() {
  if (BrokenBy_ != 0) {
    Break(BrokenBy_);
    return;
  }
  // A later send may still be on its way; its own end will post this anew.
  if (!SendCompletePending_ || !Unsent_.empty()) return;
  SendCompletePending_ = false;
  if (Events_.SendComplete) Events_.SendComplete(Index_);
}

void TcpSocket::OnReady(Readiness readiness) {
  if (State_ == SocketState::Listening) {
    AcceptWaiting();
  } else if (State_ == SocketState::Connecting) {
    FinishConnecting();
  } else if (BrokenBy_ != 0) {
    // A send has taken the failure; to a read the stream would now look as if it had ended
    // in good order.
    Break(BrokenBy_);
  } else if (State_ == SocketState::Closing) {
    SendRest();
  } else if (readiness.Write) {
    Flush(HoldBack::No);
    UpdateWatch();
  } else if (Events_.DataArrival && (readiness.Read || readiness.Error)) {
    ReadWaiting();
  } else if (readiness.Error) {
    const int error = Layer_.System.PendingError(Handle_);
    if (error != 0) {
      Break(error);
    } else {
      PeerEnded();
    }
  } else if (readiness.HangUp) {
    PeerEnded();
  }
}

void TcpSocket::SendRest() {
  if (Handle_ == SocketHandle::None) return;
  Flush(HoldBack::No);
  if (BrokenBy_ != 0) {
    // Close has been told, and nobody wants to hear of this end a second time.
    BrokenBy_ = 0;
    PostedEvent::Unlink();
  }
  if (Unsent_.empty()) LetGo();
}

void TcpSocket::FinishConnecting() {
  const int error = Layer_.System.PendingError(Handle_);
  if (error != 0) {
    Break(error);
    return;
  }
  SetState(SocketState::Connected);
  if (const int refused = TryWatch(); refused != 0) {
    Break(refused);
    return;
  }
  if (Events_.Connect) Events_.Connect(Index_);
}

void TcpSocket::ReadWaiting() {
  // Static: one thread reads, and what it read is copied out before any handler runs.
  static std::array<std::uint8_t, MostUnread> buffer;
  const Network::Transferred received = Layer_.System.Receive(Handle_, buffer);
  if (received.Error == error_number::WouldBlock) return;
  if (received.Error != 0) {
    Break(received.Error);
  } else if (received.Bytes == 0) {
    PeerEnded();
  } else {
    Unread_.insert(Unread_.end(), buffer.begin(),
                   buffer.begin() + static_cast<std::ptrdiff_t>(received.Bytes));
    Layer_.Loop.SettleLater(*this);
    Events_.DataArrival(Index_, static_cast<std::int32_t>(Unread_.size()));
  }
}

void TcpSocket::PeerEnded() {
  SetState(SocketState::Closing);
  if (Unsent_.empty()) {
    LetGo();
  } else {
    UpdateWatch();
  }
  if (Events_.Close) Events_.Close(Index_);
}

void TcpSocket::LetGo() {
  if (Events_.DataArrival) {
    ReleaseHandle();
    return;
  }
  // Nobody has read what the peer sent before its end.
  Unwatch();
  Layer_.Lingering.Add(std::exchange(Handle_, SocketHandle::None), {});
}

void TcpSocket::Break(int error) {
  BrokenBy_ = 0;
  // What had left before the connection broke is complete all the same.
  if (!Unsent_.empty()) SendCompletePending_ = false;
  Unsent_.clear();
  SetState(SocketState::Error);
  ReleaseHandle();
  if (Events_.Error) Events_.Error(Index_, {error, DescriptionOf(error)});
}

void TcpSocket::UpdateWatch() {
  const int error = TryWatch();
  if (error == 0) return;
  // No event of the socket would ever be reported again.
  if (State_ == SocketState::Listening) {
    PauseAccepting();
  } else if (State_ == SocketState::Connecting) {
    BrokenBy_ = error;
    Layer_.Loop.Post(*this);
  } else {
    Close();
  }
}

int TcpSocket::TryWatch() {
  if (Handle_ == SocketHandle::None) return 0;
  Readiness interest;
  switch (State_) {
    case SocketState::Listening:
      interest.Read = true;
      break;
    case SocketState::Connecting:
      interest.Write = true;
      break;
    case SocketState::Connected:
      // Without a handler for data only the end of the connection is of interest.
      interest.Read =
          Events_.DataArrival && Unread_.size() < MostUnread && Unsent_.size() < MostUnsent;
      interest.HangUp = !Events_.DataArrival;
      interest.Write = !Unsent_.empty();
      break;
    case SocketState::Closing:
      interest.Write = !Unsent_.empty();
      break;
    default:
      return 0;
  }
  const Failure failure = Trap([&] { Layer_.Loop.Watch(Handle_, interest, *this); });
  Watched_ = !failure;
  return failure.Number;
}

void TcpSocket::Unwatch() {
  if (Watched_) Layer_.Loop.Unwatch(Handle_);
  Watched_ = false;
}

void TcpSocket::ReleaseHandle() {
  if (Handle_ == SocketHandle::None) return;
  Unwatch();
  Layer_.System.Close(std::exchange(Handle_, SocketHandle::None));
}

}  // namespace cvl
