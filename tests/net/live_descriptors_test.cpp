// What becomes of the server when descriptors run out, and when they come back.

#include <sys/resource.h>
#include <unistd.h>

#include "tests/net/live_test.h"
#include "tests/support/net_namespace.h"

namespace cvl {
namespace {

using Stream = TcpPeer::Stream;
using Lines = std::vector<std::string>;

class LiveDescriptors : public LiveTest {
 protected:
  LiveDescriptors() : Port(Service.Listen()) {}

  /// Serves one client while there is no lack of anything. Each test begins with it: what
  /// comes behind differs in nothing but the descriptors. The undefined-behaviour sanitizer
  /// needs it too, for it takes a descriptor of its own to look at a type for the first time.
  void ServeOne() {
    TcpPeer client(Port);
    ASSERT_TRUE(Until([&] { return Service.Count("accepted 1") == 1; }));
    client.Reset();
    ASSERT_TRUE(Until([&] { return Service.Count("error 1 10054") == 1; }));
    ASSERT_TRUE(ComesToRest());
    Service.Slots[1].Close();
    Service.Log.clear();
    UdpSocket socket(Layer);
    socket.Bind();
    ExpectRuntimeError(error_number::BadProtocolOrState, [&] { socket.Bind(); });
  }

  RecordingService Service{Layer};
  std::int32_t Port;
};

/// The lowest free number, which the kernel gives next.
int NextDescriptor() {
  return OwnedDescriptor(dup(STDERR_FILENO)).Number();
}

rlim_t SoftLimit() {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  return limit.rlim_cur;
}

TEST_F(LiveDescriptors, RunningOutDropsTheNewConnectionAndLaterOnesWork) {
  ServeOne();
  TcpPeer first;
  TcpPeer second;
  {
    const NoMoreDescriptors none;
    first.Connect(Port);
    second.Connect(Port);
    ASSERT_TRUE(Until([&] { return first.Read() != Stream::Open; }));
    ASSERT_TRUE(Until([&] { return second.Read() != Stream::Open; }));
    EXPECT_TRUE(ComesToRest());
    EXPECT_TRUE(Service.Log.empty());
  }
  TcpPeer later(Port);
  ASSERT_TRUE(Until([&] { return Service.Count("accepted 1") == 1; }));
  EXPECT_EQ(later.Read(), Stream::Open);
}

TEST_F(LiveDescriptors, ConnectionsLeave32ToTheRestOfTheProgram) {
  ServeOne();
  std::vector<TcpPeer> clients(3);
  // Under a small limit fewer are left.
  std::vector<OwnedDescriptor> fillers;
  while (NextDescriptor() < 2 * LinuxNetwork::KeptBack) {
    fillers.emplace_back(dup(STDERR_FILENO));
  }
  // One in reserve, one for the listener and one for a connection.
  const NoMoreDescriptors but_some(LinuxNetwork::KeptBack + 3);
  LinuxNetwork network;
  SocketLayer layer(Loop, network, Resolver);
  RecordingService service(layer);
  const std::int32_t port = service.Listen();
  clients[0].Connect(port);
  ASSERT_TRUE(Until([&] { return service.Count("accepted 1") == 1; }));
  clients[1].Connect(port);
  ASSERT_TRUE(Until([&] { return clients[1].Read() != Stream::Open; }));
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(service.Log, Lines{"accepted 1"});
  EXPECT_EQ(clients[0].Read(), Stream::Open);

  // The others can all be had, and one that comes back from a connection is for the next.
  std::vector<OwnedDescriptor> others;
  for (int count = 0; count < LinuxNetwork::KeptBack; ++count) {
    others.emplace_back(dup(STDERR_FILENO));
    ASSERT_GE(others.back().Number(), 0) << count;
  }
  clients[0].Reset();
  ASSERT_TRUE(Until([&] { return service.Count("error 1 10054") == 1; }));
  clients[2].Connect(port);
  ASSERT_TRUE(Until([&] { return service.Count("accepted 2") == 1; }));
  EXPECT_EQ(clients[2].Read(), Stream::Open);
}

TEST_F(LiveDescriptors, UnderASmallLimitConnectionsLeaveHalfOfIt) {
  ServeOne();
  std::vector<TcpPeer> clients(2);
  TcpPeer later;
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  // One in reserve, one for the listener and one for a connection.
  const rlimit small{static_cast<rlim_t>(2 * (NextDescriptor() + 3)), before.rlim_max};
  ASSERT_LT(small.rlim_cur, 2U * LinuxNetwork::KeptBack);
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &small), 0);
  LinuxNetwork network;
  SocketLayer layer(Loop, network, Resolver);
  RecordingService service(layer);
  const std::int32_t port = service.Listen();
  clients[0].Connect(port);
  EXPECT_TRUE(Until([&] { return service.Count("accepted 1") == 1; }));
  clients[1].Connect(port);
  EXPECT_TRUE(Until([&] { return clients[1].Read() != Stream::Open; }));
  EXPECT_EQ(service.Log, Lines{"accepted 1"});

  // A limit that is raised later counts from then on.
  EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
  later.Connect(port);
  EXPECT_TRUE(Until([&] { return service.Count("accepted 2") == 1; }));
}

TEST_F(LiveDescriptors, OpeningFailsWith10024WhenThereIsNone) {
  ServeOne();
  const NoMoreDescriptors none;
  RecordingService other(Layer);
  UdpSocket socket(Layer);
  ExpectRuntimeError(error_number::TooManyDescriptors, [&] { other.Listen(); });
  ExpectRuntimeError(error_number::TooManyDescriptors, [&] { socket.Bind(); });
}

TEST_F(LiveDescriptors, WithoutADescriptorInReserveItWaitsAndDoesNotSpin) {
  ServeOne();
  // Some other thread may have been faster in taking the one that was given up for a moment;
  // here there never was one.
  TcpPeer client;
  const int filler = dup(STDERR_FILENO);
  ASSERT_GE(filler, 0);
  {
    const NoMoreDescriptors none;
    LinuxNetwork poor;
    SocketLayer layer(Loop, poor, Resolver);
    RecordingService service(layer);
    close(filler);
    const std::int32_t port = service.Listen();
    client.Connect(port);
    ASSERT_TRUE(Until([&] { return !IsReady(); }));
    EXPECT_TRUE(ComesToRest());
    EXPECT_TRUE(service.Log.empty());
    EXPECT_EQ(client.Read(), Stream::Open);
  }
}

TEST_F(LiveDescriptors, OneInReserveIsTakenAgainWhenADescriptorComesFree) {
  ServeOne();
  TcpPeer client;
  const int filler = dup(STDERR_FILENO);
  const int another = dup(STDERR_FILENO);
  ASSERT_GE(another, 0);
  const NoMoreDescriptors none;
  LinuxNetwork poor;
  SocketLayer layer(Loop, poor, Resolver);
  RecordingService service(layer);
  UdpSocket datagrams(layer);
  close(filler);
  const std::int32_t port = service.Listen();
  close(another);
  datagrams.Bind();
  client.Connect(port);
  ASSERT_TRUE(Until([&] { return !IsReady(); }));
  EXPECT_EQ(client.Read(), Stream::Open);
  // The descriptor that comes free is kept in reserve, and lets the connection be dropped.
  datagrams.Close();
  EXPECT_TRUE(Until([&] { return client.Read() != Stream::Open; }));
  EXPECT_TRUE(ComesToRest());
  EXPECT_TRUE(service.Log.empty());
}

TEST_F(LiveDescriptors, TheLimitIsRaisedToTheHardLimit) {
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  rlimit lowered = before;
  lowered.rlim_cur = before.rlim_max / 2;
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &lowered), 0);
  RaiseDescriptorLimit();
  EXPECT_EQ(SoftLimit(), before.rlim_max);
  setrlimit(RLIMIT_NOFILE, &before);
}

class LiveHangUps : public LiveTest, public testing::WithParamInterface<RecordingService::Reads> {
 protected:
  /// Lets that many idle connections come, and all of them hang up. The slots stay in state
  /// 8; the descriptors come back.
  void HangUp(std::size_t connections) {
    RecordingService service(Layer, GetParam());
    const std::int32_t port = service.Listen();
    const int open = OpenDescriptors();
    std::vector<TcpPeer> clients;
    clients.reserve(connections);
    while (clients.size() < connections) {
      clients.emplace_back(port);
      // The kernel keeps only so many that nobody has accepted.
      if (clients.size() % 500 == 0) {
        ASSERT_TRUE(Until([&] { return service.Log.size() == clients.size(); }));
      }
    }
    ASSERT_TRUE(Until([&] { return service.Log.size() == connections; }));
    EXPECT_EQ(OpenDescriptors(), open + 2 * static_cast<int>(connections));

    clients.clear();
    ASSERT_TRUE(Until([&] { return service.Log.size() == 2 * connections; }));
    ASSERT_TRUE(Until([&] { return Layer.Lingering.Count() == 0; }));
    EXPECT_EQ(OpenDescriptors(), open);
    EXPECT_TRUE(ComesToRest());
    EXPECT_EQ(static_cast<std::size_t>(service.Slots.Highest()), connections);
    EXPECT_EQ(service.Slots[1].State(), SocketState::Closing);
    EXPECT_EQ(service.Slots[service.Slots.Highest()].State(), SocketState::Closing);
  }
};

INSTANTIATE_TEST_SUITE_P(WithAndWithoutAHandlerForData, LiveHangUps,
                         testing::Values(RecordingService::Reads::Yes, RecordingService::Reads::No),
                         [](const auto &param_info) {
                           return param_info.param == RecordingService::Reads::Yes ? "With"
                                                                                   : "Without";
                         });

TEST_P(LiveHangUps, OfTenThousandIdleConnectionsGiveAllDescriptorsBack) {
  RaiseDescriptorLimit();
  // Both ends of each connection are ours here.
  const std::size_t possible = (SoftLimit() - 200) / 2;
  // What the connections leave behind in the kernel would be in the way of other tests.
  ExpectInNetworkNamespace([&] { HangUp(std::min<std::size_t>(10000, possible)); });
}

}  // namespace
}  // namespace cvl
