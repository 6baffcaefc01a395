#include "net/slot_array.h"

#include "tests/net/fake_net_test.h"
#include "tests/net/recording_service.h"

namespace cvl {
namespace {

class SlotArrayTest : public FakeNetTest {
 protected:
  SlotArrayTest() { Service.Listen(37); }

  /// That many clients, each of which has got its slot.
  void Connect(int clients) {
    for (int count = 0; count < clients; ++count) {
      Net.Dial(37, At("10.0.0.7", static_cast<std::uint16_t>(40000 + count)));
    }
    Loop.Drain();
  }

  RecordingService Service{Layer};
  SlotArray &Slots = Service.Slots;
};

TEST_F(SlotArrayTest, BeginsWithTheListenerAlone) {
  EXPECT_EQ(Slots.Highest(), 0);
  EXPECT_EQ(Slots[0].State(), SocketState::Listening);
}

TEST_F(SlotArrayTest, FailsWith9WhereThereIsNoSlot) {
  Connect(1);
  EXPECT_EQ(Slots[1].State(), SocketState::Connected);
  ExpectRuntimeError(error_number::SubscriptOutOfRange, [&] { return Slots[2].State(); });
  ExpectRuntimeError(error_number::SubscriptOutOfRange, [&] { return Slots[-1].State(); });
}

TEST_F(SlotArrayTest, AFifthClientWithFourSlotsBusyGetsSlotFive) {
  Connect(4);
  EXPECT_EQ(Slots.Highest(), 4);
  Connect(1);
  EXPECT_EQ(Slots.Highest(), 5);
  EXPECT_EQ(Service.Log.back(), "accepted 5");
}

TEST_F(SlotArrayTest, UsesTheLowestClosedSlotAgain) {
  Connect(5);
  Slots[4].Close();
  Slots[2].Close();
  EXPECT_EQ(Slots.FindFree(), 2);
  Connect(3);
  EXPECT_EQ(Service.Log,
            (std::vector<std::string>{"accepted 1", "accepted 2", "accepted 3", "accepted 4",
                                      "accepted 5", "accepted 2", "accepted 4", "accepted 6"}));
}

TEST_F(SlotArrayTest, GivesTheFirstSlotToTheNextClientWhenAllAreDone) {
  Connect(5);
  for (std::int16_t slot = 1; slot <= 5; ++slot) {
    Slots[slot].Close();
  }
  Connect(1);
  EXPECT_EQ(Service.Log.back(), "accepted 1");
  EXPECT_EQ(Slots.Highest(), 5);
}

TEST_F(SlotArrayTest, NeverGivesOutTheListener) {
  Connect(1);
  Slots[1].Close();
  Slots[0].Close();
  EXPECT_EQ(Slots.FindFree(), 1);
  EXPECT_EQ(Slots.Highest(), 1);
}

TEST_F(SlotArrayTest, PassesOverASlotWhosePeerHasGoneButWhichNobodyClosed) {
  Connect(2);
  Net.Connections[0].End();
  Net.Connections[1].Break();
  Loop.Drain();
  EXPECT_EQ(Slots[1].State(), SocketState::Closing);
  EXPECT_EQ(Slots[2].State(), SocketState::Error);
  EXPECT_EQ(Slots.FindFree(), 3);
  Slots[2].Close();
  EXPECT_EQ(Slots.FindFree(), 2);
}

TEST_F(SlotArrayTest, AFreeSlotThatIsNotTakenIsGivenOutAgain) {
  EXPECT_EQ(Slots.FindFree(), 1);
  EXPECT_EQ(Slots.FindFree(), 1);
}

TEST_F(SlotArrayTest, TheNumberBeyond32767Fails) {
  Slots[0].Close();
  for (int slot = 1; slot <= 32767; ++slot) {
    const std::int16_t free = Slots.FindFree();
    ASSERT_EQ(free, slot);
    Slots[free].SetLocalPort(free);
    Slots[free].Bind();  // a cheap way to keep it busy
  }
  ExpectRuntimeError(error_number::Overflow, [&] { return Slots.FindFree(); });
  EXPECT_EQ(Slots.Highest(), 32767);
  Slots[300].Close();
  EXPECT_EQ(Slots.FindFree(), 300);
}

}  // namespace
}  // namespace cvl
