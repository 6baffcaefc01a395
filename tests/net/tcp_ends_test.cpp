// The ends that a peer brings about, and what is left of events when a handler closes.

#include "tests/net/tcp_socket_test.h"

namespace cvl {
namespace {

TEST_F(TcpSocketTest, TheEndOfThePeersStreamRaisesCloseAndLeavesState8) {
  FakeConnection &client = Connected(Alice);
  client.End();
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"close 1"});
  EXPECT_EQ(static_cast<int>(Slots[1].State()), 8);
  EXPECT_TRUE(client.IsClosed);
  EXPECT_FALSE(Loop.IsWatched(client.Handle()));
}

TEST_F(TcpSocketTest, AResetRaisesErrorAndLeavesState9) {
  FakeConnection &client = Connected(Alice);
  client.Break();
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"error 1 10054"});
  EXPECT_EQ(static_cast<int>(Slots[1].State()), 9);
  EXPECT_TRUE(client.IsClosed);
  EXPECT_FALSE(Loop.IsWatched(client.Handle()));
}

TEST_F(TcpSocketTest, AResetBehindBytesIsToldBehindThem) {
  FakeConnection &client = Connected(Alice);
  client.Send("hello");
  client.Break();
  Loop.Drain();
  EXPECT_EQ(Service.Log, (Lines{"data 1 5", "error 1 10054"}));
}

TEST_F(TcpSocketTest, AResetThatASendMeetsFirstIsToldAsAnErrorAlone) {
  FakeConnection &client = Connected(Alice);
  client.Break();
  ExpectRuntimeError(error_number::ConnectionReset, [&] { Slots[1].SendText("answer"); });
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"error 1 10054"});
  EXPECT_EQ(Slots[1].State(), SocketState::Error);
}

TEST_F(TcpSocketTest, AResetThatTheFlushMeetsFirstIsToldAsAnErrorAlone) {
  FakeConnection &client = Connected(Alice);
  Slots[1].SendText("answer");
  client.Break();
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"error 1 10054"});
  EXPECT_EQ(Slots[1].State(), SocketState::Error);
}

TEST_F(TcpSocketTest, AResetThatAWaitingRestMeetsIsToldAsAnErrorAlone) {
  FakeConnection &client = Connected(Alice);
  client.LeaveRoom(0);
  Slots[1].SendText("answer");
  Loop.Drain();
  client.Break();
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"error 1 10054"});
  EXPECT_TRUE(client.IsClosed);
}

TEST_F(TcpSocketTest, AClosedPeerIsSentTheRestAndThenTheDescriptorIsGivenBack) {
  FakeConnection &client = Connected(Alice);
  client.LeaveRoom(3);
  Slots[1].SendText("answer");
  client.End();
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"close 1"});
  EXPECT_EQ(Slots[1].State(), SocketState::Closing);
  EXPECT_FALSE(client.IsClosed);
  client.LeaveRoom(100);
  Loop.Drain();
  EXPECT_EQ(TextOf(client.Received), "answer");
  EXPECT_TRUE(client.IsClosed);
  EXPECT_FALSE(client.WasReset);
  EXPECT_EQ(Service.Log, (Lines{"close 1", "sent 1"}));
  EXPECT_EQ(Slots[1].State(), SocketState::Closing);
}

TEST_F(TcpSocketTest, ARestThatLeavesWithItsHandlersEndGivesTheDescriptorBackToo) {
  FakeConnection &client = Connected(Alice);
  Service.OnData = [&](std::int16_t slot) {
    client.LeaveRoom(0);
    Slots[slot].SendText("answer");
    client.End();
    Loop.RunOnePass();
    EXPECT_EQ(Slots[slot].State(), SocketState::Closing);
    client.LeaveRoom(100);
    static_cast<void>(Slots[slot].GetText());
  };
  client.Send("hello");
  Loop.Drain();
  EXPECT_EQ(TextOf(client.Received), "answer");
  EXPECT_TRUE(client.IsClosed);
}

TEST_F(TcpSocketTest, AnEventThatANestedPassHasHandledIsNoneAnyMore) {
  FakeConnection &first = Connected(Alice);
  FakeConnection &second = Connected(Bob);
  Service.OnData = [&](std::int16_t slot) {
    static_cast<void>(Slots[slot].GetText());
    if (slot == 1) Loop.RunOnePass();
  };
  first.Send("hello");
  second.Send("hello");
  Loop.Drain();
  EXPECT_EQ(Service.Log, (Lines{"data 1 5", "data 2 5"}));
  EXPECT_EQ(Slots[2].State(), SocketState::Connected);
}

TEST_F(TcpSocketTest, BehindCloseABrokenRestIsNoErrorAnyMore) {
  FakeConnection &client = Connected(Alice);
  client.LeaveRoom(3);
  Slots[1].SendText("answer");
  client.End();
  Loop.Drain();
  client.Break();
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"close 1"});
  EXPECT_EQ(Slots[1].State(), SocketState::Closing);
  EXPECT_TRUE(client.IsClosed);
}

TEST_F(TcpSocketTest, AHandlerMayCloseAnySocketAndItsEventsOfTheBatchAreStruckOut) {
  FakeConnection &first = Connected(Alice);
  FakeConnection &second = Connected(Bob);
  Service.OnData = [&](std::int16_t slot) { Slots[slot == 1 ? 2 : 1].Close(); };
  first.Send("hello");
  second.Send("hello");
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"data 1 5"});
  EXPECT_EQ(Slots[2].State(), SocketState::Closed);
}

TEST_F(TcpSocketTest, ASlotThatIsUsedAgainInTheSameBatchHearsNothingOfItsFormerPeer) {
  FakeConnection &first = Connected(Alice);
  FakeConnection &second = Connected(Bob);
  Service.OnData = [&](std::int16_t) {
    Slots[2].Close();
    Net.Dial(Port, Alice);
    Loop.RunOnePass();
  };
  first.Send("hello");
  second.Send("hello");
  second.Break();
  Loop.Drain();
  EXPECT_EQ(Service.Log, (Lines{"data 1 5", "accepted 2"}));
  EXPECT_EQ(Slots[2].State(), SocketState::Connected);
}

class TcpSocketWithoutData : public FakeNetTest {
 protected:
  using Lines = std::vector<std::string>;

  static constexpr std::uint16_t Port = 37;

  /// Its service has no handler for data.
  TcpSocketWithoutData() { Service.Listen(Port); }

  FakeConnection &Connected() {
    FakeConnection &connection = Net.Dial(Port, Alice);
    Loop.Drain();
    Service.Log.clear();
    return connection;
  }

  RecordingService Service{Layer, RecordingService::Reads::No};
  SlotArray &Slots = Service.Slots;
};

TEST_F(TcpSocketWithoutData, BytesAreNoEventAndDoNotMakeItSpin) {
  FakeConnection &client = Connected();
  client.Send("hello");
  Loop.Drain();
  EXPECT_TRUE(Service.Log.empty());
  EXPECT_EQ(Slots[1].State(), SocketState::Connected);
}

TEST_F(TcpSocketWithoutData, TheEndOfTheStreamIsCloseAndUnreadInputResetsNothing) {
  FakeConnection &client = Connected();
  Slots[1].SendText("answer");
  client.Send("hello");
  client.End();
  Loop.Drain();
  EXPECT_EQ(Service.Log, (Lines{"close 1", "sent 1"}));
  EXPECT_EQ(Slots[1].State(), SocketState::Closing);
  Loop.Advance(LingeringCloses::LookMs);
  EXPECT_TRUE(client.IsClosed);
  EXPECT_FALSE(client.WasReset);
}

TEST_F(TcpSocketWithoutData, UnreadInputResetsNothingWhenTheRestIsOut) {
  FakeConnection &client = Connected();
  client.LeaveRoom(3);
  Slots[1].SendText("answer");
  client.Send("hello");
  client.End();
  Loop.Drain();
  EXPECT_FALSE(client.IsClosed);
  client.LeaveRoom(100);
  Loop.Drain();
  EXPECT_EQ(TextOf(client.Received), "answer");
  Loop.Advance(LingeringCloses::LookMs);
  EXPECT_TRUE(client.IsClosed);
  EXPECT_FALSE(client.WasReset);
}

TEST_F(TcpSocketWithoutData, AResetIsAnError) {
  FakeConnection &client = Connected();
  client.Send("hello");
  client.Break();
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"error 1 10054"});
  EXPECT_EQ(Slots[1].State(), SocketState::Error);
  EXPECT_TRUE(client.IsClosed);
}

}  // namespace
}  // namespace cvl
