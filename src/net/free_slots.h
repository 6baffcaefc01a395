// Which slots of an array are free, lowest first.

#pragma once

#include <array>
#include <cstdint>

namespace cvl {

/// A set of slot numbers, 1 to 32767, with the lowest found in two steps however many
/// slots are busy.
class FreeSlots {
 public:
  void Add(std::int16_t slot);
  void Remove(std::int16_t slot);

  /// The lowest number in the set, 0 when it is empty.
  std::int16_t Lowest() const;

 private:
  static constexpr std::size_t Words = 32768 / 64;

  std::array<std::uint64_t, Words> Free_{};          // a bit for each slot
  std::array<std::uint64_t, Words / 64> HasFree_{};  // a bit for each word above
};

}  // namespace cvl
