#include "net/tcp_socket.h"

#include "tests/net/fake_net_test.h"
#include "tests/net/recording_service.h"

namespace cvl {
namespace {

using Lines = std::vector<std::string>;
using Operation = FakeNetwork::Operation;

constexpr std::uint16_t Port = 37;

class TcpSocketTest : public FakeNetTest {
 protected:
  TcpSocketTest() { Service.Listen(Port); }

  /// A client with its slot, the log emptied.
  FakeConnection &Connected(Endpoint client) {
    FakeConnection &connection = Net.Dial(Port, client);
    Loop.Drain();
    EXPECT_TRUE(connection.IsAccepted);
    Service.Log.clear();
    return connection;
  }

  RecordingService Service{Layer};
  SlotArray &Slots = Service.Slots;
};

// ---- Opening

TEST_F(TcpSocketTest, ListenTakesTheLocalPort) {
  EXPECT_EQ(Slots[0].State(), SocketState::Listening);
  EXPECT_EQ(Slots[0].LocalPort(), Port);
  EXPECT_TRUE(Net.IsListening(Port));
  Slots[0].Close();
  EXPECT_EQ(Slots[0].State(), SocketState::Closed);
  EXPECT_FALSE(Net.IsListening(Port));
}

TEST_F(TcpSocketTest, ListenFailsWith10048WhenThePortIsTaken) {
  RecordingService other(Layer);
  ExpectRuntimeError(error_number::AddressInUse, [&] { other.Listen(Port); });
  EXPECT_EQ(other.Slots[0].State(), SocketState::Closed);
}

TEST_F(TcpSocketTest, BindAndListenOnOnePortFailWith10048BothWays) {
  const TcpEvents events;
  TcpSocket bound(Layer, events);
  bound.SetLocalPort(Port);
  ExpectRuntimeError(error_number::AddressInUse, [&] { bound.Bind(); });
  bound.SetLocalPort(519);
  bound.Bind();
  EXPECT_EQ(bound.State(), SocketState::Open);
  RecordingService other(Layer);
  ExpectRuntimeError(error_number::AddressInUse, [&] { other.Listen(519); });
  bound.Close();
  EXPECT_EQ(other.Listen(519), 519);
}

TEST_F(TcpSocketTest, AListenThatFailsGivesItsDescriptorBack) {
  const std::size_t open = Net.OpenCount();
  RecordingService other(Layer);
  Net.Fail(Operation::Listen, error_number::AddressInUse);
  ExpectRuntimeError(error_number::AddressInUse, [&] { other.Listen(38); });
  EXPECT_EQ(Net.OpenCount(), open);
  EXPECT_EQ(other.Listen(38), 38);
}

TEST_F(TcpSocketTest, OpeningTwiceFailsWith40006) {
  ExpectRuntimeError(error_number::BadProtocolOrState, [&] { Slots[0].Listen(); });
  ExpectRuntimeError(error_number::BadProtocolOrState, [&] { Slots[0].Bind(); });
  ExpectRuntimeError(error_number::BadProtocolOrState, [&] { Slots[0].Connect(); });
  EXPECT_EQ(Slots[0].State(), SocketState::Listening);
}

// ---- Requests

TEST_F(TcpSocketTest, AConnectionThatNoHandlerAcceptsIsDroppedWhenTheHandlerReturns) {
  bool was_closed_inside = true;
  Slots.Events.ConnectionRequest = [&](std::int16_t, RequestId) {
    was_closed_inside = Net.Connections.back().IsClosed;
  };
  FakeConnection &client = Net.Dial(Port, Alice);
  Loop.Drain();
  EXPECT_FALSE(was_closed_inside);
  EXPECT_TRUE(client.IsClosed);
}

TEST_F(TcpSocketTest, AConnectionIsDroppedWhereThereIsNoHandlerAtAll) {
  Slots.Events.ConnectionRequest = nullptr;
  FakeConnection &client = Net.Dial(Port, Alice);
  Loop.Drain();
  EXPECT_TRUE(client.IsClosed);
}

TEST_F(TcpSocketTest, AcceptTakesTheConnectionOver) {
  FakeConnection &client = Net.Dial(Port, Alice);
  Loop.Drain();
  EXPECT_FALSE(client.IsClosed);
  EXPECT_EQ(Slots[1].State(), SocketState::Connected);
  EXPECT_EQ(Service.Log, Lines{"accepted 1"});
}

TEST_F(TcpSocketTest, ListenerAndSlotBothTellTheClientsAddress) {
  std::string listener_told;
  Slots.Events.ConnectionRequest = [&](std::int16_t index, RequestId request) {
    EXPECT_EQ(index, 0);
    listener_told = Slots[0].RemoteHostIP();
    Slots[Slots.FindFree()].Accept(request);
  };
  Net.Dial(Port, Alice);
  Net.Dial(Port, Bob);
  Loop.Drain();
  EXPECT_EQ(listener_told, "10.0.0.2");
  EXPECT_EQ(Slots[1].RemoteHostIP(), "10.0.0.1");
  EXPECT_EQ(Slots[1].RemoteHost(), "10.0.0.1");
  EXPECT_EQ(Slots[1].RemotePort(), Alice.Port);
  EXPECT_EQ(Slots[2].RemoteHostIP(), "10.0.0.2");
}

TEST_F(TcpSocketTest, AcceptOnABusySlotFailsWith40006AndDropsTheConnection) {
  Connected(Alice);
  int failure = 0;
  Slots.Events.ConnectionRequest = [&](std::int16_t, RequestId request) {
    failure = Trap([&] { Slots[1].Accept(request); }).Number;
  };
  FakeConnection &second = Net.Dial(Port, Bob);
  Loop.Drain();
  EXPECT_EQ(failure, error_number::BadProtocolOrState);
  EXPECT_TRUE(second.IsClosed);
  EXPECT_EQ(Slots[1].RemoteHostIP(), "10.0.0.1");
}

TEST_F(TcpSocketTest, AcceptOfAPassedRequestFailsWith10014) {
  RequestId passed = 0;
  Slots.Events.ConnectionRequest = [&](std::int16_t, RequestId request) { passed = request; };
  Net.Dial(Port, Alice);
  Loop.Drain();
  Slots.FindFree();
  ExpectRuntimeError(error_number::InvalidArgument, [&] { Slots[1].Accept(passed); });
  EXPECT_EQ(Slots[1].State(), SocketState::Closed);
}

TEST_F(TcpSocketTest, ManyWaitingConnectionsAreAllTakenThoughNotInOnePass) {
  for (std::uint16_t count = 0; count < 100; ++count) {
    Net.Dial(Port, At("10.0.0.7", static_cast<std::uint16_t>(40000 + count)));
  }
  Loop.RunOnePass();
  EXPECT_GT(Service.Log.size(), 0U);
  EXPECT_LT(Service.Log.size(), 100U);
  Loop.Drain();
  EXPECT_EQ(Service.Log.size(), 100U);
}

TEST_F(TcpSocketTest, AListenerMayCloseItselfAmidItsRequests) {
  Service.OnAccepted = [&](std::int16_t) { Slots[0].Close(); };
  FakeConnection &first = Net.Dial(Port, Alice);
  FakeConnection &second = Net.Dial(Port, Bob);
  Loop.Drain();
  EXPECT_TRUE(first.IsAccepted);
  EXPECT_FALSE(second.IsAccepted);
  EXPECT_EQ(Slots[1].State(), SocketState::Connected);
}

TEST_F(TcpSocketTest, RunningOutOfDescriptorsDropsTheConnectionAndGoesOn) {
  Net.Fail(Operation::Accept, error_number::TooManyDescriptors);
  FakeConnection &dropped = Net.Dial(Port, Alice);
  FakeConnection &taken = Net.Dial(Port, Bob);
  Loop.Drain();
  EXPECT_TRUE(dropped.IsClosed);
  EXPECT_TRUE(taken.IsAccepted);
  EXPECT_EQ(Service.Log, Lines{"accepted 1"});
}

TEST_F(TcpSocketTest, AConnectionThatEndedWhileItWaitedIsPassedOver) {
  Net.Fail(Operation::Accept, error_number::ConnectionAborted);
  FakeConnection &client = Net.Dial(Port, Alice);
  Loop.RunOnePass();
  EXPECT_TRUE(client.IsAccepted);
}

TEST_F(TcpSocketTest, AListenerThatCanNotAcceptAtAllPausesAndDoesNotSpin) {
  Net.Fail(Operation::Accept, error_number::NoBuffers, FakeNetwork::Always);
  FakeConnection &client = Net.Dial(Port, Alice);
  Loop.Drain();
  Net.Mend(Operation::Accept);
  Loop.Drain();
  EXPECT_FALSE(client.IsAccepted);
  Loop.Advance(100);
  EXPECT_TRUE(client.IsAccepted);
}

TEST_F(TcpSocketTest, AListenerThatIsClosedInItsPauseStaysClosed) {
  Net.Fail(Operation::Accept, error_number::NoBuffers, FakeNetwork::Always);
  Net.Dial(Port, Alice);
  Loop.Drain();
  Slots[0].Close();
  Loop.Advance(1000);
  EXPECT_EQ(Loop.WatchCount(), 0U);
}

// ---- Data

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

// ---- Sending

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

// ---- SendComplete

TEST_F(TcpSocketTest, SendCompleteComesInALaterPassThanTheSend) {
  FakeConnection &client = Connected(Alice);
  Service.OnData = [&](std::int16_t slot) {
    static_cast<void>(Slots[slot].GetText());
    Slots[slot].SendText("answer");
  };
  client.Send("hello");
  Loop.RunOnePass();
  EXPECT_EQ(TextOf(client.Received), "answer");
  EXPECT_EQ(Service.Log, Lines{"data 1 5"});
  Loop.RunOnePass();
  EXPECT_EQ(Service.Log, (Lines{"data 1 5", "sent 1"}));
  Loop.Drain();
  EXPECT_EQ(Service.Count("sent 1"), 1);
}

TEST_F(TcpSocketTest, SendCompleteComesForSeveralSendsOfOneHandlerOnce) {
  Service.OnAccepted = [&](std::int16_t slot) {
    Slots[slot].SendText("one");
    Slots[slot].SendText("two");
  };
  Net.Dial(Port, Alice);
  Loop.Drain();
  EXPECT_EQ(Service.Count("sent 1"), 1);
}

TEST_F(TcpSocketTest, SendCompleteDoesNotComeForASlotThatWasClosedMeanwhile) {
  FakeConnection &client = Connected(Alice);
  Service.OnData = [&](std::int16_t slot) { Slots[slot].SendText("answer"); };
  client.Send("hello");
  Loop.RunOnePass();
  EXPECT_EQ(TextOf(client.Received), "answer");
  Slots[1].Close();
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"data 1 5"});
}

TEST_F(TcpSocketTest, SendCompleteOfAClosedSlotDoesNotReachItsNextClient) {
  Connected(Alice);
  Slots[1].SendText("answer");
  Loop.Settle(SettlePoint::EndOfEvent);
  Slots[1].Close();
  Net.Dial(Port, Bob);
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"accepted 1"});
}

TEST_F(TcpSocketTest, SendCompleteIsNotPutOffByAPeerThatGoesOnSending) {
  FakeConnection &client = Connected(Alice);
  Service.OnData = [&](std::int16_t slot) {
    static_cast<void>(Slots[slot].GetText());
    Slots[slot].SendText("answer");
  };
  for (int count = 0; count < 5; ++count) {
    client.Send("hello");
    Loop.RunOnePass();
  }
  EXPECT_GE(Service.Count("sent 1"), 1);
}

TEST_F(TcpSocketTest, SendCompleteDoesNotComeWhenTheConnectionBreaksOverTheRest) {
  FakeConnection &client = Connected(Alice);
  Slots[1].SendText("one");
  Loop.Settle(SettlePoint::EndOfEvent);
  client.LeaveRoom(0);
  Slots[1].SendText("two");
  client.Send("hello");
  Net.Fail(Operation::Receive, error_number::ConnectionReset);
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"error 1 10054"});
}

TEST_F(TcpSocketTest, SendCompleteComesThoughTheConnectionBreaksBehindTheSend) {
  FakeConnection &client = Connected(Alice);
  Slots[1].SendText("answer");
  Loop.Settle(SettlePoint::EndOfEvent);
  client.Break();
  Loop.Drain();
  EXPECT_EQ(Service.Log, (Lines{"error 1 10054", "sent 1"}));
}

TEST_F(TcpSocketTest, SendCompleteOfAnEarlierSendComesThoughALaterOneFails) {
  FakeConnection &client = Connected(Alice);
  Slots[1].SendText("answer");
  Loop.Settle(SettlePoint::EndOfEvent);
  client.Break();
  ExpectRuntimeError(error_number::ConnectionReset, [&] { Slots[1].SendText("more"); });
  Loop.Drain();
  EXPECT_EQ(Service.Log, (Lines{"error 1 10054", "sent 1"}));
}

TEST_F(TcpSocketTest, SendCompleteWaitsForTheLastOfSeveralSends) {
  FakeConnection &client = Connected(Alice);
  Slots[1].SendText("one");
  Loop.Settle(SettlePoint::EndOfEvent);
  client.LeaveRoom(0);
  Slots[1].SendText("two");
  Loop.Drain();
  EXPECT_EQ(Service.Count("sent 1"), 0);
  client.LeaveRoom(100);
  Loop.Drain();
  EXPECT_EQ(Service.Count("sent 1"), 1);
}

TEST_F(TcpSocketTest, SendCompleteDoesNotComeForWhatBrokeOnItsWay) {
  FakeConnection &client = Connected(Alice);
  client.LeaveRoom(3);
  Slots[1].SendText("answer");
  Loop.Drain();
  client.Break();
  Loop.Drain();
  EXPECT_EQ(Service.Log, Lines{"error 1 10054"});
}

// ---- Ends

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

// ---- Services without a handler for data

class TcpSocketWithoutData : public FakeNetTest {
 protected:
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
