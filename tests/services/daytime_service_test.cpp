#include "services/daytime_service.h"

#include "tests/services/service_bench.h"

namespace cvl {
namespace {

const std::string JulianNoon = "\n52550 02-10-03 12:00:01 25 0 0 750.0 UTC(CVLS) *\n";
const std::string PlainNoon = "Thursday, October 03, 2002 12:00:00-";

class DaytimeTest : public ServiceTest {
 protected:
  DaytimeTest() { State.Flags.UseJulian = true; }
};

class DaytimeOverTcp : public DaytimeTest {
 protected:
  DaytimeOverTcp() { Listening.LoadServers("1"); }

  SocketState SlotState() { return Sockets.TCP13[1].State(); }
};

TEST_F(DaytimeOverTcp, SendsTheJulianTextAndCloses) {
  const FakeConnection &client = Dial(13);
  EXPECT_EQ(TextOf(client.Received), JulianNoon);
  EXPECT_TRUE(client.HasEnded);
  EXPECT_EQ(SlotState(), SocketState::Closed);
}

TEST_F(DaytimeOverTcp, SendsThePlainTextOfTheWorkedExample) {
  State.Flags.UseJulian = false;
  StandInLosAngeles(DateTime::Of(2002, 10, 3, 10, 25, 40), 250);
  const FakeConnection &client = Dial(13);
  EXPECT_EQ(TextOf(client.Received), "Thursday, October 03, 2002 10:25:40-Pacific Daylight Time");
  EXPECT_EQ(client.Received.size(), 57U);
}

TEST_F(DaytimeOverTcp, SendsTheJulianTextOfTheSameMomentInUtc) {
  StandInLosAngeles(DateTime::Of(2002, 10, 3, 10, 25, 40), 250);
  EXPECT_EQ(TextOf(Dial(13).Received), "\n52550 02-10-03 17:25:41 25 0 0 750.0 UTC(CVLS) *\n");
}

TEST_F(DaytimeOverTcp, WritesEveryPartOfThePlainTextInItsFullWidth) {
  State.Flags.UseJulian = false;
  Clock.StandAtUtc(DateTime::Of(2005, 2, 6, 7, 8, 9));
  State.Zone.TZName = "Zone";
  EXPECT_EQ(TextOf(Dial(13).Received), "Sunday, February 06, 2005 07:08:09-Zone");
}

TEST_F(DaytimeOverTcp, TakesTheZonesNameAsItStands) {
  State.Flags.UseJulian = false;
  StandInLosAngeles(DateTime::Of(2002, 10, 3, 12, 0, 0), 0);
  Clock.Zone.Period = ZonePeriod::Standard;
  Clock.StandAtLocal(DateTime::Of(2002, 10, 3, 12, 0, 0));
  EXPECT_EQ(TextOf(Dial(13).Received), PlainNoon + "Pacific Daylight Time");
  Time.svrBIAS();
  EXPECT_EQ(TextOf(Dial(13).Received), PlainNoon + "Pacific Standard Time");
}

TEST_F(DaytimeOverTcp, AsksForTheFormAnewForEachAnswer) {
  Dial(13);
  State.Flags.UseJulian = false;
  EXPECT_EQ(TextOf(Dial(13).Received), PlainNoon);
}

TEST_F(DaytimeOverTcp, LogsTheLabelAndTheLengthOfTheText) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  SocketState state = SocketState::Closed;
  bool was_lit = false;
  Files.OnAppend = [&] {
    state = SlotState();
    was_lit = IsLit(Sent);
  };
  Dial(13);
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("50 15 0 13 DayTime TCP - ")});
  EXPECT_EQ(state, SocketState::Connected);
  EXPECT_TRUE(was_lit);
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(DaytimeOverTcp, WritesTheLogLineOfTheWorkedExample) {
  State.Flags.EnableLogging = true;
  State.Flags.UseJulian = false;
  StandInLosAngeles(DateTime::Of(2002, 11, 14, 9, 26, 13), 0);
  State.Zone.TZName = "Mountain Summer Time";
  Dial(13, At("192.0.2.7", 40000));
  EXPECT_THAT(Files.Contents.at("/program/Logs/CVLS141102.LOG"),
              testing::HasSubstr("\r\n2002-11-14 09:26:13 192.0.2.7 - CVLS5 TIMEHOST SYSTEM "
                                 "192.0.2.1 GET TIME - 0 0 57 15 0 13 DayTime TCP - \r\n"));
}

TEST_F(DaytimeOverTcp, LogsAFailedSendLikeAGoodOne) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  SocketState state = SocketState::Connected;
  Files.OnAppend = [&] { state = SlotState(); };
  Net.Dial(13, Alice).Break();
  Loop.Drain();
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("50 15 0 13 DayTime TCP - ")});
  EXPECT_EQ(state, SocketState::Closed);
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(DaytimeOverTcp, ShowsTheClientOnceMoreBehindTheClose) {
  State.Flags.EnableLogging = true;
  Files.OnAppend = [&] { Window.CVLRemHost[panel::Daytime].SetText("somebody else"); };
  Dial(13);
  EXPECT_EQ(Window.CVLRemHost[panel::Daytime].Text(), "10.0.0.7");
  EXPECT_EQ(Window.CVLRemHost[panel::Daytime].Tip.Text(), NoonTip);
}

TEST_F(DaytimeOverTcp, ShowsTheClientBeforeItsAnswerToo) {
  State.Flags.EnableLogging = true;
  const TextBox &box = Window.CVLRemHost[panel::Daytime];
  std::string shown;
  std::string tip;
  Files.OnAppend = [&] {
    shown = box.Text();
    tip = box.Tip.Text();
  };
  Dial(13);
  EXPECT_EQ(shown, "10.0.0.7");
  EXPECT_EQ(tip, NoonTip);
}

TEST_F(DaytimeOverTcp, ServesWhoWaitsBeforeItEndsTheConnection) {
  const FakeConnection &first = Net.Dial(13, Alice);
  const FakeConnection &second = Net.Dial(13, Bob);
  Loop.Drain();
  EXPECT_EQ(TextOf(first.Received), JulianNoon);
  EXPECT_EQ(TextOf(second.Received), JulianNoon);
  EXPECT_EQ(Sockets.TCP13.Highest(), 2);
  // The first one ends last, and is then the last that was shown.
  EXPECT_EQ(Window.CVLRemHost[panel::Daytime].Text(), "10.0.0.7");
}

TEST_F(DaytimeOverTcp, ClosesASlotByItsCloseEventAndNotByItsErrorEvent) {
  Sockets.TCP13.Events.ConnectionRequest = [&](std::int16_t, RequestId request) {
    AcceptOn(
        Sockets.TCP13, [&] { return Sockets.InitTCP13(); }, request);
  };
  Dial(13).End();
  Loop.Drain();
  EXPECT_EQ(SlotState(), SocketState::Closed);
  Dial(13).Break();
  Loop.Drain();
  EXPECT_EQ(SlotState(), SocketState::Error);
}

class DaytimeOverUdp : public DaytimeTest {
 protected:
  DaytimeOverUdp() { Listening.LoadServers("0"); }
};

TEST_F(DaytimeOverUdp, AnswersEachDatagramWithOne) {
  Arrive(13, "any");
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(TextOf(Net.Sent[0].Data), JulianNoon);
  EXPECT_EQ(Net.Sent[0].To, Alice);
  EXPECT_EQ(State.Requests.ReqUDP13, 1);
}

TEST_F(DaytimeOverUdp, SendsThePlainTextWhereThatIsSet) {
  State.Flags.UseJulian = false;
  Arrive(13, "any");
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(TextOf(Net.Sent[0].Data), PlainNoon);
}

TEST_F(DaytimeOverUdp, LogsTheReceivedText) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Arrive(13, "what time is it?\r\n");
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("50 18 0 13 DayTime UDP - ")});
  EXPECT_TRUE(IsLit(Udp));
  EXPECT_TRUE(IsLit(Received));
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
  EXPECT_EQ(Window.CVLRemHost[panel::Daytime].Text(), "10.0.0.7");
  EXPECT_EQ(Window.CVLRemHost[panel::Daytime].Tip.Text(), NoonTip);
}

TEST_F(DaytimeOverUdp, AnswersAnEmptyDatagramAndLogsItsLength) {
  State.Flags.EnableLogging = true;
  Arrive(13, "");
  EXPECT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("50 0 0 13 DayTime UDP - ")});
}

TEST_F(DaytimeOverUdp, IsDroppedInAPause) {
  ShowWindow();
  State.Flags.ServicePaused = true;
  Arrive(13, "any");
  EXPECT_EQ(Net.Sent.size(), 0U);
  EXPECT_EQ(State.Requests.ReqUDP13, 0);
  EXPECT_FALSE(IsLit(Udp));
}

TEST_F(DaytimeOverUdp, IsCountedAndShownAndNotAnsweredBeforeTheFirstSync) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  State.Flags.TimeSynced = false;
  Arrive(13, "any");
  EXPECT_EQ(Net.Sent.size(), 0U);
  EXPECT_EQ(State.Requests.ReqUDP13, 1);
  EXPECT_EQ(Window.CVLRemHost[panel::Daytime].Text(), "10.0.0.7");
  EXPECT_TRUE(IsLit(Received));
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
  EXPECT_EQ(Files.Appends, 0);
}

TEST_F(DaytimeOverUdp, LeavesNoTraceOfAFailedSend) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Net.Fail(Operation::SendTo, error_number::NoBuffers);
  Arrive(13, "any");
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
  EXPECT_EQ(Files.Appends, 0);
  EXPECT_EQ(State.Requests.ReqUDP13, 1);
}

TEST_F(DaytimeOverUdp, StopsWhenTheDatagramCanNotBeReadAndKeepsTheCount) {
  ShowWindow();
  Sockets.UDP13.OnDataArrival(4);  // there is none
  EXPECT_EQ(State.Requests.ReqUDP13, 1);
  EXPECT_TRUE(IsLit(Udp));
  EXPECT_FALSE(IsLit(Received));
  EXPECT_EQ(Window.CVLRemHost[panel::Daytime].Text(), "None");
}

TEST_F(DaytimeOverUdp, EndsTheProcessWhenTheCounterIsFull) {
  State.Requests.ReqUDP13 = INT32_MAX;
  Net.Arrive(13, Alice, "any");
  ExpectProcessEnds(error_number::Overflow, [&] { Loop.Drain(); });
}

}  // namespace
}  // namespace cvl
