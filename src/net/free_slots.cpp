#include "net/free_slots.h"

#include <bit>

namespace cvl {

void FreeSlots::Add(std::int16_t slot) {
  const auto number = static_cast<std::size_t>(slot);
  Free_[number / 64] |= std::uint64_t{1} << number % 64;
  HasFree_[number / 4096] |= std::uint64_t{1} << number / 64 % 64;
}

void FreeSlots::Remove(std::int16_t slot) {
  const auto number = static_cast<std::size_t>(slot);
  Free_[number / 64] &= ~(std::uint64_t{1} << number % 64);
  if (Free_[number / 64] == 0) HasFree_[number / 4096] &= ~(std::uint64_t{1} << number / 64 % 64);
}

std::int16_t FreeSlots::Lowest() const {
  for (std::size_t group = 0; group < HasFree_.size(); ++group) {
    if (HasFree_[group] == 0) continue;
    const auto word = group * 64 + static_cast<std::size_t>(std::countr_zero(HasFree_[group]));
    const auto bit = static_cast<std::size_t>(std::countr_zero(Free_[word]));
    return static_cast<std::int16_t>(word * 64 + bit);
  }
  return 0;
}

}  // namespace cvl
