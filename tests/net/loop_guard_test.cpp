#include "net/loop_guard.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

constexpr Ipv4Address Sender = 0x0A000001;
constexpr std::int64_t NowMs = 5000;

int AdmittedOf(LoopGuard &guard, int datagrams, Ipv4Address sender, std::int64_t now_ms) {
  int admitted = 0;
  for (int count = 0; count < datagrams; ++count) {
    if (guard.Admit(sender, now_ms)) ++admitted;
  }
  return admitted;
}

TEST(LoopGuard, AdmitsFiftyInASecondAndNoMore) {
  LoopGuard guard;
  EXPECT_EQ(AdmittedOf(guard, 50, Sender, NowMs), 50);
  EXPECT_FALSE(guard.Admit(Sender, NowMs));
  EXPECT_FALSE(guard.Admit(Sender, NowMs + 999));
}

TEST(LoopGuard, AdmitsAgainInTheNextSecond) {
  LoopGuard guard;
  EXPECT_EQ(AdmittedOf(guard, 51, Sender, NowMs), 50);
  EXPECT_EQ(AdmittedOf(guard, 51, Sender, NowMs + 1000), 50);
}

TEST(LoopGuard, CountsEachAddressByItself) {
  LoopGuard guard;
  EXPECT_EQ(AdmittedOf(guard, 51, Sender, NowMs), 50);
  EXPECT_EQ(AdmittedOf(guard, 51, Sender + 1, NowMs), 50);
}

TEST(LoopGuard, HoldsBackStillWhileManyOthersCome) {
  LoopGuard guard;
  EXPECT_EQ(AdmittedOf(guard, 51, Sender, NowMs), 50);
  // Many times more addresses than the table has places.
  for (Ipv4Address other = 0x0B000000; other < 0x0B000000 + 100000; ++other) {
    EXPECT_TRUE(guard.Admit(other, NowMs));
  }
  EXPECT_FALSE(guard.Admit(Sender, NowMs));
}

TEST(LoopGuard, KeepsItsTableBounded) {
  EXPECT_LE(sizeof(LoopGuard), 64U * 1024);
}

TEST(LoopGuard, SuspectsPortsBelow1024) {
  EXPECT_TRUE(LoopGuard::IsSuspicious(13, 32000));
  EXPECT_TRUE(LoopGuard::IsSuspicious(1023, 32000));
  EXPECT_FALSE(LoopGuard::IsSuspicious(1024, 32000));
}

TEST(LoopGuard, SuspectsTheNumberThatTheSocketItselfIsBoundTo) {
  EXPECT_TRUE(LoopGuard::IsSuspicious(3777, 3777));
  EXPECT_FALSE(LoopGuard::IsSuspicious(3777, 3778));
}

}  // namespace
}  // namespace cvl
