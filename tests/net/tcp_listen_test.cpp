// How a listener opens, and what becomes of those that ask for a connection.

#include "tests/net/tcp_socket_test.h"

namespace cvl {
namespace {

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

TEST_F(TcpSocketTest, AConnectionThatTheLoopRefusesToWatchIsDropped) {
  Loop.RefusesWatches = error_number::NoBuffers;
  FakeConnection &refused = Net.Dial(Port, Alice);
  Loop.Drain();
  EXPECT_TRUE(refused.HasEnded || refused.IsClosed);
  EXPECT_EQ(Slots[1].State(), SocketState::Closed);
  Loop.Advance(LingeringCloses::LookMs);
  EXPECT_TRUE(refused.IsClosed);

  Loop.RefusesWatches = 0;
  FakeConnection &later = Net.Dial(Port, Bob);
  Loop.Drain();
  EXPECT_FALSE(later.IsClosed);
  EXPECT_EQ(Service.Log, (Lines{"accepted 1", "accepted 1"}));
}

TEST_F(TcpSocketTest, AListenerWhosePauseEndsWithoutAWatchPausesAgain) {
  Net.Fail(Operation::Accept, error_number::NoBuffers, FakeNetwork::Always);
  FakeConnection &client = Net.Dial(Port, Alice);
  Loop.Drain();
  Net.Mend(Operation::Accept);
  Loop.RefusesWatches = error_number::NoBuffers;
  Loop.Advance(100);
  EXPECT_FALSE(client.IsAccepted);
  Loop.RefusesWatches = 0;
  Loop.Advance(100);
  EXPECT_TRUE(client.IsAccepted);
}

}  // namespace
}  // namespace cvl
