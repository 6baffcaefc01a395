// The sockets of one TCP service, numbered from 0. Slot 0 listens; each further slot
// carries one accepted connection. Slots are made on demand, used again once they are
// closed, and never taken away.

#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "net/free_slots.h"
#include "net/tcp_socket.h"

namespace cvl {

class SlotArray {
 public:
  explicit SlotArray(SocketLayer &layer);
  SlotArray(const SlotArray &) = delete;
  SlotArray &operator=(const SlotArray &) = delete;

  /// The events of all slots; set them before the first opening.
  TcpEvents Events;

  /// The socket of a slot. Raises 9 when there is no such slot.
  TcpSocket &operator[](std::int16_t slot);

  /// The number of the lowest closed slot from 1 up; when all are busy, of a new one.
  /// Raises 6 when that number would pass 32767.
  std::int16_t FindFree();

  /// The highest slot number.
  std::int16_t Highest() const { return static_cast<std::int16_t>(Slots_.size() - 1); }

 private:
  void Add();

  SocketLayer &Layer_;
  FreeSlots Free_;
  TcpSocket::ClosedChanged ClosedChanged_;
  std::vector<std::unique_ptr<TcpSocket>> Slots_;
};

}  // namespace cvl
