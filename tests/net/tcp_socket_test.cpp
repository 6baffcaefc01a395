// What comes and goes on a connection. Its ends are in tcp_ends_test.cpp, and what Close does
// in tcp_closing_test.cpp.

#include "tests/net/tcp_socket_test.h"

namespace cvl {
namespace {

TEST_F(TcpSocketTest, BytesThatWaitTogetherAreOneArrival) {
  FakeConnection &client = Connected(Alice);
  client.Send("forty-eight ");
  client.Send("bytes");
  Service.OnData = [&](std::int16_t slot) {
    EXPECT_EQ(Slots[slot].GetText(), "forty-eight bytes");
  };
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"data 1 17"});
}

TEST_F(TcpSocketTest, BytesComeBeforeTheCloseThatFollowsThem) {
  FakeConnection &client = Connected(Alice);
  client.Send("hello");
  client.End();
  Loop.Drain();
  EXPECT_EQ(Service.Log, (Lines{"data 1 5", "close 1"}));
}

TEST_F(TcpSocketTest, BytesAndTheEndOfTheStreamInOneGoAreAnswered) {
  FakeConnection &client = Connected(Alice);
  Service.OnData = [&](std::int16_t slot) {
    static_cast<void>(Slots[slot].GetText());
    Slots[slot].SendText("answer");
  };
  client.Send(std::string(48, 'x'));
  client.End();
  Loop.Drain();
  EXPECT_EQ(TextOf(client.Received), "answer");
  EXPECT_FALSE(client.WasReset);
}

TEST_F(TcpSocketTest, BytesThatAHandlerLeavesAreToldAgainWithTheNext) {
  FakeConnection &client = Connected(Alice);
  client.Send("one");
  Loop.Drain();
  client.Send("two");
  Loop.Drain();
  EXPECT_EQ(Service.Log, (Lines{"data 1 3", "data 1 6"}));
  EXPECT_EQ(Slots[1].GetText(), "onetwo");
}

TEST_F(TcpSocketTest, GetDataTakesAsMuchAsItsBufferHolds) {
  FakeConnection &client = Connected(Alice);
  client.Send("hello");
  Loop.Drain();
  std::array<std::uint8_t, 3> buffer{};
  EXPECT_EQ(Slots[1].GetData(buffer), 3U);
  EXPECT_EQ(TextOf(buffer), "hel");
  EXPECT_EQ(Slots[1].GetData({}), 0U);
  EXPECT_EQ(Slots[1].GetData(buffer), 2U);
  ExpectRuntimeError(error_number::WouldBlock, [&] { return Slots[1].GetData(buffer); });
  ExpectRuntimeError(error_number::WouldBlock, [&] { return Slots[1].GetText(); });
}

TEST_F(TcpSocketTest, BytesThatNobodyReadsHoldUpTheConnection) {
  FakeConnection &client = Connected(Alice);
  client.Send(std::string(300000, 'x'));
  Loop.Drain();
  const std::size_t held = Slots[1].GetText().size();
  EXPECT_GE(held, 65536U);
  EXPECT_LT(held, 200000U);
}

TEST_F(TcpSocketTest, ReadingLetsAConnectionThatWasHeldUpGoOn) {
  FakeConnection &client = Connected(Alice);
  client.Send(std::string(300000, 'x'));
  client.End();
  std::vector<std::uint8_t> buffer(70000);
  std::size_t total = 0;
  for (int round = 0; total < 300000; ++round) {
    Loop.Drain();
    const Failure failure = Trap(
        [&] { total += round % 2 == 0 ? Slots[1].GetData(buffer) : Slots[1].GetText().size(); });
    ASSERT_EQ(failure.Number, 0) << "nothing more came behind " << total;
  }
  EXPECT_EQ(total, 300000U);
  Loop.Drain();
  EXPECT_EQ(Service.Log.back(), "close 1");
}

TEST_F(TcpSocketTest, WhatOneHandlerSendsLeavesInOnePiece) {
  FakeConnection &client = Net.Dial(Port, Alice);
  Service.OnAccepted = [&](std::int16_t slot) {
    Slots[slot].SendText("one ");
    Slots[slot].SendText("two ");
    Slots[slot].SendText("three");
    EXPECT_TRUE(client.Pieces.empty());
  };
  Loop.Drain();
  EXPECT_EQ(client.Pieces, std::vector<Bytes>{BytesOf("one two three")});
}

TEST_F(TcpSocketTest, WhatWasSentLeavesBeforeANestedPass) {
  FakeConnection &client = Net.Dial(Port, Alice);
  Service.OnAccepted = [&](std::int16_t slot) {
    Slots[slot].SendText("one");
    Loop.RunOnePass();
    EXPECT_EQ(TextOf(client.Received), "one");
    Slots[slot].SendText("two");
  };
  Loop.Drain();
  EXPECT_EQ(client.Pieces, (std::vector<Bytes>{BytesOf("one"), BytesOf("two")}));
}

TEST_F(TcpSocketTest, AConnectionThatItsHandlerClosesIsNeverWatchedForItself) {
  Slots.Events.SendComplete = nullptr;
  Service.OnAccepted = [&](std::int16_t slot) {
    Slots[slot].SendText("answer");
    Loop.RunOnePass();
    Slots[slot].Close();
  };
  FakeConnection &client = Net.Dial(Port, Alice);
  Loop.Calls.clear();
  Loop.Drain();
  EXPECT_EQ(TextOf(client.Received), "answer");
  EXPECT_TRUE(client.HasEnded);
  EXPECT_TRUE(Loop.Calls.empty());
}

TEST_F(TcpSocketTest, WhatWasSentBeforeANestedPassLeavesWithTheEndOfTheConnection) {
  Service.OnAccepted = [&](std::int16_t slot) {
    Slots[slot].SendText("answer");
    Loop.RunOnePass();
    EXPECT_TRUE(Net.Connections.front().IsHeldBack);
    Slots[slot].Close();
    EXPECT_FALSE(Net.Connections.front().IsHeldBack);
  };
  FakeConnection &client = Net.Dial(Port, Alice);
  Loop.Drain();
  EXPECT_EQ(client.Pieces, std::vector<Bytes>{BytesOf("answer")});
}

TEST_F(TcpSocketTest, WhatWasSentBeforeANestedPassLeavesBehindItsEventWhenNothingFollows) {
  Service.OnAccepted = [&](std::int16_t slot) {
    Slots[slot].SendText("answer");
    Loop.RunOnePass();
  };
  FakeConnection &client = Net.Dial(Port, Alice);
  Loop.Drain();
  EXPECT_EQ(TextOf(client.Received), "answer");
  EXPECT_FALSE(client.IsHeldBack);
}

TEST_F(TcpSocketTest, AConnectionThatItsHandlerKeepsThroughANestedPassIsWatchedBehindIt) {
  Service.OnAccepted = [&](std::int16_t) { Loop.RunOnePass(); };
  FakeConnection &client = Net.Dial(Port, Alice);
  Loop.Drain();
  client.Send("hello");
  Loop.Drain();
  EXPECT_EQ(Service.Log, (Lines{"accepted 1", "data 1 5"}));
}

TEST_F(TcpSocketTest, SendingWithoutAConnectionFailsWith40006) {
  ExpectRuntimeError(error_number::BadProtocolOrState, [&] { Slots[0].SendText("hello"); });
  FakeConnection &client = Connected(Alice);
  Slots[1].SendText("hello");
  client.End();
  Loop.Drain();
  EXPECT_EQ(Slots[1].State(), SocketState::Closing);
  ExpectRuntimeError(error_number::BadProtocolOrState, [&] { Slots[1].SendText("hello"); });
  Slots[1].Close();
  ExpectRuntimeError(error_number::BadProtocolOrState, [&] { Slots[1].SendText("hello"); });
}

TEST_F(TcpSocketTest, WhatThePeerHasNoRoomForIsSentWhenItHas) {
  FakeConnection &client = Connected(Alice);
  client.LeaveRoom(3);
  Slots[1].SendText("answer");
  Loop.Drain();
  EXPECT_EQ(TextOf(client.Received), "ans");
  EXPECT_TRUE(Service.Log.empty());
  client.LeaveRoom(100);
  Loop.Drain();
  EXPECT_EQ(TextOf(client.Received), "answer");
  EXPECT_EQ(Service.Log, Lines{"sent 1"});
}

TEST_F(TcpSocketTest, APeerThatDoesNotReadItsAnswersIsReadNoMore) {
  FakeConnection &client = Connected(Alice);
  Service.OnData = [&](std::int16_t slot) {
    static_cast<void>(Slots[slot].GetText());
    Slots[slot].SendText(std::string(40000, 'x'));
  };
  client.LeaveRoom(0);
  for (int count = 0; count < 5; ++count) {
    client.Send("again");
    Loop.Drain();
  }
  EXPECT_EQ(Service.Count("data 1 5"), 2);
  client.LeaveRoom(1000000);
  Loop.Drain();
  EXPECT_EQ(client.Received.size(), 3 * 40000U);  // what had gathered was one arrival
}

}  // namespace
}  // namespace cvl
