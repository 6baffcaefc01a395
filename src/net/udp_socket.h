// A datagram socket.

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "base/failure_modes.h"
#include "net/loop_guard.h"
#include "net/socket.h"

namespace cvl {

class UdpSocket final : public Socket, private ReadyHandler {
 public:
  explicit UdpSocket(SocketLayer &layer) : Socket(layer) {}
  ~UdpSocket() override;

  /// A datagram of that many bytes has come, and its sender is the remote host and port.
  /// One that the handler doesn't read is gone when it returns.
  std::function<void(std::int32_t)> OnDataArrival;

  void Bind() override;
  void Close() override;

  /// Reads the datagram that has arrived, as much of it as INTO holds, and returns how
  /// much that is; the rest is gone. Raises 10035 when there is none.
  std::size_t GetData(std::span<std::uint8_t> into);
  /// The same, whole and as text.
  std::string GetText();

  /// Sends one datagram to the remote host and port. An answer to the datagram at hand
  /// leaves from the address that it was sent to. A socket that was never opened takes a
  /// free port first. Raises the socket's failure; 11001 for a name that has no fresh
  /// answer.
  void SendData(std::span<const std::uint8_t> bytes);
  void SendText(std::string_view text);

 private:
  void OnReady(Readiness readiness) override;
  void Deliver();
  bool IsHeldBack(const Datagram &datagram);
  const Datagram &Present() const;
  Endpoint Destination();

  std::unique_ptr<DatagramBatch> Batch_;
  std::unique_ptr<LoopGuard> Guard_;

  // The batch being handed out. A pass inside a handler goes on with the same batch, so
  // that datagrams keep their order and their buffers.
  std::span<const Datagram> Waiting_;
  const Datagram *Present_ = nullptr;
  bool PresentRead_ = false;
};

}  // namespace cvl
