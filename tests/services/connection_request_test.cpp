// What the five TCP services have in common when a client asks for a connection.

#include <span>

#include "tests/services/service_bench.h"

namespace cvl {
namespace {

struct Row {
  const char *Name;
  std::uint16_t Port;
  const char *TcpCode;
  SlotArray ServiceSockets::*Slots;
  std::int32_t RequestCounters::*Count;
  std::size_t Box;
  /// How much the counter has risen when the connection stands: the NTP service counts
  /// arrivals of data.
  std::int32_t Counted;
  /// What the client box says of a client that could not be accepted: some services show it
  /// before they accept it.
  const char *ShownWithoutASlot;
};

const Row Rows[] = {
    {"Daytime", 13, "1", &ServiceSockets::TCP13, &RequestCounters::ReqTCP13, panel::Daytime, 1,
     "10.0.0.7"},
    {"Time", 37, "3", &ServiceSockets::TCP37, &RequestCounters::ReqTCP37, panel::Time, 1,
     "10.0.0.7"},
    {"UnixTime", 519, "7", &ServiceSockets::TCP519, &RequestCounters::ReqTCP519, panel::Unix, 1,
     "None"},
    {"Client", 3777, "9", &ServiceSockets::TCP3777, &RequestCounters::ReqTCP3777, panel::Client, 1,
     "10.0.0.7"},
    {"Ntp", 123, "5", &ServiceSockets::TCP123, &RequestCounters::ReqTCP123, panel::Ntp, 0, "None"}};

constexpr std::span RowsThatCount = std::span(Rows).first<4>();

std::string NameOf(const testing::TestParamInfo<Row> &row) {
  return row.param.Name;
}

class ConnectionRequest : public ServiceTest, public testing::WithParamInterface<Row> {
 protected:
  ConnectionRequest() { Listening.LoadServers(GetParam().TcpCode); }

  FakeConnection &Ask() { return Dial(GetParam().Port); }
  std::int32_t Count() const { return State.Requests.*GetParam().Count; }
  SlotArray &Slots() { return Sockets.*GetParam().Slots; }
  const TextBox &Box() const { return Window.CVLRemHost[GetParam().Box]; }

  void ExpectNothingHappened(const FakeConnection &client) {
    EXPECT_TRUE(client.IsClosed);
    EXPECT_EQ(client.Received, Bytes());
    EXPECT_EQ(Slots().Highest(), 0);
    EXPECT_EQ(Count(), 0);
    EXPECT_EQ(Box().Text(), "None");
    EXPECT_EQ(Box().Tip.Text(), "");
    EXPECT_FALSE(IsLit(Received));
    EXPECT_FALSE(IsLit(Tcp));
    EXPECT_EQ(Files.Appends, 0);
  }
};

TEST_P(ConnectionRequest, IsTakenShownAndCounted) {
  ShowWindow();
  FakeConnection &client = Ask();
  EXPECT_TRUE(client.IsAccepted);
  EXPECT_FALSE(client.WasReset);
  EXPECT_EQ(Slots().Highest(), 1);
  EXPECT_EQ(Count(), GetParam().Counted);
  EXPECT_EQ(Box().Text(), "10.0.0.7");
  EXPECT_EQ(Box().Tip.Text(), NoonTip);
  EXPECT_TRUE(IsLit(Received));
  EXPECT_TRUE(IsLit(Tcp));
  EXPECT_FALSE(IsLit(Udp));
}

TEST_P(ConnectionRequest, IsCountedWithoutALampInAWindowThatIsNotOfNormalState) {
  ShowWindow();
  for (const WindowState state : {WindowState::Minimized, WindowState::Maximized}) {
    Window.State = state;
    const std::int32_t before = Count();
    Ask();
    EXPECT_EQ(Count(), before + GetParam().Counted);
    for (const Lamp lamp : {Received, Sent, Udp, Tcp}) {
      EXPECT_FALSE(IsLit(lamp)) << lamp;
    }
  }
}

TEST_P(ConnectionRequest, PassesUnseenBeforeTheFirstSync) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  State.Flags.TimeSynced = false;
  ExpectNothingHappened(Ask());
}

TEST_P(ConnectionRequest, PassesUnseenInAPause) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  State.Flags.ServicePaused = true;
  ExpectNothingHappened(Ask());
}

TEST_P(ConnectionRequest, IsDroppedUncountedWhenEverySlotIsBusy) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  for (int made = 1; made <= INT16_MAX; ++made) {
    TcpSocket &slot = Slots()[Slots().FindFree()];
    if (made == GetParam().Port) {  // it is the listener's
      slot.SetRemoteHost("10.0.0.9");
      slot.Connect();
    } else {
      slot.SetLocalPort(static_cast<std::int16_t>(made));
      slot.Bind();  // a cheap way to keep it busy
    }
  }
  const FakeConnection &client = Ask();
  EXPECT_TRUE(client.IsClosed);
  EXPECT_EQ(client.Received, Bytes());
  EXPECT_EQ(Slots()[0].State(), SocketState::Listening);
  EXPECT_EQ(Count(), 0);
  EXPECT_EQ(Box().Text(), GetParam().ShownWithoutASlot);
  EXPECT_FALSE(IsLit(Received));
  EXPECT_FALSE(IsLit(Tcp));
  EXPECT_EQ(Files.Appends, 0);

  Slots()[300].Close();
  EXPECT_TRUE(Ask().IsAccepted);
  EXPECT_EQ(Count(), GetParam().Counted);
}

TEST_P(ConnectionRequest, ShowsTheClientByItsOwnAddress) {
  Ask();
  Dial(GetParam().Port, Bob);
  EXPECT_EQ(Box().Text(), "10.0.0.8");
}

INSTANTIATE_TEST_SUITE_P(, ConnectionRequest, testing::ValuesIn(Rows), NameOf);

class CountedConnection : public ConnectionRequest {};

TEST_P(CountedConnection, EndsTheProcessWhenTheCounterIsFull) {
  State.Requests.*GetParam().Count = INT32_MAX - 1;
  Ask();
  EXPECT_EQ(Count(), INT32_MAX);
  Net.Dial(GetParam().Port, Bob);
  ExpectProcessEnds(error_number::Overflow, [&] { Loop.Drain(); });
}

INSTANTIATE_TEST_SUITE_P(, CountedConnection, testing::ValuesIn(RowsThatCount), NameOf);

class AcceptOnTest : public ServiceTest {
 protected:
  AcceptOnTest() {
    Sockets.TCP37.Events.ConnectionRequest = [this](std::int16_t, RequestId request) {
      Given = AcceptOn(Sockets.TCP37, Init, request);
    };
    Listening.LoadServers("3");
  }

  std::function<std::int16_t()> Init = [this] { return Sockets.InitTCP37(); };
  std::int16_t Given = -1;
};

TEST_F(AcceptOnTest, GivesTheSlotAndSetsItsLocalPortTo0) {
  Sockets.TCP37.FindFree();
  Sockets.TCP37[1].SetLocalPort(99);
  const FakeConnection &client = Dial(37);
  EXPECT_EQ(Given, 1);
  EXPECT_EQ(Sockets.TCP37[1].LocalPort(), 0);
  EXPECT_EQ(Sockets.TCP37[1].State(), SocketState::Connected);
  EXPECT_FALSE(client.IsClosed);
}

TEST_F(AcceptOnTest, DropsTheConnectionWhenTheSlotIsBusy) {
  Init = [] { return std::int16_t{0}; };  // the listener
  const FakeConnection &client = Dial(37);
  EXPECT_EQ(Given, 0);
  EXPECT_TRUE(client.IsClosed);
  EXPECT_EQ(Sockets.TCP37[0].State(), SocketState::Listening);
}

TEST_F(AcceptOnTest, DropsTheConnectionWhenThereAreNoMoreSlots) {
  Init = []() -> std::int16_t { throw RuntimeError(error_number::Overflow); };
  const FakeConnection &client = Dial(37);
  EXPECT_EQ(Given, 0);
  EXPECT_TRUE(client.IsClosed);
}

class Slots : public ServiceTest {
 protected:
  Slots() { Listening.LoadServers("3"); }

  /// Makes slots 1 to 4 of TCP37 and keeps them busy.
  void KeepFourBusy() {
    for (std::int16_t slot = 1; slot <= 4; ++slot) {
      ASSERT_EQ(Sockets.InitTCP37(), slot);
      Sockets.TCP37[slot].SetLocalPort(static_cast<std::int16_t>(2000 + slot));
      Sockets.TCP37[slot].Bind();
    }
  }
};

TEST_F(Slots, AFifthClientGetsSlotFiveAndTheNextOneTheLowestAgain) {
  KeepFourBusy();
  Dial(37);
  EXPECT_EQ(Sockets.TCP37.Highest(), 5);
  EXPECT_EQ(Sockets.TCP37[5].RemoteHostIP(), "10.0.0.7");
  for (std::int16_t slot = 1; slot <= 4; ++slot) {
    Sockets.TCP37[slot].Close();
  }
  Dial(37, Bob);
  EXPECT_EQ(Sockets.TCP37.Highest(), 5);
  EXPECT_EQ(Sockets.TCP37[1].RemoteHostIP(), "10.0.0.8");
}

TEST_F(Slots, ClientsThatAskAtOnceAreServedOneInsideTheOther) {
  // Each handler lets the loop run, and the next request comes while its slot is still open.
  for (std::uint16_t client = 0; client < 5; ++client) {
    Net.Dial(37, At("10.0.0.7", static_cast<std::uint16_t>(40000 + client)));
  }
  Loop.Drain();
  EXPECT_EQ(Sockets.TCP37.Highest(), 5);
  EXPECT_EQ(State.Requests.ReqTCP37, 5);
  for (const FakeConnection &client : Net.Connections) {
    EXPECT_EQ(client.Received.size(), 4U);
    EXPECT_TRUE(client.HasEnded);
  }
  Dial(37);
  EXPECT_EQ(Sockets.TCP37.Highest(), 5);
}

}  // namespace
}  // namespace cvl
