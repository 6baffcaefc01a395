// Connections of our own making; tcp_socket_test.cpp has the rest.

#include "net/tcp_socket.h"
#include "tests/net/fake_net_test.h"

namespace cvl {
namespace {

using Lines = std::vector<std::string>;
using Operation = FakeNetwork::Operation;

class TcpConnect : public FakeNetTest {
 protected:
  TcpConnect() {
    Events.Connect = [this](std::int16_t) { Log.push_back("connect"); };
    Events.DataArrival = [this](std::int16_t, std::int32_t) { Log.push_back(Client.GetText()); };
    Events.Close = [this](std::int16_t) { Log.push_back("close"); };
    Events.Error = [this](std::int16_t, const Failure &failure) {
      Log.push_back("error " + std::to_string(failure.Number) + " " + failure.Description);
    };
  }

  void Connect(const std::string &host, std::uint16_t port = 80) {
    Client.SetRemoteHost(host);
    Client.SetRemotePort(port);
    Client.Connect();
  }

  TcpEvents Events;
  TcpSocket Client{Layer, Events};
  Lines Log;
};

TEST_F(TcpConnect, GoesToANumericAddressWithoutALookup) {
  Connect("10.0.0.9");
  EXPECT_EQ(Client.State(), SocketState::Connecting);
  EXPECT_TRUE(Resolver.Asked.empty());
  ASSERT_EQ(Net.Connections.size(), 1U);
  EXPECT_EQ(Net.Connections[0].Peer, At("10.0.0.9", 80));
  Loop.Drain();
  EXPECT_TRUE(Log.empty());
  Net.Connections[0].Establish();
  Loop.Drain();
  EXPECT_EQ(Log, Lines{"connect"});
  EXPECT_EQ(Client.State(), SocketState::Connected);
  EXPECT_EQ(Client.RemoteHostIP(), "10.0.0.9");
}

TEST_F(TcpConnect, LooksANameUpItself) {
  Connect("www.example");
  EXPECT_EQ(Client.State(), SocketState::ResolvingHost);
  EXPECT_TRUE(Net.Connections.empty());
  Resolver.Tell("www.example", 0x0A000009);
  EXPECT_EQ(Client.State(), SocketState::Connecting);
  ASSERT_EQ(Net.Connections.size(), 1U);
  EXPECT_EQ(Net.Connections[0].Peer, At("10.0.0.9", 80));
  EXPECT_EQ(Client.RemoteHost(), "www.example");
}

TEST_F(TcpConnect, TakesAFreshAnswerAtOnce) {
  Layer.Names.LookUp("www.example", [](std::optional<Ipv4Address>) {});
  Resolver.Tell("www.example", 0x0A000009);
  Connect("www.example");
  EXPECT_EQ(Client.State(), SocketState::Connecting);
  EXPECT_EQ(Resolver.Asked.size(), 1U);
}

TEST_F(TcpConnect, ToANameWithoutAnAddressEndsInTheErrorEventWith11001) {
  Connect("gone.example");
  EXPECT_TRUE(Log.empty());
  Resolver.Tell("gone.example", std::nullopt);
  EXPECT_EQ(Log, Lines{"error 11001 Host not found"});
  EXPECT_EQ(Client.State(), SocketState::Error);
}

TEST_F(TcpConnect, ThatIsRefusedEndsInTheErrorEventWith10061) {
  Connect("10.0.0.9");
  Net.Connections[0].Refuse();
  Loop.Drain();
  EXPECT_EQ(Log, Lines{"error 10061 Connection refused"});
  EXPECT_EQ(Client.State(), SocketState::Error);
  EXPECT_EQ(Net.OpenCount(), 0U);
}

TEST_F(TcpConnect, ThatFailsAtOnceEndsInTheErrorEventNotInTheCall) {
  Net.Fail(Operation::Connect, error_number::NetworkUnreachable);
  Connect("10.0.0.9");
  EXPECT_TRUE(Log.empty());
  Loop.Drain();
  EXPECT_EQ(Log, Lines{"error 10051 The network can't be reached"});
  EXPECT_EQ(Client.State(), SocketState::Error);
}

TEST_F(TcpConnect, CloseDropsALookup) {
  Connect("www.example");
  Client.Close();
  EXPECT_EQ(Client.State(), SocketState::Closed);
  Resolver.Tell("www.example", 0x0A000009);
  Loop.Drain();
  EXPECT_TRUE(Net.Connections.empty());
  EXPECT_TRUE(Log.empty());
}

TEST_F(TcpConnect, CloseDropsAConnectionUnderWay) {
  Connect("10.0.0.9");
  Client.Close();
  EXPECT_TRUE(Net.Connections[0].IsClosed);
  Net.Connections[0].Establish();
  Loop.Drain();
  EXPECT_TRUE(Log.empty());
}

TEST_F(TcpConnect, CloseDropsAFailureThatWasNotToldYet) {
  Net.Fail(Operation::Connect, error_number::NetworkUnreachable);
  Connect("10.0.0.9");
  Client.Close();
  Loop.Drain();
  EXPECT_TRUE(Log.empty());
  EXPECT_EQ(Client.State(), SocketState::Closed);
}

TEST_F(TcpConnect, MayBeBegunAnewInItsOwnErrorEvent) {
  Events.Error = [this](std::int16_t, const Failure &) {
    if (Net.Connections.size() > 1) return;
    Client.Close();
    Connect("10.0.0.10");
  };
  Connect("10.0.0.9");
  Net.Connections[0].Refuse();
  Loop.Drain();
  ASSERT_EQ(Net.Connections.size(), 2U);
  Net.Connections[1].Establish();
  Loop.Drain();
  EXPECT_EQ(Log, Lines{"connect"});
}

TEST_F(TcpConnect, CarriesDataBothWays) {
  Connect("10.0.0.9");
  FakeConnection &server = Net.Connections[0];
  server.Establish();
  Loop.Drain();
  Client.SendText("request");
  server.Send("answer");
  server.End();
  Loop.Drain();
  EXPECT_EQ(TextOf(server.Received), "request");
  EXPECT_EQ(Log, (Lines{"connect", "answer", "close"}));
}

TEST_F(TcpConnect, OpensNothingWhenTheLayerWasShutDuringTheLookup) {
  Connect("www.example");
  Layer.Shut();
  Resolver.Tell("www.example", 0x0A000009);
  Loop.Drain();
  EXPECT_TRUE(Net.Connections.empty());
  EXPECT_EQ(Client.State(), SocketState::Error);
  EXPECT_EQ(Log, Lines{"error 10050 The network is down"});
}

TEST_F(TcpConnect, FailsAsAnEventWhereTheLoopRefusesToWatchTheConnection) {
  Loop.RefusesWatches = error_number::NoBuffers;
  Connect("10.0.0.9");
  EXPECT_EQ(Log, Lines{});
  Loop.Drain();
  EXPECT_EQ(Log, Lines{"error 10055 No buffer space"});
  EXPECT_EQ(Client.State(), SocketState::Error);
  EXPECT_TRUE(Net.Connections.at(0).IsClosed);
}

}  // namespace
}  // namespace cvl
