// The controls of the main window, connected to the routines that they belong to, and the
// road of a request through the whole server.

#include "tests/host/host_bench.h"

namespace cvl {
namespace {

using testing::SizeIs;

class ControlsTest : public HostTest {};

TEST_F(ControlsTest, ClickingAServerAsksItWithTheNextSync) {
  Store("Settings", "NO:1:Second/s:NA:36");
  Load();
  Server->Window.Servers.Choose(2);
  System.Loop.Advance(1000);
  ASSERT_THAT(System.Net.Sent, SizeIs(2));
  EXPECT_EQ(System.Net.Sent[1].To, At("10.0.0.2", 123));
}

TEST_F(ControlsTest, TheFirstItemIsSelectedAndNotChosen) {
  Load();
  EXPECT_EQ(Server->Window.Servers.Selected(), 1);
}

TEST_F(ControlsTest, EnterInTheNumberChangesTheScheduleAndTypingDoesNot) {
  Store("Settings", "NO:2:Second/s:NA:36");
  Load();
  Server->Window.SyncN.SetText("100");
  System.Loop.Advance(2000);
  EXPECT_THAT(System.Net.Sent, SizeIs(2));

  Server->Window.SyncN.Press('x');
  System.Loop.Advance(2000);
  EXPECT_THAT(System.Net.Sent, SizeIs(3));

  Server->Window.SyncN.Press(EnterKey);
  System.Loop.Advance(99000);
  EXPECT_THAT(System.Net.Sent, SizeIs(3));
  System.Loop.Advance(1000);
  EXPECT_THAT(System.Net.Sent, SizeIs(4));
}

TEST_F(ControlsTest, ChoosingAUnitChangesTheSchedule) {
  Store("Settings", "NO:2:Second/s:NA:36");
  Load();
  Server->Window.SyncIntC.Choose(1);
  EXPECT_EQ(Server->Window.SyncIntC.Text(), "Minute/s");
  System.Loop.Advance(119000);
  EXPECT_THAT(System.Net.Sent, SizeIs(1));
  System.Loop.Advance(1000);
  EXPECT_THAT(System.Net.Sent, SizeIs(2));
}

TEST_F(ControlsTest, TheNumberIsFilteredAsItIsTyped) {
  Load();
  Server->Window.SyncN.SetText("12x");
  EXPECT_EQ(Server->Window.SyncN.Text(), "12");
}

TEST_F(ControlsTest, AnIntervalBeyond32BitsEndsTheProgram) {
  Load();
  Server->Window.SyncIntC.SetText("Day/s");
  Server->Window.SyncN.SetText("99999");
  ExpectProcessEnds(6,
                    [&] { System.Loop.Dispatch([&] { Server->Window.SyncN.Press(EnterKey); }); });
}

TEST_F(ControlsTest, ANodeOfTheTreePutsItsPanelUp) {
  Load("-config");
  Server->Window.CVL_TV.OnNodeClick(4);
  EXPECT_TRUE(Server->Window.proto_f[2].Visible);
  EXPECT_FALSE(Server->Window.proto_f[0].Visible);
  EXPECT_EQ(Server->Window.svrStatlbl.Caption,
            "Server is: Enabled\r\nTCP: ON - UDP: ON\r\nRequests: 0/t - 0/u");
}

// The road of a request.

TEST_F(ControlsTest, AReplyOpensTheServicesAndARequestIsAnswered) {
  Load("-config");
  System.Net.Arrive(123, At("10.0.0.7", 4000), Bytes(48, 0));
  System.Loop.Drain();
  EXPECT_THAT(System.Net.Sent, SizeIs(1)) << "the gate is shut";
  EXPECT_EQ(Server->State.Requests.ReqUDP123, 1);

  Synchronise();
  EXPECT_EQ(Server->State.Requests.ReqUDP123, 1) << "the reply is no request";
  EXPECT_THAT(System.Clock.SystemTimesSet, SizeIs(1));
  EXPECT_EQ(Server->Window.LED[3].Image, LampLitImage) << "but it lights its lamp";

  System.Net.Arrive(123, At("10.0.0.7", 4000), Bytes(48, 0));
  System.Loop.Drain();
  ASSERT_THAT(System.Net.Sent, SizeIs(2));
  EXPECT_EQ(System.Net.Sent[1].To, At("10.0.0.7", 4000));
  EXPECT_THAT(System.Net.Sent[1].Data, SizeIs(48));
  EXPECT_EQ(Server->State.Requests.ReqUDP123, 2);
  EXPECT_TRUE(Server->State.Status.StatusText.Text().starts_with("Server Status: "));

  System.Loop.Advance(1000);
  EXPECT_EQ(Server->Window.Status.Caption, Server->State.Status.StatusText.Text());
  EXPECT_EQ(Server->Window.LED[3].Image, LampDarkImage);
}

TEST_F(ControlsTest, AReplyWhenNoneIsWaitedForIsAnsweredAsARequest) {
  Load();
  Synchronise();
  NtpPacket late{};
  std::copy(Server->State.Sync.SyncStamp.begin(), Server->State.Sync.SyncStamp.end(),
            late.begin() + 24);
  System.Net.Arrive(123, At("10.0.0.1", 123), late);
  System.Loop.Drain();
  ASSERT_THAT(System.Net.Sent, SizeIs(2));
  EXPECT_EQ(System.Net.Sent[1].To, At("10.0.0.1", 123));
  EXPECT_THAT(System.Clock.SystemTimesSet, SizeIs(1));
}

TEST_F(ControlsTest, AClientThatEchoesThreeBytesSetsTheClock) {
  Load();
  const NtpTimestamp &stamp = Server->State.Sync.SyncStamp;
  NtpPacket packet{};
  packet[24] = stamp[0];
  packet[27] = stamp[3];
  packet[31] = stamp[7];
  System.Net.Arrive(123, At("10.0.0.7", 4000), packet);
  System.Loop.Drain();
  EXPECT_TRUE(Server->State.Flags.TimeSynced);
  EXPECT_THAT(System.Clock.SystemTimesSet, SizeIs(1));
}

TEST_F(ControlsTest, ADatagramOfOneByteMakesTheNextTickAskAnew) {
  Load();
  System.Net.Arrive(123, At("10.0.0.1", 123), "x");
  System.Loop.Drain();
  EXPECT_THAT(System.Net.Sent, SizeIs(1));
  EXPECT_THAT(System.Files.Contents, SizeIs(1)) << "it isn't logged";
  System.Loop.Advance(1000);
  EXPECT_THAT(System.Net.Sent, SizeIs(2));
}

TEST_F(ControlsTest, TheZoneIsReadAnewAtEveryTenthTick) {
  Load();
  System.Clock.Zone.Bias = 300;
  System.Loop.Advance(9000);
  EXPECT_EQ(Server->State.Zone.TZBias, 0);
  System.Loop.Advance(1000);
  EXPECT_EQ(Server->State.Zone.TZBias, 300);
}

TEST_F(ControlsTest, TheScheduleAsksAgainAfterAWholeInterval) {
  Load();
  Synchronise();
  System.Loop.Advance(3539000);
  EXPECT_THAT(System.Net.Sent, SizeIs(1));
  System.Loop.Advance(1000);
  EXPECT_THAT(System.Net.Sent, SizeIs(2));
}

TEST_F(ControlsTest, TheServiceManagerHearsWhatTheServiceIsAt) {
  Load();
  System.Loop.Advance(1000);
  ASSERT_THAT(System.Service.Statuses, SizeIs(1));
  Synchronise();
  System.Loop.Advance(1000);
  EXPECT_EQ(System.Service.Statuses.back(),
            "Synchronised 10/3/2002 12:00:00 PM; 0 requests (0 UDP, 0 TCP)");
}

}  // namespace
}  // namespace cvl
