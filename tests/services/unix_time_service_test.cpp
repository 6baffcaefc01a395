#include "services/unix_time_service.h"

#include "tests/services/service_bench.h"

namespace cvl {
namespace {

const Bytes UnixNoon = {0x3D, 0x9C, 0x31, 0x40};

class UnixTimeOverTcp : public ServiceTest {
 protected:
  UnixTimeOverTcp() { Listening.LoadServers("7"); }

  SocketState SlotState() { return Sockets.TCP519[1].State(); }
};

TEST_F(UnixTimeOverTcp, SendsFourBytesAndCloses) {
  const FakeConnection &client = Dial(519);
  EXPECT_EQ(client.Received, UnixNoon);
  EXPECT_TRUE(client.HasEnded);
  EXPECT_EQ(SlotState(), SocketState::Closed);
}

TEST_F(UnixTimeOverTcp, SendsUtc) {
  StandInLosAngeles(DateTime::Of(2002, 10, 3, 5, 0, 0), 0);
  EXPECT_EQ(Dial(519).Received, UnixNoon);
}

TEST_F(UnixTimeOverTcp, CountsFromTheEpochThatIsSet) {
  State.Dates.UnixEpoch = DateTime::Of(2002, 10, 3, 11, 59, 59);
  EXPECT_EQ(Dial(519).Received, (Bytes{0, 0, 0, 1}));
}

TEST_F(UnixTimeOverTcp, LogsBehindTheClose) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  SocketState state = SocketState::Connected;
  bool was_lit = true;
  Files.OnAppend = [&] {
    state = SlotState();
    was_lit = IsLit(Sent);
  };
  Dial(519);
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("4 12 0 519 UnixTime TCP - ")});
  EXPECT_EQ(state, SocketState::Closed);
  EXPECT_FALSE(was_lit);
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(UnixTimeOverTcp, LogsItsOwnClientAlsoWhenAnotherCameMeanwhile) {
  State.Flags.EnableLogging = true;
  Net.Dial(519, Alice);
  Net.Dial(519, Bob);
  Loop.Drain();
  // The second was served inside the first one's pass, and its line was written first.
  ASSERT_EQ(LogLines().size(), 2U);
  EXPECT_NE(LogLines()[0].find(" 10.0.0.8 "), std::string::npos);
  EXPECT_NE(LogLines()[1].find(" 10.0.0.7 "), std::string::npos);
}

TEST_F(UnixTimeOverTcp, ClosesTheSlotWithoutATraceWhenTheSendFails) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Net.Dial(519, Alice).Break();
  Loop.Drain();
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_EQ(Files.Appends, 0);
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
  EXPECT_EQ(State.Requests.ReqTCP519, 1);
}

TEST_F(UnixTimeOverTcp, ClosesASlotByNoEventOfItsPeers) {
  Sockets.TCP519.Events.ConnectionRequest = [&](std::int16_t, RequestId request) {
    AcceptOn(
        Sockets.TCP519, [&] { return Sockets.InitTCP519(); }, request);
  };
  Dial(519).End();
  Loop.Drain();
  EXPECT_EQ(SlotState(), SocketState::Closing);
  Dial(519).Break();
  Loop.Drain();
  EXPECT_EQ(Sockets.TCP519[2].State(), SocketState::Error);
}

TEST_F(UnixTimeOverTcp, SendsNothingBeforeTheFirstSync) {
  State.Flags.TimeSynced = false;
  const std::int16_t slot = Sockets.InitTCP519();
  UnixTime.SendUnixTime(slot, 0x0A000007);
  EXPECT_EQ(State.Requests.ReqTCP519, 0);
  EXPECT_EQ(Net.OpenCount(), 1U);
}

TEST_F(UnixTimeOverTcp, SendsZeroesFrom19January2038On) {
  Clock.StandAtUtc(DateTime::Of(2038, 1, 19, 3, 14, 7));
  EXPECT_EQ(Dial(519).Received, (Bytes{0x7F, 0xFF, 0xFF, 0xFF}));
  Clock.StandAtUtc(DateTime::Of(2038, 1, 19, 3, 14, 8));
  EXPECT_EQ(Dial(519).Received, (Bytes{0, 0, 0, 0}));
  EXPECT_EQ(SlotState(), SocketState::Closed);
}

TEST_F(UnixTimeOverTcp, SendsANegativeNumberBefore1970) {
  Clock.StandAtUtc(DateTime::Of(1969, 12, 31, 23, 59, 59));
  EXPECT_EQ(Dial(519).Received, (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
}

class UnixTimeOverUdp : public ServiceTest {};

TEST_F(UnixTimeOverUdp, HearsOfNoDatagram) {
  Listening.LoadServers("6");
  EXPECT_FALSE(Net.Arrive(519, Alice, "any"));
  EXPECT_EQ(Loop.WatchCount(), 0U);
}

TEST_F(UnixTimeOverUdp, CountsWhatItCouldNotRead) {
  ShowWindow();
  Sockets.UDP519Events.DataArrival(0, 4);
  EXPECT_EQ(State.Requests.ReqUDP519, 1);
  EXPECT_TRUE(IsLit(Udp));
  EXPECT_FALSE(IsLit(Received));
  State.Flags.ServicePaused = true;
  Sockets.UDP519Events.DataArrival(0, 4);
  EXPECT_EQ(State.Requests.ReqUDP519, 1);
}

/// What the sleeping half would do if its socket had a peer.
class WokenUnixTime : public UnixTimeOverUdp {
 protected:
  WokenUnixTime() {
    Listening.LoadServers("7");
    Sockets.UDP519.SetRemoteHost("10.0.0.9");
    Sockets.UDP519.SetRemotePort(1519);
    Sockets.UDP519.Connect();
    Net.Connections[0].Establish();
    Loop.Drain();
  }

  FakeConnection &Peer() { return Net.Connections[0]; }
};

TEST_F(WokenUnixTime, AnswersStaysOpenAndLogsThePortOfTheListener) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Sockets.UDP519.SetRemoteHost("elsewhere");
  Peer().Send("any");
  Loop.Drain();
  EXPECT_EQ(Peer().Received, UnixNoon);
  EXPECT_EQ(Sockets.UDP519.State(), SocketState::Connected);
  EXPECT_EQ(Sockets.UDP519.RemoteHost(), "10.0.0.9");
  EXPECT_EQ(State.Requests.ReqUDP519, 1);
  EXPECT_EQ(Window.CVLRemHost[panel::Unix].Text(), "10.0.0.9");
  EXPECT_EQ(Window.CVLRemHost[panel::Unix].Tip.Text(), NoonTip);
  ASSERT_EQ(LogLines().size(), 1U);
  EXPECT_NE(LogLines()[0].find(" 4 12 0 519 UnixTime UDP - "), std::string::npos);
  EXPECT_TRUE(IsLit(Udp));
  EXPECT_TRUE(IsLit(Received));
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(WokenUnixTime, IsSilentBeforeTheFirstSync) {
  State.Flags.TimeSynced = false;
  Peer().Send("any");
  Loop.Drain();
  EXPECT_EQ(Peer().Received, Bytes());
  EXPECT_EQ(State.Requests.ReqUDP519, 1);
}

TEST_F(WokenUnixTime, LeavesNoTraceOfAFailedSend) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Sockets.UDP519.Close();
  UnixTime.SendUnixTime(0, 0x0A000009);
  EXPECT_EQ(Files.Appends, 0);
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
}

}  // namespace
}  // namespace cvl
