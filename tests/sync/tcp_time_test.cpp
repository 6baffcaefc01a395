#include "sync/tcp_time.h"

#include "tests/sync/sync_bench.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class TcpTimeTest : public SyncTest {
 protected:
  TcpTimeTest() {
    AddServers(10);
    Servers.CurrentServer = "10.0.0.1";
    Every(3540);
    State.Sync.LastSync = DateTime::Of(2002, 1, 1);
    Tcp.StandardZoneName = "Standard";
    Tcp.DaylightZoneName = "Daylight";
    Clock.MovesWhenSet = true;
  }

  /// Connects tcpTime to 10.0.0.9.
  FakeConnection &Connect() {
    TcpSocket &socket = Tcp.tcpTime();
    socket.SetRemoteHost("10.0.0.9");
    socket.SetRemotePort(37);
    socket.Connect();
    FakeConnection &server = Net.Connections.back();
    server.Establish();
    Loop.Drain();
    return server;
  }

  /// A whole exchange in which the server tells SECONDS.
  void Exchange37(std::uint32_t seconds) {
    FakeConnection &server = Connect();
    const Bytes bytes{static_cast<std::uint8_t>(seconds >> 24),
                      static_cast<std::uint8_t>(seconds >> 16),
                      static_cast<std::uint8_t>(seconds >> 8), static_cast<std::uint8_t>(seconds)};
    server.Send(bytes);
    Loop.Drain();
  }

  static std::string Padded(const std::string &text) {
    std::string tip = " " + text + " ";
    tip += '\0';
    tip.resize(64, ' ');
    return tip;
  }
};

TEST_F(TcpTimeTest, LiesIdleByItself) {
  OpenUdp123();
  Exchange.SyncTimeNow();
  Loop.Advance(10000);
  EXPECT_THAT(Net.Connections, IsEmpty());
  EXPECT_EQ(Tcp.tcpTime().State(), SocketState::Closed);
}

TEST_F(TcpTimeTest, IsClosedBySyncTimeNow) {
  FakeConnection &server = Connect();
  Exchange.SyncTimeNow();
  EXPECT_EQ(Tcp.tcpTime().State(), SocketState::Closed);
  EXPECT_TRUE(server.HasEnded);
}

TEST_F(TcpTimeTest, AnAnswerOpensTheServices) {
  Exchange37(Noon);
  EXPECT_TRUE(State.Flags.TimeSynced);
}

TEST_F(TcpTimeTest, AnAnswerClosesTheSocket) {
  Exchange37(Noon);
  EXPECT_EQ(Tcp.tcpTime().State(), SocketState::Closed);
  EXPECT_TRUE(Net.Connections.back().HasEnded);
}

// The clock agrees.

TEST_F(TcpTimeTest, AClockThatAgreesIsLeftAlone) {
  Exchange37(Noon);
  EXPECT_EQ(State.Sync.SyncMessage, " Atomically Correct: No Adjustment needed! ");
  EXPECT_THAT(Clock.LocalDatesSet, IsEmpty());
  EXPECT_THAT(Clock.LocalTimesSet, IsEmpty());
  EXPECT_THAT(Clock.SystemTimesSet, IsEmpty());
  EXPECT_EQ(State.Sync.LastSync, DateTime::Of(2002, 1, 1));
  EXPECT_EQ(State.Sync.ReferenceStamp, NtpTimestamp{});
  EXPECT_EQ(Window.Status.Tip.Text(), "");
}

TEST_F(TcpTimeTest, AClockThatAgreesIsReported) {
  Exchange37(Noon);
  EXPECT_EQ(Tip(), Padded(" Atomically Correct: No Adjustment needed! "));
  EXPECT_EQ(Window.Servers.Tip.Text(),
            " 10/3/2002 12:00:00 PM |  Atomically Correct: No Adjustment needed! ");
}

// The clock differs.

TEST_F(TcpTimeTest, AClockThatIsBehindIsPutForward) {
  Exchange37(Noon + 5);
  EXPECT_EQ(State.Sync.SyncMessage, "Date/Time Adjusted by 5 second(s)");
  EXPECT_THAT(Clock.LocalDatesSet, ElementsAre(DateTime::Of(2002, 10, 3, 12, 0, 5)));
  EXPECT_THAT(Clock.LocalTimesSet, ElementsAre(DateTime::Of(2002, 10, 3, 12, 0, 5)));
  EXPECT_EQ(Clock.UtcMs, UtcMsOf(DateTime::Of(2002, 10, 3, 12, 0, 5)));
}

TEST_F(TcpTimeTest, AClockThatIsAheadIsPutBack) {
  Exchange37(Noon - 3);
  EXPECT_EQ(State.Sync.SyncMessage, "Date/Time Adjusted by -3 second(s)");
  EXPECT_EQ(Clock.UtcMs, UtcMsOf(DateTime::Of(2002, 10, 3, 11, 59, 57)));
}

TEST_F(TcpTimeTest, TheDateIsSetBeforeTheTime) {
  std::vector<std::string> calls;
  Clock.OnCall = [&](std::string_view call) { calls.emplace_back(call); };
  Exchange37(Noon + 5);
  EXPECT_THAT(calls, ElementsAre("local date", "local time"));
}

TEST_F(TcpTimeTest, AnotherDayIsSetWithItsDate) {
  Exchange37(Noon + 200000);
  EXPECT_EQ(Clock.UtcMs, UtcMsOf(DateTime::Of(2002, 10, 5, 19, 33, 20)));
}

TEST_F(TcpTimeTest, AnAdjustmentIsRecordedAndReportedByTheNewTime) {
  ShowWindow();
  Exchange37(Noon + 5);
  EXPECT_EQ(State.Sync.LastSync, DateTime::Of(2002, 10, 3, 12, 0, 5));
  EXPECT_EQ(State.Sync.ReferenceStamp, Time.GrabTime());
  EXPECT_EQ(Window.Status.Tip.Text(), " Last Updated: 10/3/2002 12:00:05 PM ");
  EXPECT_EQ(Tip(), Padded("Date/Time Adjusted by 5 second(s)"));
  EXPECT_EQ(Window.Servers.Tip.Text(),
            " 10/3/2002 12:00:05 PM | Date/Time Adjusted by 5 second(s)");
  EXPECT_TRUE(
      State.Status.StatusText.Text().ends_with("Last Atomic Update: 10/3/2002 12:00:05 PM"));
}

TEST_F(TcpTimeTest, ARefusedAdjustmentIsRecordedAllTheSame) {
  Clock.RefusesAll = true;
  Exchange37(Noon + 5);
  EXPECT_THAT(Clock.LocalDatesSet, SizeIs(1));
  EXPECT_THAT(Clock.LocalTimesSet, SizeIs(1)) << "the date's refusal skips the date alone";
  EXPECT_EQ(State.Sync.SyncMessage, "Date/Time Adjusted by 5 second(s)");
  EXPECT_EQ(State.Sync.LastSync, DateTime::Of(2002, 10, 3, 12, 0, 0));
}

TEST_F(TcpTimeTest, InMillisecond999TheReferenceAloneStays) {
  ShowWindow();
  Clock.MovesWhenSet = false;
  Clock.UtcMs += 749;
  Exchange37(Noon + 5);
  EXPECT_EQ(State.Sync.ReferenceStamp, NtpTimestamp{});
  EXPECT_EQ(State.Sync.LastSync, DateTime::Of(2002, 10, 3, 12, 0, 0));
  EXPECT_NE(State.Status.StatusText.Text(), "");
}

TEST_F(TcpTimeTest, AnOffsetBeyond32BitsCountsAsNone) {
  Exchange37(1);
  EXPECT_EQ(State.Sync.SyncMessage, " Atomically Correct: No Adjustment needed! ");
  EXPECT_THAT(Clock.LocalDatesSet, IsEmpty());
}

TEST_F(TcpTimeTest, AValueIsUnsigned) {
  Clock.StandAtUtc(DateTime::Of(1950, 1, 1));
  Exchange37(0x5E0BE100 + 10);  // below 2^31
  EXPECT_EQ(State.Sync.SyncMessage, "Date/Time Adjusted by 10 second(s)");
  Clock.StandAtUtc(DateTime::Of(2036, 2, 7, 6, 28, 0));
  Exchange37(0xFFFFFFFF);
  EXPECT_EQ(State.Sync.SyncMessage, "Date/Time Adjusted by 15 second(s)");
}

TEST_F(TcpTimeTest, TheBaseDateIsStoredAnew) {
  State.Dates.NTPEpoch = DateTime::Of(1978, 8, 3);
  Exchange37(Noon);
  EXPECT_EQ(State.Dates.NTPEpoch, DateTime::Of(1900, 1, 1));
  EXPECT_EQ(State.Sync.SyncMessage, " Atomically Correct: No Adjustment needed! ");
}

// The peer and the zone.

TEST_F(TcpTimeTest, ThePeersAddressBecomesTheReference) {
  Exchange37(Noon);
  EXPECT_THAT(State.Sync.ReferenceOctets, ElementsAre(10, 0, 0, 9));
}

TEST_F(TcpTimeTest, LocalTimeIsSetInTheZonesStandardPeriod) {
  Clock.Zone.Period = ZonePeriod::Standard;
  Clock.Zone.Bias = 300;
  Clock.Zone.DaylightBias = -60;
  Exchange37(Noon + 5);
  EXPECT_THAT(Clock.LocalTimesSet, ElementsAre(DateTime::Of(2002, 10, 3, 7, 0, 5)));
  EXPECT_EQ(Clock.UtcMs, UtcMsOf(DateTime::Of(2002, 10, 3, 12, 0, 5)));
  EXPECT_EQ(Tcp.SyncZoneName(), "Standard");
}

TEST_F(TcpTimeTest, LocalTimeIsSetInTheZonesDaylightPeriod) {
  Clock.Zone.Period = ZonePeriod::Daylight;
  Clock.Zone.Bias = 300;
  Clock.Zone.DaylightBias = -60;
  Exchange37(Noon + 5);
  EXPECT_THAT(Clock.LocalTimesSet, ElementsAre(DateTime::Of(2002, 10, 3, 8, 0, 5)));
  EXPECT_EQ(Tcp.SyncZoneName(), "Daylight");
}

TEST_F(TcpTimeTest, AZoneOfUnknownPeriodHasItsStandardName) {
  Clock.Zone.Period = ZonePeriod::Unknown;
  Clock.Zone.DaylightBias = -60;
  Exchange37(Noon);
  EXPECT_EQ(Tcp.SyncZoneName(), "Standard");
  EXPECT_EQ(State.Sync.SyncMessage, " Atomically Correct: No Adjustment needed! ");
}

// The tray.

TEST_F(TcpTimeTest, TheTrayShowsWhatCameOfIt) {
  ShowWindow(WindowState::Minimized);
  Exchange37(Noon + 5);
  Exchange37(Noon + 5);
  ASSERT_THAT(Tray.Calls, SizeIs(2));
  EXPECT_EQ(Tray.Calls[0].Icon, 1) << "adjusted";
  EXPECT_EQ(Tray.Calls[1].Icon, 0) << "no adjustment";
  EXPECT_EQ(Tray.Calls[1].Tip, Tip());
}

// Failures.

TEST_F(TcpTimeTest, AShortAnswerClosesAndTheNextTickTriesAgain) {
  ShowWindow();
  FakeConnection &server = Connect();
  server.Send("abc");
  Loop.Drain();

  EXPECT_TRUE(State.Flags.TimeSynced);
  EXPECT_EQ(Window.LED[1].Image, LampLitImage);
  EXPECT_EQ(Tcp.tcpTime().State(), SocketState::Closed);
  EXPECT_EQ(Schedule.SyncCount(), 3540);
  EXPECT_EQ(Servers.CurrentServer, "10.0.0.1") << "the server is kept";
  EXPECT_THAT(State.Sync.ReferenceOctets, ElementsAre(0, 0, 0, 0));
  EXPECT_EQ(State.Sync.SyncMessage, "");
  EXPECT_EQ(Tip(), std::string(64, ' '));
}

TEST_F(TcpTimeTest, OfALongerAnswerTheFirstFourBytesCount) {
  FakeConnection &server = Connect();
  server.Send("\xC1\x46\xAF\xC0 and more");
  Loop.Drain();
  EXPECT_EQ(State.Sync.SyncMessage, " Atomically Correct: No Adjustment needed! ");
}

TEST_F(TcpTimeTest, TheEndOfTheStreamClosesAndPutsTheSourceLampOut) {
  ShowWindow();
  FakeConnection &server = Connect();
  Window.LED[0].Image = LampLitImage;
  server.End();
  Loop.Drain();
  EXPECT_EQ(Window.LED[0].Image, LampDarkImage);
  EXPECT_EQ(Tcp.tcpTime().State(), SocketState::Closed);
  EXPECT_FALSE(State.Flags.TimeSynced);
}

TEST_F(TcpTimeTest, WithoutAWindowTheEndLeavesTheLamp) {
  FakeConnection &server = Connect();
  Window.LED[0].Image = LampLitImage;
  server.End();
  Loop.Drain();
  EXPECT_EQ(Window.LED[0].Image, LampLitImage);
  EXPECT_EQ(Tcp.tcpTime().State(), SocketState::Closed);
}

/// A datagram that waits while tcpTime ends is taken before it is closed.
class TcpTimeWithADatagram : public TcpTimeTest {
 protected:
  /// Has a datagram wait, whose handler calls LOOK.
  void HaveDatagramWait(std::function<void()> look) {
    Udp123.OnDataArrival = [this, look = std::move(look)](std::int32_t) {
      HasLooked = true;
      look();
    };
    Udp123.SetLocalPort(123);
    Udp123.Bind();
    ASSERT_TRUE(Net.Arrive(123, At("10.0.0.7", 40001), "any"));
  }

  bool HasLooked = false;
};

TEST_F(TcpTimeWithADatagram, BehindTheEndOfTheStreamTheLampIsDarkByThen) {
  ShowWindow();
  FakeConnection &server = Connect();
  Window.LED[0].Image = LampLitImage;
  HaveDatagramWait([this] {
    EXPECT_EQ(Tcp.tcpTime().State(), SocketState::Closing);
    EXPECT_EQ(Window.LED[0].Image, LampDarkImage);
  });
  server.End();
  Loop.Drain();
  EXPECT_TRUE(HasLooked);
  EXPECT_EQ(Tcp.tcpTime().State(), SocketState::Closed);
}

TEST_F(TcpTimeWithADatagram, BehindAFailureTheNextServerIsNotDrawnYet) {
  FakeConnection &server = Connect();
  HaveDatagramWait([this] {
    EXPECT_EQ(Tcp.tcpTime().State(), SocketState::Error);
    EXPECT_EQ(Servers.CurrentServer, "10.0.0.1");
  });
  server.Break();
  Loop.Drain();
  EXPECT_TRUE(HasLooked);
  EXPECT_EQ(Servers.CurrentServer, "10.0.0.2");
}

TEST_F(TcpTimeTest, ABrokenConnectionAsksTheNextServerAtOnce) {
  FakeConnection &server = Connect();
  server.Break();
  Loop.Drain();

  EXPECT_EQ(State.Sync.SyncMessage, "No Adjustment: 10/3/2002 12:00:00 PM 10.0.0.1");
  EXPECT_EQ(Window.Servers.Tip.Text(),
            "No Adjustment: 10/3/2002 12:00:00 PM 10.0.0.1 Connection reset by the peer");
  EXPECT_EQ(Tcp.tcpTime().State(), SocketState::Closed);
  EXPECT_EQ(Servers.CurrentServer, "10.0.0.2");
  ASSERT_THAT(Net.Sent, SizeIs(1));
  EXPECT_EQ(Net.Sent[0].To, At("10.0.0.2", 123));
  EXPECT_TRUE(Tip().starts_with(" Checking Time Server: Server 2 NA "));
}

TEST_F(TcpTimeTest, ARefusedConnectionDoesTheSame) {
  Tcp.tcpTime().SetRemoteHost("10.0.0.9");
  Tcp.tcpTime().SetRemotePort(37);
  Tcp.tcpTime().Connect();
  Net.Connections.back().Refuse();
  Loop.Drain();
  EXPECT_TRUE(Window.Servers.Tip.Text().ends_with(" Connection refused"));
  EXPECT_THAT(Net.Sent, SizeIs(1));
}

TEST_F(TcpTimeTest, AServerThatIsUnknownDoesTheSame) {
  Tcp.tcpTime().SetRemoteHost("gone.example");
  Tcp.tcpTime().Connect();
  Resolver.Tell("gone.example", std::nullopt);
  Loop.Drain();
  EXPECT_TRUE(Window.Servers.Tip.Text().ends_with(" Host not found"));
  EXPECT_THAT(Net.Sent, SizeIs(1));
}

}  // namespace
}  // namespace cvl
