#include "net/udp_socket.h"

#include "tests/net/fake_net_test.h"

namespace cvl {
namespace {

using Operation = FakeNetwork::Operation;

constexpr Ipv4Address Here = 0x7F000001;
constexpr Ipv4Address AlsoHere = 0x7F000002;

class UdpSocketTest : public FakeNetTest {
 protected:
  UdpSocketTest() {
    Socket.OnDataArrival = [this](std::int32_t bytes) {
      Sizes.push_back(bytes);
      if (OnData) {
        OnData();
      } else {
        Texts.push_back(Socket.GetText());
      }
    };
  }

  void Bind(std::int16_t port = 123) {
    Socket.SetLocalPort(port);
    Socket.Bind();
  }

  /// Sends TEXT to HOST on the port that the socket stands at.
  void SendTo(Endpoint to, const std::string &text) {
    Socket.SetRemoteHost(AddressText(to.Address));
    Socket.SetRemotePort(to.Port);
    Socket.SendText(text);
  }

  UdpSocket Socket{Layer};
  std::vector<std::int32_t> Sizes;
  std::vector<std::string> Texts;
  /// What the handler does in place of reading.
  std::function<void()> OnData;
};

// ---- Opening and closing

TEST_F(UdpSocketTest, BindTakesTheLocalPort) {
  Bind(123);
  EXPECT_EQ(Socket.State(), SocketState::Open);
  EXPECT_TRUE(Net.IsDatagramOpen(123));
  Socket.Close();
  EXPECT_EQ(Socket.State(), SocketState::Closed);
  EXPECT_FALSE(Net.IsDatagramOpen(123));
  EXPECT_EQ(Loop.WatchCount(), 0U);
}

TEST_F(UdpSocketTest, BindFailsWith10048WhenThePortIsTaken) {
  Net.TakenPorts = {123};
  ExpectRuntimeError(error_number::AddressInUse, [&] { Bind(123); });
  EXPECT_EQ(Socket.State(), SocketState::Closed);
}

TEST_F(UdpSocketTest, BindFailsWith40006WhenItIsOpen) {
  Bind();
  ExpectRuntimeError(error_number::BadProtocolOrState, [&] { Socket.Bind(); });
  EXPECT_EQ(Socket.State(), SocketState::Open);
}

// ---- Arrivals

TEST_F(UdpSocketTest, ADatagramRaisesDataArrivalWithItsLength) {
  Bind();
  Net.Arrive(123, Alice, "hello");
  Loop.Drain();
  EXPECT_EQ(Sizes, std::vector<std::int32_t>{5});
  EXPECT_EQ(Texts, std::vector<std::string>{"hello"});
}

TEST_F(UdpSocketTest, ADatagramThatNoHandlerReadsIsDropped) {
  Bind();
  OnData = [] {};
  Net.Arrive(123, Alice, "unread");
  Loop.Drain();
  OnData = nullptr;
  Net.Arrive(123, Alice, "read");
  Loop.Drain();
  EXPECT_EQ(Sizes, (std::vector<std::int32_t>{6, 4}));
  EXPECT_EQ(Texts, std::vector<std::string>{"read"});
}

TEST_F(UdpSocketTest, ADatagramOf0BytesRaisesDataArrivalWith0) {
  Bind();
  Net.Arrive(123, Alice, "");
  Loop.Drain();
  EXPECT_EQ(Sizes, std::vector<std::int32_t>{0});
  EXPECT_EQ(Texts, std::vector<std::string>{""});
}

TEST_F(UdpSocketTest, DatagramsOfABatchAreHandledEachByItselfAndInOrder) {
  Bind();
  std::vector<std::string> peers;
  OnData = [&] {
    Texts.push_back(Socket.GetText());
    peers.push_back(Socket.RemoteHostIP());
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Bob, "two");
  Net.Arrive(123, Alice, "three");
  Loop.RunOnePass();
  EXPECT_EQ(Texts, (std::vector<std::string>{"one", "two", "three"}));
  EXPECT_EQ(peers, (std::vector<std::string>{"10.0.0.1", "10.0.0.2", "10.0.0.1"}));
}

TEST_F(UdpSocketTest, MoreThanABatchIsHandedOutInLaterPasses) {
  Bind();
  for (std::size_t count = 0; count < DatagramBatch::Most + 1; ++count) {
    Net.Arrive(123, Alice, "hello");
  }
  Loop.RunOnePass();
  EXPECT_EQ(Sizes.size(), DatagramBatch::Most);
  Loop.RunOnePass();
  EXPECT_EQ(Sizes.size(), DatagramBatch::Most + 1);
}

TEST_F(UdpSocketTest, AShorterBufferCutsTheDatagram) {
  Bind();
  std::array<std::uint8_t, 3> buffer{};
  std::size_t length = 0;
  OnData = [&] { length = Socket.GetData(buffer); };
  Net.Arrive(123, Alice, "hello");
  Loop.Drain();
  EXPECT_EQ(length, 3U);
  EXPECT_EQ(TextOf(buffer), "hel");
}

TEST_F(UdpSocketTest, ALongerBufferTakesTheDatagramAlone) {
  Bind();
  std::array<std::uint8_t, 8> buffer{};
  std::size_t length = 0;
  OnData = [&] { length = Socket.GetData(buffer); };
  Net.Arrive(123, Alice, "hello");
  Loop.Drain();
  EXPECT_EQ(length, 5U);
}

TEST_F(UdpSocketTest, ADatagramIsReadOnce) {
  Bind();
  int failure = 0;
  OnData = [&] {
    std::array<std::uint8_t, 2> buffer{};
    EXPECT_EQ(Socket.GetData(buffer), 2U);
    failure = Trap([&] { static_cast<void>(Socket.GetText()); }).Number;
  };
  Net.Arrive(123, Alice, "hello");
  Loop.Drain();
  EXPECT_EQ(failure, error_number::WouldBlock);
}

TEST_F(UdpSocketTest, OutsideOfItsHandlerThereIsNothingToRead) {
  Bind();
  OnData = [] {};
  Net.Arrive(123, Alice, "hello");
  Loop.Drain();
  ExpectRuntimeError(error_number::WouldBlock, [&] { return Socket.GetText(); });
}

TEST_F(UdpSocketTest, AFailureToReceiveIsPassedOver) {
  Bind();
  Net.Fail(Operation::ReceiveDatagrams, error_number::ConnectionReset);
  Net.Arrive(123, Alice, "hello");
  Loop.Drain();
  EXPECT_EQ(Texts, std::vector<std::string>{"hello"});
}

TEST_F(UdpSocketTest, WithoutAHandlerDatagramsPassUnseen) {
  Bind();
  Socket.OnDataArrival = nullptr;
  Net.Arrive(123, Alice, "hello");
  Loop.Drain();
  EXPECT_EQ(Socket.RemoteHostIP(), "10.0.0.1");
}

// ---- Passes inside handlers

TEST_F(UdpSocketTest, ANestedPassGoesOnWithTheBatchInOrder) {
  Bind();
  std::vector<std::string> story;
  OnData = [&] {
    const std::string text = Socket.GetText();
    story.push_back(text + " begins");
    if (text == "one") Loop.RunOnePass();
    story.push_back(text + " ends");
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Alice, "two");
  Net.Arrive(123, Alice, "three");
  Loop.Drain();
  EXPECT_EQ(story, (std::vector<std::string>{"one begins", "two begins", "two ends", "three begins",
                                             "three ends", "one ends"}));
}

TEST_F(UdpSocketTest, DatagramsThatComeDuringANestedPassKeepTheOrder) {
  Bind();
  OnData = [&] {
    Texts.push_back(Socket.GetText());
    if (Texts.size() == 1) {
      Net.Arrive(123, Alice, "three");
      Loop.RunOnePass();
      Loop.RunOnePass();
    }
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Alice, "two");
  Loop.Drain();
  EXPECT_EQ(Texts, (std::vector<std::string>{"one", "two", "three"}));
}

TEST_F(UdpSocketTest, TheDatagramAtHandIsStillThereAfterANestedPass) {
  Bind();
  OnData = [&] {
    if (Sizes.size() == 1) Loop.RunOnePass();
    Texts.push_back(Socket.GetText());
  };
  Net.Arrive(123, Alice, "outer");
  Net.Arrive(123, Bob, "inner");
  Loop.Drain();
  EXPECT_EQ(Texts, (std::vector<std::string>{"inner", "outer"}));
}

TEST_F(UdpSocketTest, TheDatagramAtHandIsNotOverwrittenByOneThatComesInANestedPass) {
  Bind();
  OnData = [&] {
    if (Sizes.size() == 1) {
      Net.Arrive(123, Bob, "inner");
      Loop.RunOnePass();
    }
    Texts.push_back(Socket.GetText());
  };
  Net.Arrive(123, Alice, "outer");
  Loop.Drain();
  EXPECT_EQ(Texts, (std::vector<std::string>{"outer", "inner"}));
}

TEST_F(UdpSocketTest, AReadDatagramStaysReadAfterANestedPass) {
  Bind();
  int failure = 0;
  OnData = [&] {
    if (Sizes.size() > 1) return;
    static_cast<void>(Socket.GetText());
    Loop.RunOnePass();
    failure = Trap([&] { static_cast<void>(Socket.GetText()); }).Number;
  };
  Net.Arrive(123, Alice, "outer");
  Net.Arrive(123, Bob, "inner");
  Loop.Drain();
  EXPECT_EQ(failure, error_number::WouldBlock);
}

TEST_F(UdpSocketTest, AHandlerMayCloseItsSocket) {
  Bind();
  OnData = [&] { Socket.Close(); };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Alice, "two");
  Loop.Drain();
  EXPECT_EQ(Sizes.size(), 1U);
  EXPECT_EQ(Net.OpenCount(), 0U);
}

TEST_F(UdpSocketTest, AHandlerMayOpenItsSocketAnewAndTheBatchIsGone) {
  Bind(123);
  OnData = [&] {
    Texts.push_back(Socket.GetText());
    if (Texts.size() > 1) return;
    Socket.Close();
    Bind(124);
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Alice, "two");
  Loop.Drain();
  Net.Arrive(124, Alice, "three");
  Loop.Drain();
  EXPECT_EQ(Texts, (std::vector<std::string>{"one", "three"}));
}

TEST_F(UdpSocketTest, ADatagramDoesNotOutliveItsSocketsOpening) {
  Bind(123);
  int failure = 0;
  OnData = [&] {
    if (Sizes.size() == 1) {
      Loop.RunOnePass();
      failure = Trap([&] { Texts.push_back(Socket.GetText()); }).Number;
    } else {
      Socket.Close();
      Bind(124);
      Net.Arrive(124, Bob, "three");
      Loop.RunOnePass();
    }
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Bob, "two");
  Loop.RunOnePass();
  EXPECT_EQ(failure, error_number::WouldBlock);
  EXPECT_TRUE(Texts.empty());
}

TEST_F(UdpSocketTest, NothingIsHandedOutAfterQuit) {
  Bind();
  OnData = [&] { Loop.Quit(); };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Alice, "two");
  Loop.Drain();
  EXPECT_EQ(Sizes.size(), 1U);
}

// ---- Sending

TEST_F(UdpSocketTest, AnAnswerLeavesFromTheAddressThatTheRequestWasSentTo) {
  Bind();
  OnData = [&] {
    Socket.SetRemoteHost(Socket.RemoteHostIP());
    Socket.SendText("answer");
  };
  Net.Arrive(123, Alice, "request", Here);
  Net.Arrive(123, Alice, "request", AlsoHere);
  Loop.Drain();
  ASSERT_EQ(Net.Sent.size(), 2U);
  EXPECT_EQ(Net.Sent[0].From, Here);
  EXPECT_EQ(Net.Sent[1].From, AlsoHere);
  EXPECT_EQ(Net.Sent[1].To, Alice);
  EXPECT_EQ(Net.Sent[1].Port, 123);
}

TEST_F(UdpSocketTest, AnAnswerBehindANestedPassLeavesFromThatAddressToo) {
  Bind();
  OnData = [&] {
    if (Sizes.size() > 1) return;
    Loop.RunOnePass();
    SendTo(Alice, "answer");
  };
  Net.Arrive(123, Alice, "request", AlsoHere);
  Net.Arrive(123, Bob, "request", Here);
  Loop.Drain();
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(Net.Sent[0].From, AlsoHere);
}

TEST_F(UdpSocketTest, ARequestOfOurOwnLeavesAsTheRoutingTableSays) {
  Bind();
  const Endpoint upstream = At("10.0.0.9", 123);
  OnData = [&] { SendTo(upstream, "request of ours"); };
  Net.Arrive(123, Alice, "request", AlsoHere);
  Loop.Drain();
  SendTo(Alice, "behind the handler");
  ASSERT_EQ(Net.Sent.size(), 2U);
  EXPECT_EQ(Net.Sent[0].To, upstream);
  EXPECT_EQ(Net.Sent[0].From, 0U);
  EXPECT_EQ(Net.Sent[1].To, Alice);
  EXPECT_EQ(Net.Sent[1].From, 0U);
}

TEST_F(UdpSocketTest, AnotherPortOfTheSameAddressGetsNoAnswersAddress) {
  Bind();
  OnData = [&] { SendTo({Alice.Address, 123}, "request of ours"); };
  Net.Arrive(123, Alice, "request", AlsoHere);
  Loop.Drain();
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(Net.Sent[0].From, 0U);
}

TEST_F(UdpSocketTest, TheSendersPortIsThePortOfTheNextSend) {
  Bind();
  Socket.SetRemoteHost("10.0.0.9");
  Net.Arrive(123, Alice, "request");
  Loop.Drain();
  EXPECT_EQ(Socket.RemotePort(), Alice.Port);
  EXPECT_EQ(Socket.RemoteHost(), "10.0.0.9");
  Socket.SendText("answer");
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(Net.Sent[0].To, At("10.0.0.9", Alice.Port));
}

TEST_F(UdpSocketTest, ASendThatFailsRaisesItsNumber) {
  Bind();
  Net.Fail(Operation::SendTo, error_number::NetworkUnreachable);
  ExpectRuntimeError(error_number::NetworkUnreachable, [&] { SendTo(Alice, "hello"); });
  SendTo(Alice, "hello");
  EXPECT_EQ(Net.Sent.size(), 1U);
}

TEST_F(UdpSocketTest, ASendToANameWithoutAFreshAnswerFailsWith11001) {
  Bind();
  Socket.SetRemoteHost("time.example");
  Socket.SetRemotePort(123);
  ExpectRuntimeError(error_number::HostNotFound, [&] { Socket.SendText("hello"); });
  Layer.Names.LookUp("time.example", [](std::optional<Ipv4Address>) {});
  Resolver.Tell("time.example", Alice.Address);
  Socket.SendText("hello");
  Loop.Advance(NameCache::FreshMs);
  ExpectRuntimeError(error_number::HostNotFound, [&] { Socket.SendText("hello"); });
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(Net.Sent[0].To, (Endpoint{Alice.Address, 123}));
  EXPECT_EQ(Resolver.Asked.size(), 1U);
}

TEST_F(UdpSocketTest, ASendOnASocketThatWasNeverOpenedTakesAFreePort) {
  SendTo(Alice, "hello");
  EXPECT_EQ(Socket.State(), SocketState::Open);
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(Net.Sent[0].Port, Socket.LocalPort());
  EXPECT_GE(Socket.LocalPort(), 1024);
  Net.Arrive(Net.Sent[0].Port, Alice, "answer");
  Loop.Drain();
  EXPECT_EQ(Texts, std::vector<std::string>{"answer"});
}

TEST_F(UdpSocketTest, ASendTakesAFreePortWhereTheLocalPortCouldNotBeHad) {
  Net.TakenPorts = {123};
  ExpectRuntimeError(error_number::AddressInUse, [&] { Bind(123); });
  SendTo(Alice, "hello");
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_NE(Net.Sent[0].Port, 123);
  Net.Arrive(Net.Sent[0].Port, Alice, "answer");
  Loop.Drain();
  EXPECT_EQ(Texts, std::vector<std::string>{"answer"});
}

// ---- Answers that leave together

class UdpSocketAnswers : public UdpSocketTest {
 protected:
  UdpSocketAnswers() {
    Bind();
    OnData = [this] { Answer(Socket.GetText()); };
  }

  void Answer(const std::string &text) {
    Socket.SetRemoteHost(Socket.RemoteHostIP());
    Socket.SendAnswer(BytesOf(text));
  }

  /// What was sent, in order.
  std::vector<std::string> SentTexts() const {
    std::vector<std::string> texts;
    for (const FakeNetwork::SentDatagram &sent : Net.Sent) {
      texts.push_back(TextOf(sent.Data));
    }
    return texts;
  }
};

TEST_F(UdpSocketAnswers, LeaveWhenTheWholeBatchHasBeenHandled) {
  std::size_t sent_before_the_last = 99;
  OnData = [&] {
    sent_before_the_last = Net.Sent.size();
    Answer(Socket.GetText());
  };
  Net.Arrive(123, Alice, "one", Here);
  Net.Arrive(123, Bob, "two", AlsoHere);
  Loop.RunOnePass();
  EXPECT_EQ(sent_before_the_last, 0U);
  EXPECT_EQ(SentTexts(), (std::vector<std::string>{"one", "two"}));
  EXPECT_EQ(Net.Sent[0].To, Alice);
  EXPECT_EQ(Net.Sent[0].From, Here);
  EXPECT_EQ(Net.Sent[1].To, Bob);
  EXPECT_EQ(Net.Sent[1].From, AlsoHere);
}

TEST_F(UdpSocketAnswers, AreAllSentThoughThereAreMoreThanTheQueueHolds) {
  std::vector<std::string> expected;
  for (std::size_t count = 0; count < DatagramBatch::Most; ++count) {
    expected.push_back("number " + std::to_string(count));
    Net.Arrive(123, Alice, expected.back());
  }
  ASSERT_GT(expected.size(), AnswerQueue::Most);
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), expected);
}

TEST_F(UdpSocketAnswers, KeepTheirOrderWithALongOne) {
  const std::string longest(AnswerQueue::LongestAnswer, 'x');
  const std::string longer(AnswerQueue::LongestAnswer + 1, 'x');
  for (const std::string &text : {std::string("one"), longest, longer, std::string("four")}) {
    Net.Arrive(123, Alice, text);
  }
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), (std::vector<std::string>{"one", longest, longer, "four"}));
}

TEST_F(UdpSocketAnswers, LeaveBeforeASendThatComesLater) {
  OnData = [&] {
    Answer("answer");
    SendTo(At("10.0.0.9", 123), "request of ours");
  };
  Net.Arrive(123, Alice, "hello");
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), (std::vector<std::string>{"answer", "request of ours"}));
}

TEST_F(UdpSocketAnswers, LeaveBeforeAPassInsideALaterHandler) {
  std::size_t sent_behind_the_pass = 0;
  OnData = [&] {
    if (Sizes.size() == 1) {
      Answer("answer");
    } else {
      Loop.RunOnePass();
      sent_behind_the_pass = Net.Sent.size();
    }
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Bob, "two");
  Loop.RunOnePass();
  EXPECT_EQ(sent_behind_the_pass, 1U);
  EXPECT_EQ(SentTexts(), std::vector<std::string>{"answer"});
}

TEST_F(UdpSocketAnswers, LeaveBeforeAPassInsideTheirOwnHandler) {
  std::size_t sent_behind_the_pass = 0;
  OnData = [&] {
    Answer("answer");
    Loop.RunOnePass();
    sent_behind_the_pass = Net.Sent.size();
  };
  Net.Arrive(123, Alice, "hello");
  Loop.RunOnePass();
  EXPECT_EQ(sent_behind_the_pass, 1U);
  EXPECT_EQ(Net.Sent.size(), 1U);
}

TEST_F(UdpSocketAnswers, ThatFailAreLostAndTheOthersLeave) {
  Net.Fail(Operation::SendTo, error_number::NetworkUnreachable);
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Alice, "two");
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), std::vector<std::string>{"two"});
}

TEST_F(UdpSocketAnswers, ToSomebodyElseAreSendsLikeAnyOther) {
  int failure = 0;
  OnData = [&] {
    Socket.SetRemoteHost("10.0.0.9");
    Net.Fail(Operation::SendTo, error_number::NetworkUnreachable);
    failure = Trap([&] { Socket.SendAnswer(BytesOf("lost")); }).Number;
    Socket.SendAnswer(BytesOf("answer"));
    EXPECT_EQ(Net.Sent.size(), 1U);
  };
  Net.Arrive(123, Alice, "hello", Here);
  Loop.RunOnePass();
  EXPECT_EQ(failure, error_number::NetworkUnreachable);
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(Net.Sent[0].From, 0U);
}

TEST_F(UdpSocketAnswers, LeaveBeforeTheSocketIsClosed) {
  OnData = [&] {
    Answer("answer");
    Socket.Close();
  };
  Net.Arrive(123, Alice, "hello");
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), std::vector<std::string>{"answer"});
  EXPECT_EQ(Net.OpenCount(), 0U);
}

TEST_F(UdpSocketAnswers, LeaveThoughTheirHandlerEndsTheRun) {
  OnData = [&] {
    Answer("answer");
    Loop.Quit();
  };
  Net.Arrive(123, Alice, "hello");
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), std::vector<std::string>{"answer"});
}

TEST_F(UdpSocketAnswers, ToANameWithoutAFreshAnswerFailWith11001) {
  int failure = 0;
  OnData = [&] {
    Socket.SetRemoteHost("time.example");
    failure = Trap([&] { Socket.SendAnswer(BytesOf("lost")); }).Number;
  };
  Net.Arrive(123, Alice, "hello");
  Loop.RunOnePass();
  EXPECT_EQ(failure, error_number::HostNotFound);
}

// ---- The loop guard

class UdpSocketLoopGuard : public UdpSocketTest {
 protected:
  /// How many of that many datagrams are seen.
  std::size_t SeenOf(int datagrams, Endpoint sender, std::uint16_t port) {
    Sizes.clear();
    for (int count = 0; count < datagrams; ++count) {
      Net.Arrive(port, sender, "hello");
    }
    Loop.Drain();
    return Sizes.size();
  }
};

TEST_F(UdpSocketLoopGuard, OfALowPortFiftyInASecondGetThrough) {
  Bind(3777);
  const Endpoint server = At("10.0.0.1", 123);
  EXPECT_EQ(SeenOf(50, server, 3777), 50U);
  EXPECT_EQ(SeenOf(1, server, 3777), 0U);
  Loop.Advance(1000);
  EXPECT_EQ(SeenOf(51, server, 3777), 50U);
}

TEST_F(UdpSocketLoopGuard, OfTheSocketsOwnNumberFiftyInASecondGetThrough) {
  Bind(3777);
  EXPECT_EQ(SeenOf(51, At("10.0.0.1", 3777), 3777), 50U);
  EXPECT_EQ(SeenOf(51, At("10.0.0.1", 3778), 3777), 51U);
}

TEST_F(UdpSocketLoopGuard, OtherPortsAreNeverLimited) {
  Bind(123);
  EXPECT_EQ(SeenOf(51, At("10.0.0.1", 1023), 123), 50U);
  EXPECT_EQ(SeenOf(5000, At("10.0.0.1", 1024), 123), 5000U);
}

TEST_F(UdpSocketLoopGuard, EachSocketCountsForItself) {
  Bind(123);
  UdpSocket other(Layer);
  int seen = 0;
  other.OnDataArrival = [&](std::int32_t) { ++seen; };
  other.SetLocalPort(37);
  other.Bind();
  EXPECT_EQ(SeenOf(51, At("10.0.0.1", 123), 123), 50U);
  Net.Arrive(37, At("10.0.0.1", 123), "hello");
  Loop.Drain();
  EXPECT_EQ(seen, 1);
}

TEST_F(UdpSocketLoopGuard, WhatIsDroppedIsDroppedUnseen) {
  Bind(123);
  const Endpoint server = At("10.0.0.1", 123);
  EXPECT_EQ(SeenOf(50, server, 123), 50U);
  Net.Arrive(123, Bob, "hello");
  Loop.Drain();
  EXPECT_EQ(SeenOf(1, server, 123), 0U);
  EXPECT_EQ(Socket.RemoteHostIP(), "10.0.0.2");
  EXPECT_EQ(Socket.RemotePort(), Bob.Port);
}

}  // namespace
}  // namespace cvl
