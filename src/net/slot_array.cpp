#include "net/slot_array.h"

namespace cvl {

SlotArray::SlotArray(SocketLayer &layer) : Layer_(layer) {
  ClosedChanged_ = [this](std::int16_t slot, bool closed) {
    if (slot == 0) return;
    if (closed) {
      Free_.Add(slot);
    } else {
      Free_.Remove(slot);
    }
  };
  Add();
}

void SlotArray::Add() {
  const auto slot = static_cast<std::int16_t>(Slots_.size());
  Slots_.push_back(std::make_unique<TcpSocket>(Layer_, Events, slot, &ClosedChanged_));
  if (slot != 0) Free_.Add(slot);
}

TcpSocket &SlotArray::operator[](std::int16_t slot) {
  if (slot < 0 || slot > Highest()) throw RuntimeError(error_number::SubscriptOutOfRange);
  return *Slots_[static_cast<std::size_t>(slot)];
}

std::int16_t SlotArray::FindFree() {
  const std::int16_t lowest = Free_.Lowest();
  if (lowest != 0) return lowest;
  if (Highest() == INT16_MAX) throw RuntimeError(error_number::Overflow);
  Add();
  return Highest();
}

}  // namespace cvl
