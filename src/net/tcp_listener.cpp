// The part of TcpSocket that listens: it takes connections from the system and offers them.

#include "net/tcp_socket.h"

namespace cvl {

void TcpSocket::Listen() {
  if (State_ != SocketState::Closed) throw RuntimeError(error_number::BadProtocolOrState);
  Handle_ = Layer_.OpenOnPort(LocalPort_, [this](std::uint16_t port) {
    Network::Opened opened = Layer_.System.OpenStream(port, Rebind::Yes);
    if (opened.Error != 0) return opened;
    opened.Error = Layer_.System.Listen(opened.Socket);
    if (opened.Error != 0) Layer_.System.Close(opened.Socket);
    return opened;
  });
  SetState(SocketState::Listening);
  const int error = TryWatch();
  if (error == 0) return;
  Close();
  throw RuntimeError(error);
}

void TcpSocket::AcceptWaiting() {
  // A pass inside a handler has taken all other waiting connections, and the next one will.
  const std::uint64_t passes = Layer_.Loop.Passes();
  for (int count = 0;
       count < MostAccepts && State_ == SocketState::Listening && Layer_.Loop.Passes() == passes;
       ++count) {
    const Network::Accepted accepted = Layer_.System.Accept(Handle_);
    switch (accepted.Error) {
      case 0:
        RaiseRequest(accepted);
        break;
      case error_number::WouldBlock:
        return;
      case error_number::ConnectionAborted:
      case error_number::TooManyDescriptors:
        break;  // that one is gone; the next may do better
      default:
        PauseAccepting();
        return;
    }
  }
}

void TcpSocket::RaiseRequest(const Network::Accepted &accepted) {
  RequestId request = 0;
  const bool is_kept = SocketLayer::HasMemoryForConnections() && !RunsOutOfMemory([&] {
                         request = Layer_.AddRequest(accepted.Socket, accepted.Peer);
                       });
  if (!is_kept) {
    Layer_.System.Close(accepted.Socket);
    return;
  }
  SetPeer(accepted.Peer);
  if (Events_.ConnectionRequest) {
    Layer_.Loop.Dispatch([&] {
      if (RunsOutOfMemory([&] { Events_.ConnectionRequest(Index_, request); })) {
        CloseTaker(request);
      }
    });
  }
  Layer_.DropRequest(request);
}

void TcpSocket::CloseTaker(RequestId request) {
  TcpSocket *taker = Layer_.TakerOf(request);
  // It may carry another connection by then.
  if (taker != nullptr && taker->Request_ == request) taker->Close();
}

void TcpSocket::PauseAccepting() {
  // The system has no room for a connection at all. It stays readable, and would wake the
  // loop for ever.
  Unwatch();
  if (!AcceptPause_) {
    AcceptPause_ = std::make_unique<LoopTimer>(Layer_.Loop, [this] { UpdateWatch(); });
  }
  AcceptPause_->Start(AcceptPauseMs, LoopTimer::Repeat::No);
}

}  // namespace cvl
