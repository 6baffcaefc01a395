// When SendComplete comes, and when it does not.

#include "tests/net/tcp_socket_test.h"

namespace cvl {
namespace {

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

}  // namespace
}  // namespace cvl
