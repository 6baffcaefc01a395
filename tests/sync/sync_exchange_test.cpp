// SyncTimeNow, where the server is given by its address.

#include "sync/sync_exchange.h"

#include "tests/support/posted_work.h"
#include "tests/sync/sync_bench.h"

namespace cvl {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class SyncExchangeTest : public SyncTest {
 protected:
  /// Makes the next send fail.
  void FailSend() { Net.Fail(Operation::SendTo, error_number::NetworkUnreachable); }
};

TEST_F(SyncExchangeTest, AnEmptyListEndsItAtOnce) {
  ShowWindow();
  Window.RandomCheck.SetValue(Tick::On);
  Servers.CurrentServer = "10.0.0.1";
  Exchange.CloseTcpTime = [] { ADD_FAILURE() << "tcpTime was closed"; };

  Exchange.SyncTimeNow();

  EXPECT_THAT(Net.Sent, IsEmpty());
  EXPECT_FALSE(State.Sync.SyncWaiting);
  EXPECT_EQ(Servers.CurrentServer, "10.0.0.1");
  EXPECT_EQ(Tip(), std::string(64, ' '));
  EXPECT_EQ(Window.LED[0].Image, LampDarkImage);
}

TEST_F(SyncExchangeTest, TheRequestIs48BytesWithTheStampOfTheRun) {
  OpenUdp123();
  AddServers(1);

  Exchange.SyncTimeNow();

  Bytes request(48, 0);
  request[0] = 0x1B;
  std::copy(State.Sync.SyncStamp.begin(), State.Sync.SyncStamp.end(), request.begin() + 40);
  ASSERT_THAT(Net.Sent, SizeIs(1));
  EXPECT_EQ(Net.Sent[0].Data, request);
  EXPECT_EQ(Net.Sent[0].To, At("10.0.0.1", 123));
  EXPECT_EQ(Net.Sent[0].Port, 123);
  EXPECT_EQ(Net.Sent[0].From, 0U);
}

TEST_F(SyncExchangeTest, EveryRequestOfARunIsTheSame) {
  OpenUdp123();
  AddServers(1);
  Exchange.SyncTimeNow();
  Clock.Pass(123456);
  Exchange.SyncTimeNow();

  ASSERT_THAT(Net.Sent, SizeIs(2));
  EXPECT_EQ(Net.Sent[0].Data, Net.Sent[1].Data);
}

TEST_F(SyncExchangeTest, ThePortIsAlways123) {
  OpenUdp123();
  AddServers(1);
  Udp123.SetRemotePort(4000);
  Exchange.SyncTimeNow();
  EXPECT_EQ(Net.Sent.at(0).To.Port, 123);
}

TEST_F(SyncExchangeTest, ASocketThatWasNeverOpenedTakesAFreePortAndHearsTheAnswer) {
  OpenUdp123();
  Udp123.Close();
  AddServers(1);

  Exchange.SyncTimeNow();

  ASSERT_THAT(Net.Sent, SizeIs(1));
  const std::uint16_t port = Net.Sent[0].Port;
  EXPECT_LE(port, 32767);
  ASSERT_TRUE(Net.Arrive(port, At("10.0.0.1", 123), ReplyOf(State.Sync.SyncStamp, 3242721600, 0)));
  Loop.Drain();
  EXPECT_TRUE(State.Flags.TimeSynced);
}

TEST_F(SyncExchangeTest, TheFirstServerOfTheListIsAskedByDefault) {
  AddServers(3);
  Exchange.SyncTimeNow();
  EXPECT_EQ(Servers.CurrentServer, "10.0.0.1");
  EXPECT_EQ(Net.Sent.at(0).To, At("10.0.0.1", 123));
}

TEST_F(SyncExchangeTest, AChosenServerIsAskedAgainAndAgain) {
  AddServers(3);
  Servers.CurrentServer = "10.0.0.3";
  Exchange.SyncTimeNow();
  Exchange.SyncTimeNow();
  EXPECT_EQ(Net.Sent.at(0).To, At("10.0.0.3", 123));
  EXPECT_EQ(Net.Sent.at(1).To, At("10.0.0.3", 123));
}

TEST_F(SyncExchangeTest, RandomCheckDrawsAServerEachTime) {
  AddServers(10);
  Window.RandomCheck.SetValue(Tick::On);
  Servers.CurrentServer = "10.0.0.3";
  Exchange.SyncTimeNow();
  Clock.Pass(1);
  Exchange.SyncTimeNow();
  // Draws of 0.135 and 0.917 among ten.
  EXPECT_EQ(Net.Sent.at(0).To, At("10.0.0.2", 123));
  EXPECT_EQ(Net.Sent.at(1).To, At("10.0.0.9", 123));
  EXPECT_EQ(Window.Servers.Selected(), 9);
}

TEST_F(SyncExchangeTest, ARegionWithoutServersAsksTheFirstOfTheList) {
  AddServer("10.0.0.1", "Alpha EU");
  AddServer("10.0.0.2", "Beta EU");
  Window.RandomCheck.SetValue(Tick::On);
  Exchange.SyncTimeNow();
  EXPECT_EQ(Net.Sent.at(0).To, At("10.0.0.1", 123));
}

TEST_F(SyncExchangeTest, AShiftedItemWithoutAHostAsksTheFirstOfTheList) {
  ReadLines("10.0.0.1:::One NA:::1:::0\nbad\n10.0.0.3:::Three NA:::3:::0\n");
  Window.Servers.OnClick = [this] { Servers.ChooseSelected(); };
  Window.Servers.Choose(2);
  Exchange.SyncTimeNow();
  EXPECT_EQ(Net.Sent.at(0).To, At("10.0.0.1", 123));
}

TEST_F(SyncExchangeTest, TcpTimeIsClosedBeforeTheDraw) {
  AddServers(3);
  Window.RandomCheck.SetValue(Tick::On);
  std::string chosen = "not closed";
  Exchange.CloseTcpTime = [&] { chosen = Servers.CurrentServer; };
  Exchange.SyncTimeNow();
  EXPECT_EQ(chosen, "");
  EXPECT_NE(Servers.CurrentServer, "");
}

TEST_F(SyncExchangeTest, AFailingCloseOfTcpTimeIsPassedOver) {
  AddServers(1);
  Exchange.CloseTcpTime = [] { throw RuntimeError(6); };
  EXPECT_NO_THROW(Exchange.SyncTimeNow());
  EXPECT_THAT(Net.Sent, SizeIs(1));
}

TEST_F(SyncExchangeTest, AllIsReadyForTheAnswerBeforeTheSend) {
  AddServers(1);
  ShowWindow();
  Clock.TickCount = 500;
  bool seen = false;
  Journal.OnCall = [&](const std::string &call) {
    if (call != "send to 10.0.0.1:123") return;
    seen = true;
    EXPECT_TRUE(State.Sync.SyncWaiting);
    EXPECT_EQ(Clock.LocalTimeReadings, 1) << "the sent time";
    EXPECT_EQ(Clock.TickReadings, 1);
    EXPECT_EQ(Tip(), std::string(64, ' ')) << "the tip comes behind the send";
  };
  Exchange.SyncTimeNow();
  EXPECT_TRUE(seen);
}

TEST_F(SyncExchangeTest, TheRoundTripCountsFromTheSendAndNotFromTheSentTime) {
  AddServers(1);
  int sent_times = -1;
  Clock.OnCall = [&](std::string_view) { sent_times = Clock.LocalTimeReadings; };
  Exchange.SyncTimeNow();
  EXPECT_EQ(sent_times, 1) << "the sent time comes before the tick count";
}

TEST_F(SyncExchangeTest, ATickInsideItAsksOnceMore) {
  OpenUdp123();
  AddServers(1);
  Every(0);
  const PostedWork tick(Loop, [this] { Schedule.Tick(); });
  Exchange.SyncTimeNow();
  EXPECT_THAT(Net.Sent, SizeIs(2));
}

TEST_F(SyncExchangeTest, TheTipNamesTheServerAndHas64Characters) {
  AddServer("10.0.0.1", "Some Server NA");
  Exchange.SyncTimeNow();
  std::string tip = " Checking Time Server: Some Server NA ";
  tip += '\0';
  tip.resize(64, ' ');
  EXPECT_EQ(Tip(), tip);
}

TEST_F(SyncExchangeTest, ALongTipIsCutAt64Characters) {
  AddServer("10.0.0.1", std::string(60, 'x'));
  Exchange.SyncTimeNow();
  EXPECT_EQ(Tip(), " Checking Time Server: " + std::string(41, 'x'));
}

TEST_F(SyncExchangeTest, TheSourceLampIsLitInEveryStateOfAWindow) {
  AddServers(1);
  for (const WindowState state :
       {WindowState::Normal, WindowState::Minimized, WindowState::Maximized}) {
    ShowWindow(state);
    Exchange.SyncTimeNow();
    EXPECT_EQ(Window.LED[0].Image, LampLitImage) << static_cast<int>(state);
  }
}

TEST_F(SyncExchangeTest, WithoutAWindowNoLampIsLit) {
  AddServers(1);
  ShowWindow();
  State.Flags.Interactive = false;
  Exchange.SyncTimeNow();
  EXPECT_EQ(Window.LED[0].Image, LampDarkImage);
}

TEST_F(SyncExchangeTest, AMinimisedWindowShowsTheServersFlagInTheTray) {
  AddServer("10.0.0.1", "Some Server NA");
  ShowWindow(WindowState::Minimized);
  Exchange.SyncTimeNow();
  ASSERT_THAT(Tray.Calls, SizeIs(1));
  EXPECT_EQ(Tray.Calls[0].Message, TrayMessage::Modify);
  EXPECT_EQ(Tray.Calls[0].Icon, 7);
  EXPECT_EQ(Tray.Calls[0].Tip, Tip());
}

TEST_F(SyncExchangeTest, PendingEventsRunBehindTheTipAndBeforeTheLamp) {
  AddServers(1);
  ShowWindow();
  Window.LED[0].Image = LampLitImage;
  const PostedWork event(Loop, [&] {
    EXPECT_TRUE(Tip().starts_with(" Checking"));
    EXPECT_THAT(Net.Sent, SizeIs(1));
    EXPECT_EQ(Window.LED[0].Image, LampDarkImage) << "UpdateSZTIP has been, the lamp not yet";
  });
  Exchange.SyncTimeNow();
  EXPECT_TRUE(event.HasRun);
  EXPECT_EQ(Window.LED[0].Image, LampLitImage);
}

TEST_F(SyncExchangeTest, AnAnswerThatComesAtOnceIsTaken) {
  OpenUdp123();
  AddServers(1);
  Journal.OnCall = [&](const std::string &call) {
    if (!call.starts_with("send to")) return;
    Net.Arrive(123, At("10.0.0.1", 123), ReplyOf(State.Sync.SyncStamp, 3242721600, 0));
  };
  Exchange.SyncTimeNow();
  EXPECT_TRUE(State.Flags.TimeSynced);
  EXPECT_FALSE(State.Sync.SyncWaiting);
}

// Failures.

TEST_F(SyncExchangeTest, AFailedSendDrawsAServerAndTheNextTickTriesAgain) {
  AddServers(10);
  Every(3540);
  FailSend();

  Exchange.SyncTimeNow();

  EXPECT_THAT(Net.Sent, IsEmpty());
  EXPECT_TRUE(State.Sync.SyncWaiting);
  EXPECT_EQ(Servers.CurrentServer, "10.0.0.2");
  EXPECT_EQ(Window.Servers.Selected(), 2);
  EXPECT_EQ(Schedule.SyncCount(), 3540);

  Schedule.Tick();
  ASSERT_THAT(Net.Sent, SizeIs(1));
  EXPECT_EQ(Net.Sent[0].To, At("10.0.0.2", 123));
  EXPECT_EQ(Schedule.SyncCount(), 0);
}

TEST_F(SyncExchangeTest, ASendThatFailsInsideATickIsTriedAgainAtTheNextOne) {
  AddServers(1);
  Every(2);
  Schedule.Tick();
  FailSend();
  Schedule.Tick();
  EXPECT_EQ(Schedule.SyncCount(), 2);
  Schedule.Tick();
  EXPECT_THAT(Net.Sent, SizeIs(1));
}

TEST_F(SyncExchangeTest, TipEventsAndLampComeBehindAFailedSendToo) {
  AddServers(1);
  ShowWindow();
  const PostedWork event(Loop, [] {});
  FailSend();
  Exchange.SyncTimeNow();
  EXPECT_TRUE(Tip().starts_with(" Checking Time Server: Server 1 NA "));
  EXPECT_TRUE(event.HasRun);
  EXPECT_EQ(Window.LED[0].Image, LampLitImage);
}

TEST_F(SyncExchangeTest, TheTipBehindAFailedSendNamesTheServerThatWasDrawn) {
  AddServers(10);
  FailSend();
  Exchange.SyncTimeNow();
  EXPECT_TRUE(Tip().starts_with(" Checking Time Server: Server 2 NA "));
}

TEST_F(SyncExchangeTest, AHostThatIsNoAddressAndNoNameFailsTheSend) {
  ReadLines(":::Nobody NA:::1:::0\n");
  Window.Servers.Select(1);
  Every(100);
  Exchange.SyncTimeNow();
  EXPECT_THAT(Net.Sent, IsEmpty());
  EXPECT_TRUE(State.Sync.SyncWaiting);
  EXPECT_EQ(Schedule.SyncCount(), 100);
}

TEST_F(SyncExchangeTest, InMillisecond999TheRequestLeavesAllTheSame) {
  AddServers(1);
  Clock.UtcMs += 749;
  Exchange.SyncTimeNow();
  EXPECT_THAT(Net.Sent, SizeIs(1));
  EXPECT_EQ(Clock.TickReadings, 1) << "the tick count is a step of its own";
  EXPECT_TRUE(State.Sync.SyncWaiting);
}

TEST_F(SyncExchangeTest, WithNoServerSelectedTheTrayKeepsItsIcon) {
  AddServers(1);
  ShowWindow(WindowState::Minimized);
  Window.Servers.Clear();
  Window.Servers.Add("Nothing selected NA", 3);
  Exchange.SyncTimeNow();
  ASSERT_THAT(Tray.Calls, SizeIs(1));
  EXPECT_EQ(Tray.Calls[0].Icon, 0);
  EXPECT_EQ(Window.LED[0].Image, LampLitImage);
}

TEST_F(SyncExchangeTest, NothingEndsAWaitWithoutAnAnswer) {
  AddServers(1);
  Exchange.SyncTimeNow();
  Loop.Advance(3600000);
  EXPECT_TRUE(State.Sync.SyncWaiting);
  EXPECT_THAT(Net.Sent, SizeIs(1));
}

}  // namespace
}  // namespace cvl
