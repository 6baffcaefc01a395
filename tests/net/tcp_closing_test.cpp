// What Close does to a connection; tcp_socket_test.cpp has the rest.

#include "net/tcp_socket.h"
#include "tests/net/fake_net_test.h"
#include "tests/net/recording_service.h"

namespace cvl {
namespace {

constexpr std::uint16_t Port = 13;

class TcpClosing : public FakeNetTest {
 protected:
  TcpClosing() { Service.Listen(Port); }

  FakeConnection &Connected() {
    FakeConnection &connection = Net.Dial(Port, Alice);
    Loop.Drain();
    return connection;
  }

  RecordingService Service{Layer};
  SlotArray &Slots = Service.Slots;
};

TEST_F(TcpClosing, DeliversWhatWasSent) {
  FakeConnection &client = Connected();
  Slots[1].SendText("answer");
  Slots[1].Close();
  EXPECT_EQ(Slots[1].State(), SocketState::Closed);
  EXPECT_EQ(TextOf(client.Received), "answer");
  Loop.Drain();
  EXPECT_TRUE(client.HasEnded);
}

TEST_F(TcpClosing, InputThatNobodyReadDoesNotTurnTheAnswerIntoAReset) {
  FakeConnection &client = Connected();
  client.Send("unwanted");
  Slots[1].SendText("answer");
  Slots[1].Close();
  Loop.Drain();
  client.Send("still unwanted");
  client.End();
  Loop.Advance(LingeringCloses::LookMs);
  EXPECT_TRUE(client.IsClosed);
  EXPECT_FALSE(client.WasReset);
  EXPECT_EQ(TextOf(client.Received), "answer");
}

TEST_F(TcpClosing, DeliversWhatThePeerHasNoRoomForYet) {
  FakeConnection &client = Connected();
  client.LeaveRoom(3);
  Slots[1].SendText("answer");
  Slots[1].Close();
  Loop.Drain();
  EXPECT_FALSE(client.HasEnded);
  client.LeaveRoom(100);
  Loop.Drain();
  EXPECT_EQ(TextOf(client.Received), "answer");
  EXPECT_TRUE(client.HasEnded);
}

TEST_F(TcpClosing, EndsAfterAtMostTwoSeconds) {
  FakeConnection &client = Connected();
  Slots[1].Close();
  Loop.Advance(1999);
  EXPECT_FALSE(client.IsClosed);
  Loop.Advance(1);
  EXPECT_TRUE(client.IsClosed);
}

TEST_F(TcpClosing, LingersForAtMost1024DescriptorsAtATime) {
  for (std::uint16_t count = 0; count < 1025; ++count) {
    Net.Dial(Port, At("10.0.0.7", static_cast<std::uint16_t>(2000 + count)));
  }
  Loop.Drain();
  for (std::int16_t slot = 1; slot <= 1025; ++slot) {
    Slots[slot].SendText("answer");
    Slots[slot].Close();
  }
  EXPECT_EQ(Layer.Lingering.Count(), 1024U);
  EXPECT_FALSE(Net.Connections[1023].IsClosed);
  EXPECT_TRUE(Net.Connections[1024].IsClosed);
  EXPECT_EQ(TextOf(Net.Connections[1024].Received), "answer");
}

TEST_F(TcpClosing, RaisesNoEvent) {
  FakeConnection &client = Connected();
  Service.Log.clear();
  Slots[1].SendText("answer");
  Slots[1].Close();
  client.Send("hello");
  client.End();
  Loop.Drain();
  EXPECT_TRUE(Service.Log.empty());
}

TEST_F(TcpClosing, FreesTheSlotForTheNextClientAtOnce) {
  FakeConnection &first = Connected();
  Slots[1].SendText("first answer");
  Slots[1].Close();
  FakeConnection &second = Connected();
  Slots[1].SendText("second answer");
  Loop.Drain();
  EXPECT_EQ(TextOf(first.Received), "first answer");
  EXPECT_EQ(TextOf(second.Received), "second answer");
  EXPECT_EQ(Slots.Highest(), 1);
}

TEST_F(TcpClosing, DropsBytesThatNobodyRead) {
  FakeConnection &client = Connected();
  client.Send("unread");
  Loop.Drain();
  Slots[1].Close();
  Connected();
  ExpectRuntimeError(error_number::WouldBlock, [&] { return Slots[1].GetText(); });
}

TEST_F(TcpClosing, InStates8And9LeavesNothingBehind) {
  for (const bool breaks : {false, true}) {
    FakeConnection &client = Connected();
    if (breaks) {
      client.Break();
    } else {
      client.End();
    }
    Loop.Drain();
    EXPECT_TRUE(client.IsClosed);
    Slots[1].Close();
    EXPECT_EQ(Slots[1].State(), SocketState::Closed);
    EXPECT_EQ(Layer.Lingering.Count(), 0U);
  }
}

TEST_F(TcpClosing, InState8StillDeliversTheRest) {
  FakeConnection &client = Connected();
  client.LeaveRoom(3);
  Slots[1].SendText("answer");
  client.End();
  Loop.Drain();
  EXPECT_EQ(Slots[1].State(), SocketState::Closing);
  Slots[1].Close();
  client.LeaveRoom(100);
  Loop.Drain();
  EXPECT_EQ(TextOf(client.Received), "answer");
  EXPECT_TRUE(client.IsClosed);
}

TEST_F(TcpClosing, OfABrokenConnectionReportsNothingMore) {
  FakeConnection &client = Connected();
  Service.Log.clear();
  Slots[1].SendText("answer");
  client.Break();
  Slots[1].Close();
  Loop.Advance(LingeringCloses::LookMs);
  EXPECT_TRUE(Service.Log.empty());
  EXPECT_TRUE(client.IsClosed);
}

TEST_F(TcpClosing, ASocketThatIsDestroyedDeliversWhatItSent) {
  FakeConnection *client = nullptr;
  {
    RecordingService other(Layer);
    other.Listen(37);
    client = &Net.Dial(37, Bob);
    Loop.Drain();
    other.Slots[1].SendText("answer");
  }
  Loop.Drain();
  EXPECT_EQ(TextOf(client->Received), "answer");
  EXPECT_TRUE(client->HasEnded);
  EXPECT_FALSE(Net.IsListening(37));
}

}  // namespace
}  // namespace cvl
