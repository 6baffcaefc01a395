#include "services/time_service.h"

#include "tests/services/service_bench.h"

namespace cvl {
namespace {

const Bytes NoonValue = {0xC1, 0x46, 0xAF, 0xC0};

// The first second that four bytes can't hold.
const DateTime EndOfEra = DateTime::Of(2036, 2, 7, 6, 28, 16);
const DateTime LastOfEra = DateTime::Of(2036, 2, 7, 6, 28, 15);

class TimeOverUdp : public ServiceTest {
 protected:
  TimeOverUdp() { Listening.LoadServers("2"); }
};

TEST_F(TimeOverUdp, AnswersWithFourDatagramsOfOneByte) {
  Arrive(37, "any");
  ASSERT_EQ(Net.Sent.size(), 4U);
  for (std::size_t at = 0; at < 4; ++at) {
    EXPECT_EQ(Net.Sent[at].Data, Bytes{NoonValue[at]});
    EXPECT_EQ(Net.Sent[at].To, Alice);
    EXPECT_EQ(Net.Sent[at].Port, 37);
  }
}

TEST_F(TimeOverUdp, AnswersADatagramOfAnySize) {
  for (const std::size_t size : {0U, 1U, 48U, 1500U}) {
    Net.Sent.clear();
    Arrive(37, Bytes(size));
    EXPECT_EQ(SentBytes(), NoonValue) << size;
    EXPECT_EQ(Net.Sent.size(), 4U);
  }
  EXPECT_EQ(State.Requests.ReqUDP37, 4);
}

TEST_F(TimeOverUdp, IsCountedWithoutALampInAMinimisedWindow) {
  ShowWindow();
  Window.State = WindowState::Minimized;
  Arrive(37, "any");
  EXPECT_EQ(State.Requests.ReqUDP37, 1);
  EXPECT_FALSE(IsLit(Udp));
  EXPECT_FALSE(IsLit(Received));
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(TimeOverUdp, SendsAZeroByteAsZero) {
  Clock.StandAtUtc(DateTime::Of(1900, 1, 1).Plus(0x01000000 / SecondsPerDay));
  Arrive(37, "any");
  EXPECT_EQ(SentBytes(), (Bytes{1, 0, 0, 0}));
}

TEST_F(TimeOverUdp, SendsUtc) {
  StandInLosAngeles(DateTime::Of(2002, 10, 3, 5, 0, 0), 0);
  Arrive(37, "any");
  EXPECT_EQ(SentBytes(), NoonValue);
}

TEST_F(TimeOverUdp, IsDroppedInAPause) {
  ShowWindow();
  State.Flags.ServicePaused = true;
  Arrive(37, "any");
  EXPECT_EQ(Net.Sent.size(), 0U);
  EXPECT_EQ(State.Requests.ReqUDP37, 0);
  EXPECT_FALSE(IsLit(Udp));
}

TEST_F(TimeOverUdp, IsCountedAndNotAnsweredBeforeTheFirstSync) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  State.Flags.TimeSynced = false;
  Arrive(37, "any");
  EXPECT_EQ(Net.Sent.size(), 0U);
  EXPECT_EQ(State.Requests.ReqUDP37, 1);
  EXPECT_TRUE(IsLit(Udp));
  EXPECT_TRUE(IsLit(Received));
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
  EXPECT_EQ(Files.Appends, 0);
  EXPECT_EQ(Window.CVLRemHost[panel::Time].Text(), "None");
}

TEST_F(TimeOverUdp, ShowsAndLogsTheClientBehindTheAnswer) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  std::size_t sent = 0;
  Files.OnAppend = [&] { sent = Net.Sent.size(); };
  Arrive(37, "any");
  EXPECT_EQ(Window.CVLRemHost[panel::Time].Text(), "10.0.0.7");
  EXPECT_EQ(Window.CVLRemHost[panel::Time].Tip.Text(), NoonTip);
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("4 12 0 37 Time UDP - ")});
  EXPECT_EQ(sent, 4U);
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(TimeOverUdp, EndsWithTheFirstSendThatFails) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Net.Fail(Operation::SendTo, error_number::NoBuffers);
  Arrive(37, "any");
  EXPECT_EQ(Net.Sent.size(), 0U);
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_EQ(Files.Appends, 0);
  EXPECT_EQ(Window.CVLRemHost[panel::Time].Text(), "None");
  EXPECT_EQ(State.Requests.ReqUDP37, 1);
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(TimeOverUdp, LeavesSentWhatWasSentBeforeAFailure) {
  State.Flags.EnableLogging = true;
  Net.Fail(Operation::SendTo, error_number::NoBuffers, 1, 2);
  Arrive(37, "any");
  EXPECT_EQ(SentBytes(), (Bytes{NoonValue[0], NoonValue[1]}));
  EXPECT_EQ(Files.Appends, 0);
}

TEST_F(TimeOverUdp, StopsWhenTheDatagramCanNotBeRead) {
  ShowWindow();
  Sockets.UDP37.OnDataArrival(4);  // there is none
  EXPECT_TRUE(IsLit(Udp));
  EXPECT_FALSE(IsLit(Received));
  EXPECT_EQ(State.Requests.ReqUDP37, 0);
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(TimeOverUdp, HasNoValueFrom2036OnAndGoesOn) {
  ShowWindow();
  Clock.StandAtUtc(LastOfEra);
  Arrive(37, "any");
  EXPECT_EQ(SentBytes(), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
  State.Status.StatusText.Set("");
  Clock.StandAtUtc(EndOfEra);
  Arrive(37, "any");
  EXPECT_EQ(Net.Sent.size(), 4U);
  EXPECT_EQ(State.Requests.ReqUDP37, 2);
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(TimeOverUdp, GoesOnWithAFullCounter) {
  State.Requests.ReqUDP37 = INT32_MAX;
  Arrive(37, "any");
  EXPECT_EQ(State.Requests.ReqUDP37, INT32_MAX);
  EXPECT_EQ(Net.Sent.size(), 4U);
}

class TimeOverTcp : public ServiceTest {
 protected:
  TimeOverTcp() { Listening.LoadServers("3"); }

  SocketState SlotState() { return Sockets.TCP37[1].State(); }
};

TEST_F(TimeOverTcp, SendsFourBytesInOnePieceAndCloses) {
  const FakeConnection &client = Dial(37);
  EXPECT_EQ(client.Received, NoonValue);
  EXPECT_EQ(client.Pieces.size(), 1U);
  EXPECT_TRUE(client.HasEnded);
  EXPECT_EQ(SlotState(), SocketState::Closed);
}

TEST_F(TimeOverTcp, LogsBeforeItSends) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  bool was_lit = true;
  Files.OnAppend = [&] { was_lit = IsLit(Sent); };
  Dial(37);
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("4 12 0 37 Time TCP - ")});
  EXPECT_FALSE(was_lit);
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(TimeOverTcp, ShowsTheMomentOfTheRequest) {
  Dial(37);
  EXPECT_EQ(Window.CVLRemHost[panel::Time].Text(), "10.0.0.7");
  EXPECT_EQ(Window.CVLRemHost[panel::Time].Tip.Text(), NoonTip);
}

TEST_F(TimeOverTcp, ClosesTheSlotAndGoesOnWhenASendFails) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Net.Dial(37, Alice).Break();
  Loop.Drain();
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_EQ(LogLines().size(), 1U);
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
  EXPECT_EQ(State.Requests.ReqTCP37, 1);
  EXPECT_EQ(Dial(37, Bob).Received, NoonValue);
}

TEST_F(TimeOverTcp, ClosesTheSlotAndGoesOnFrom2036On) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Clock.StandAtUtc(LastOfEra);
  EXPECT_EQ(Dial(37).Received, (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
  State.Status.StatusText.Set("");
  Clock.StandAtUtc(EndOfEra);
  const int appends = Files.Appends;
  const FakeConnection &client = Dial(37);
  EXPECT_EQ(client.Received, Bytes());
  EXPECT_TRUE(client.HasEnded);
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_GT(Files.Appends, appends);
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(TimeOverTcp, ClosesASlotByItsCloseAndErrorEvents) {
  // Their own slots: an answered one is closed before either event can come.
  for (const bool ends : {true, false}) {
    Sockets.TCP37.Events.ConnectionRequest = [&](std::int16_t, RequestId request) {
      AcceptOn(
          Sockets.TCP37, [&] { return Sockets.InitTCP37(); }, request);
    };
    FakeConnection &idle = Dial(37);
    EXPECT_EQ(SlotState(), SocketState::Connected);
    if (ends) {
      idle.End();
    } else {
      idle.Break();
    }
    Loop.Drain();
    EXPECT_EQ(SlotState(), SocketState::Closed) << ends;
    Loop.Advance(LingeringCloses::LookMs);
    EXPECT_TRUE(idle.IsClosed);
  }
}

}  // namespace
}  // namespace cvl
