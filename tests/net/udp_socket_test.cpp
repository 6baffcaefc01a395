// What comes and goes on a datagram socket. Its answers are in udp_answers_test.cpp.

#include "tests/net/udp_socket_test.h"

namespace cvl {
namespace {

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

}  // namespace
}  // namespace cvl
