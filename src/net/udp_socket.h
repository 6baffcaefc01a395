// A datagram socket.

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "base/failure_modes.h"
#include "net/answer_queue.h"
#include "net/loop_guard.h"
#include "net/socket.h"

namespace cvl {

class UdpSocket final : public Socket,
                        private ReadyHandler,
                        private PostedEvent,
                        private Unsettled {
 public:
  explicit UdpSocket(SocketLayer &layer) : Socket(layer) {}
  ~UdpSocket() override;

  /// A datagram of that many bytes has come, and its sender is the remote host and port.
  /// One that the handler doesn't read is gone when it returns.
  std::function<void(std::int32_t)> OnDataArrival;

  /// Whether a datagram passes as the reply to a request of ours that is out. Such a datagram
  /// is never answered, so it can't keep a loop going: the loop guard lets it through and
  /// doesn't count it. Asked only about senders that the guard suspects; unset, none passes.
  std::function<bool(std::span<const std::uint8_t>)> IsAwaitedReply;

  /// Raised when answers of SendAnswer have left, once for those that left together; not
  /// when all of them have failed.
  std::function<void()> OnAnswersSent;

  void Bind() override;
  void Close() override;

  /// Reads the datagram that has arrived, as much of it as INTO holds, and returns how
  /// much that is; the rest is gone. Raises 10035 when there is none.
  std::size_t GetData(std::span<std::uint8_t> into);
  /// The same, whole and as text.
  std::string GetText();

  /// Sends one datagram to the remote host and port. An answer to the datagram at hand
  /// leaves from the address that it was sent to. A socket that isn't open takes a free
  /// port first, whatever local port it was set to: that one may be what could not be
  /// had. Raises the socket's failure; 11001 for a name that has no fresh answer.
  void SendData(std::span<const std::uint8_t> bytes);
  void SendText(std::string_view text);

  /// Sends an answer to the datagram at hand as SendData does, but together with those to
  /// the other datagrams that came with it, when all of them have been handled or when a
  /// handler lets the loop run. A failure of the system comes too late to be raised; those
  /// that left are told of by OnAnswersSent.
  void SendAnswer(std::span<const std::uint8_t> bytes);

 private:
  void OnReady(Readiness readiness) override;
  void OnPosted() override { Deliver(); }
  bool Settle(SettlePoint point) override;
  void Deliver();
  void HandOutWaiting();
  void SendQueued();
  void Open(std::int32_t port);
  bool IsHeldBack(const Datagram &datagram);
  const Datagram &Present() const;
  Endpoint Destination();
  bool IsAnswer(Endpoint to) const { return Present_ != nullptr && Present_->Sender == to; }

  std::unique_ptr<DatagramBatch> Batch_;
  std::unique_ptr<LoopGuard> Guard_;
  AnswerQueue Queued_;

  // The batch being handed out. A pass inside a handler goes on with the same batch, so
  // that datagrams keep their order and their buffers.
  std::span<const Datagram> Waiting_;
  const Datagram *Present_ = nullptr;
  bool PresentRead_ = false;
  unsigned Closings_ = 0;  // tells one opening from the next
};

}  // namespace cvl
