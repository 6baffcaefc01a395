// A stream socket: a listener, one accepted connection, or one of our own making.

#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "base/failure_modes.h"
#include "net/socket.h"

namespace cvl {

/// The events of a socket, or of all sockets of a slot array. The first argument is always
/// the socket's index. An event without a handler passes unseen.
struct TcpEvents {
  /// A client asks for a connection. Unless the handler accepts it, it is dropped.
  std::function<void(std::int16_t, RequestId)> ConnectionRequest;
  /// That many bytes wait to be read, those that an earlier handler left included.
  std::function<void(std::int16_t, std::int32_t)> DataArrival;
  /// The peer has ended its stream; the state is Closing.
  std::function<void(std::int16_t)> Close;
  /// The connection is broken; the state is Error.
  std::function<void(std::int16_t, const Failure &)> Error;
  /// All that was sent has been handed to the system, in a pass behind the sending.
  std::function<void(std::int16_t)> SendComplete;
  /// Connect has succeeded.
  std::function<void(std::int16_t)> Connect;
};

class TcpSocket final : public Socket,
                        private ReadyHandler,
                        private PostedEvent,
                        private Unsettled {
 public:
  /// Called after each change between closed and not closed.
  using ClosedChanged = std::function<void(std::int16_t index, bool closed)>;

  /// EVENTS outlive the socket.
  TcpSocket(SocketLayer &layer, const TcpEvents &events, std::int16_t index = 0,
            const ClosedChanged *closed_changed = nullptr);
  ~TcpSocket() override;

  /// Takes the local port without listening, and shares it with nobody.
  void Bind() override;
  void Close() override;

  /// Listens on the local port. Raises the socket's failure.
  void Listen();

  /// Takes over the connection of a ConnectionRequest. Raises 40006 when this socket isn't
  /// closed, 10014 when there is no such request.
  void Accept(RequestId request);

  /// Connects to the remote host and port; a name is looked up first. Ends in the Connect
  /// or in the Error event.
  void Connect();

  /// Sends on the connection. What one handler sends leaves in one go when it is done.
  /// Raises 40006 when there is no connection, or what has broken it.
  void SendData(std::span<const std::uint8_t> bytes);
  void SendText(std::string_view text);

  /// Reads what waits, as much of it as INTO holds, and returns how much that is. Raises
  /// 10035 when nothing waits.
  std::size_t GetData(std::span<std::uint8_t> into);
  /// All that waits, as text.
  std::string GetText();

 private:
  // Beyond these, a peer that doesn't read our answers, or bytes that we don't read, hold
  // up the connection instead of filling our memory.
  static constexpr std::size_t MostUnsent = 65536;
  static constexpr std::size_t MostUnread = 65536;
  // At most this many new connections in one pass, so that timers get their turn.
  static constexpr int MostAccepts = 32;
  static constexpr std::int64_t AcceptPauseMs = 100;

  void OnReady(Readiness readiness) override;
  void OnPosted() override;
  bool Settle(SettlePoint point) override;

  void SetState(SocketState state);
  void AcceptWaiting();
  void RaiseRequest(const Network::Accepted &accepted);
  void CloseTaker(RequestId request);
  void PauseAccepting();
  void OpenConnection();
  void FinishConnecting();
  void ReadWaiting();
  void PeerEnded();
  void SendRest();
  void LetGo();
  void Break(int error);
  void Flush(HoldBack hold_back);
  [[nodiscard]] int TryWatch();
  void UpdateWatch();
  void Unwatch();
  void ReleaseHandle();

  const TcpEvents &Events_;
  const ClosedChanged *ClosedChanged_;
  std::int16_t Index_;
  RequestId Request_ = 0;  // the one that was accepted, until the socket is closed
  bool Watched_ = false;
  bool SendCompletePending_ = false;
  bool HeldBack_ = false;  // the system keeps what was sent, for what follows
  int BrokenBy_ = 0;       // told by a send, to be reported as an event
  std::vector<std::uint8_t> Unread_;
  std::vector<std::uint8_t> Unsent_;
  std::unique_ptr<NameWait> NameWait_;
  std::unique_ptr<LoopTimer> AcceptPause_;
};

}  // namespace cvl
