#include "net/free_slots.h"

#include <gtest/gtest.h>

#include <array>

namespace cvl {
namespace {

TEST(FreeSlots, TellsTheLowestNumberInIt) {
  FreeSlots free;
  EXPECT_EQ(free.Lowest(), 0);
  free.Add(70);
  free.Add(5);
  EXPECT_EQ(free.Lowest(), 5);
  free.Remove(5);
  EXPECT_EQ(free.Lowest(), 70);
  free.Remove(70);
  EXPECT_EQ(free.Lowest(), 0);
}

TEST(FreeSlots, HoldsTheHighestSlotNumber) {
  FreeSlots free;
  free.Add(32767);
  EXPECT_EQ(free.Lowest(), 32767);
  free.Remove(32767);
  EXPECT_EQ(free.Lowest(), 0);
}

TEST(FreeSlots, KeepsNeighboursWhenOneIsRemoved) {
  FreeSlots free;
  // Within one word, at the edge of words, and at the edge of groups of words.
  for (const std::int16_t low : std::array<std::int16_t, 3>{1, 63, 4095}) {
    const auto high = static_cast<std::int16_t>(low + 1);
    free.Add(low);
    free.Add(high);
    EXPECT_EQ(free.Lowest(), low);
    free.Remove(low);
    EXPECT_EQ(free.Lowest(), high);
    free.Remove(high);
  }
  EXPECT_EQ(free.Lowest(), 0);
}

}  // namespace
}  // namespace cvl
