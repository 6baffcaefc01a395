// Opening sockets on the kernel: which ports are shared, taken, and found free.

#include "tests/net/live_test.h"
#include "tests/support/net_namespace.h"

namespace cvl {
namespace {

using Stream = TcpPeer::Stream;

using LiveOpening = LiveTest;

TEST_F(LiveOpening, ListenersRebindAPortInTimeWaitAndABoundSocketDoesNot) {
  // Where others have left many connections in TIME_WAIT, the kernel keeps no more of them.
  ExpectInNetworkNamespace([&] {
    RecordingService service(Layer);
    const std::int32_t port = service.Listen();
    service.OnAccepted = [&](std::int16_t slot) { service.Slots[slot].Close(); };
    TcpPeer client(port);
    // We end first, so the port is in TIME_WAIT on our side.
    ASSERT_TRUE(Until([&] { return client.Read() == Stream::Ended; }));
    client.Close();
    ASSERT_TRUE(Until([&] { return Layer.Lingering.Count() == 0; }));
    service.Slots[0].Close();

    const TcpEvents events;
    TcpSocket bound(Layer, events);
    bound.SetLocalPort(static_cast<std::int16_t>(port));
    ExpectRuntimeError(error_number::AddressInUse, [&] { bound.Bind(); });
    service.Slots[0].Listen();
    EXPECT_EQ(service.Slots[0].State(), SocketState::Listening);
    EXPECT_EQ(service.Slots[0].LocalPort(), port);
  });
}

TEST_F(LiveOpening, NoListenersPortIsShared) {
  RecordingService service(Layer);
  RecordingService other(Layer);
  const auto port = static_cast<std::int16_t>(service.Listen());
  ExpectRuntimeError(error_number::AddressInUse, [&] { other.Listen(port); });
  EXPECT_EQ(other.Slots[0].State(), SocketState::Closed);
  service.Slots[0].Close();
  EXPECT_EQ(other.Listen(port), port);
}

TEST_F(LiveOpening, NoDatagramPortIsShared) {
  UdpSocket socket(Layer);
  UdpSocket other(Layer);
  socket.Bind();
  other.SetLocalPort(static_cast<std::int16_t>(socket.LocalPort()));
  ExpectRuntimeError(error_number::AddressInUse, [&] { other.Bind(); });
  EXPECT_FALSE(CanBindDatagram(socket.LocalPort()));
  socket.Close();
  other.Bind();
  EXPECT_EQ(other.State(), SocketState::Open);
}

TEST_F(LiveOpening, StreamsAndDatagramsMayHaveTheSamePort) {
  RecordingService service(Layer);
  UdpSocket socket(Layer);
  socket.SetLocalPort(static_cast<std::int16_t>(service.Listen()));
  socket.Bind();
  EXPECT_EQ(socket.State(), SocketState::Open);
}

TEST_F(LiveOpening, ABoundStreamSocketAndAListenerConflictBothWays) {
  const TcpEvents events;
  TcpSocket bound(Layer, events);
  RecordingService service(Layer);
  bound.SetLocalPort(static_cast<std::int16_t>(service.Listen()));
  ExpectRuntimeError(error_number::AddressInUse, [&] { bound.Bind(); });

  bound.SetLocalPort(0);
  bound.Bind();
  EXPECT_EQ(bound.State(), SocketState::Open);
  EXPECT_FALSE(CanBindStream(bound.LocalPort()));
  const auto port = static_cast<std::int16_t>(bound.LocalPort());
  RecordingService other(Layer);
  ExpectRuntimeError(error_number::AddressInUse, [&] { other.Listen(port); });
  bound.Close();
  EXPECT_EQ(other.Listen(port), port);
}

TEST_F(LiveOpening, Port0TakesAFreeOneOfAtMost32767) {
  std::vector<std::unique_ptr<UdpSocket>> sockets;
  for (int count = 0; count < 100; ++count) {
    sockets.push_back(std::make_unique<UdpSocket>(Layer));
    sockets.back()->Bind();
    EXPECT_LE(sockets.back()->LocalPort(), 32767);
    EXPECT_GE(sockets.back()->LocalPort(), 1024);
    EXPECT_FALSE(CanBindDatagram(sockets.back()->LocalPort()));
  }
}

TEST_F(LiveOpening, ASendOnASocketThatWasNeverOpenedBindsItAndWhatComesBackArrives) {
  UdpPeer upstream;
  UdpSocket socket(Layer);
  std::string arrived;
  socket.OnDataArrival = [&](std::int32_t) { arrived = socket.GetText(); };
  socket.SetRemoteHost("127.0.0.1");
  socket.SetRemotePort(upstream.Local().Port);
  socket.SendText("request");
  std::optional<UdpPeer::Message> request;
  ASSERT_TRUE(Until([&] { return (request = upstream.Read()).has_value(); }));
  EXPECT_LE(socket.LocalPort(), 32767);
  EXPECT_EQ(request->Sender.Port, socket.LocalPort());
  upstream.Send(request->Sender, "answer");
  ASSERT_TRUE(Until([&] { return !arrived.empty(); }));
  EXPECT_EQ(arrived, "answer");
}

TEST_F(LiveOpening, ASendOnASocketWhosePortIsTakenBindsAnotherAndWhatComesBackArrives) {
  UdpSocket holder(Layer);
  holder.Bind();
  UdpPeer upstream;
  UdpSocket socket(Layer);
  std::string arrived;
  socket.OnDataArrival = [&](std::int32_t) { arrived = socket.GetText(); };
  socket.SetLocalPort(static_cast<std::int16_t>(holder.LocalPort()));
  ExpectRuntimeError(error_number::AddressInUse, [&] { socket.Bind(); });
  socket.SetRemoteHost("127.0.0.1");
  socket.SetRemotePort(upstream.Local().Port);
  socket.SendText("request");
  std::optional<UdpPeer::Message> request;
  ASSERT_TRUE(Until([&] { return (request = upstream.Read()).has_value(); }));
  upstream.Send(request->Sender, "answer");
  ASSERT_TRUE(Until([&] { return !arrived.empty(); }));
}

TEST_F(LiveOpening, AfterShutNothingOpens) {
  RecordingService service(Layer);
  service.Listen();
  service.Slots[0].Close();
  const int open = OpenDescriptors();
  Layer.Shut();
  UdpSocket socket(Layer);
  socket.SetRemoteHost("127.0.0.1");
  ExpectRuntimeError(error_number::NetworkDown, [&] { service.Slots[0].Listen(); });
  ExpectRuntimeError(error_number::NetworkDown, [&] { socket.Bind(); });
  ExpectRuntimeError(error_number::NetworkDown, [&] { socket.SendText("hello"); });
  EXPECT_EQ(OpenDescriptors(), open);
}

// Connections of our own.

class LiveConnect : public LiveTest {
 protected:
  LiveConnect() {
    Events.Connect = [this](std::int16_t) { Log.push_back("connect"); };
    Events.DataArrival = [this](std::int16_t, std::int32_t) { Log.push_back(Client.GetText()); };
    Events.Error = [this](std::int16_t, const Failure &failure) {
      Log.push_back("error " + std::to_string(failure.Number));
    };
  }

  void Connect(const std::string &host, std::int32_t port) {
    Client.SetRemoteHost(host);
    Client.SetRemotePort(static_cast<std::uint16_t>(port));
    Client.Connect();
  }

  TcpEvents Events;
  TcpSocket Client{Layer, Events};
  std::vector<std::string> Log;
};

TEST_F(LiveConnect, ReachesAServiceAndGetsItsAnswer) {
  RecordingService service(Layer);
  service.OnAccepted = [&](std::int16_t slot) {
    service.Slots[slot].SendText("answer");
    service.Slots[slot].Close();
  };
  Connect("127.0.0.1", service.Listen());
  ASSERT_TRUE(Until([&] { return Log.size() == 2; }));
  EXPECT_EQ(Log, (std::vector<std::string>{"connect", "answer"}));
}

TEST_F(LiveConnect, WhereNobodyListensEndsInTheErrorEventWith10061) {
  RecordingService service(Layer);
  const std::int32_t port = service.Listen();
  service.Slots[0].Close();
  const int open = OpenDescriptors();
  Connect("127.0.0.1", port);
  ASSERT_TRUE(Until([&] { return !Log.empty(); }));
  EXPECT_EQ(Log, std::vector<std::string>{"error 10061"});
  EXPECT_EQ(Client.State(), SocketState::Error);
  EXPECT_EQ(OpenDescriptors(), open);
  EXPECT_TRUE(ComesToRest());
}

TEST_F(LiveConnect, ToANameWithoutAnAddressEndsInTheErrorEventWith11001) {
  Connect("gone.example", 80);
  EXPECT_TRUE(ComesToRest());
  EXPECT_TRUE(Log.empty());
  EXPECT_EQ(Resolver.Tell("gone.example", std::nullopt), 1);
  EXPECT_EQ(Log, std::vector<std::string>{"error 11001"});
  EXPECT_EQ(Client.State(), SocketState::Error);
}

}  // namespace
}  // namespace cvl
