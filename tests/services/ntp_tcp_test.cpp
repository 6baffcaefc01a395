// The NTP service over TCP.

#include "services/ntp_service.h"
#include "tests/services/service_bench.h"

namespace cvl {
namespace {

class NtpOverTcp : public ServiceTest {
 protected:
  NtpOverTcp() { Listening.LoadServers("5"); }

  void Send(FakeConnection &client, std::size_t length) {
    client.Send(Bytes(length));
    Loop.Drain();
  }

  SocketState SlotState() { return Sockets.TCP123[1].State(); }
};

TEST_F(NtpOverTcp, WaitsForTheRequest) {
  const FakeConnection &client = Dial(123);
  EXPECT_EQ(client.Received, Bytes());
  EXPECT_EQ(SlotState(), SocketState::Connected);
  EXPECT_EQ(State.Requests.ReqTCP123, 0);
}

TEST_F(NtpOverTcp, SendsTheReplyAndClosesWhenItIsOut) {
  FakeConnection &client = Dial(123);
  client.Send(Bytes(48));
  Loop.RunOnePass();
  EXPECT_EQ(client.Received.size(), 48U);
  EXPECT_EQ(client.Pieces.size(), 1U);
  EXPECT_EQ(SlotState(), SocketState::Connected);
  Loop.Drain();
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_TRUE(client.HasEnded);
  EXPECT_EQ(State.Requests.ReqTCP123, 1);
}

TEST_F(NtpOverTcp, SendsTheSameFieldsAsUdp) {
  Listening.LoadServers("4");
  Arrive(123, Bytes(48));
  FakeConnection &client = Dial(123);
  Send(client, 48);
  EXPECT_EQ(client.Received, SentBytes());
}

TEST_F(NtpOverTcp, LogsAGoodPacketWithThePortOfTheListener) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Send(Dial(123), 48);
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("48 48 0 123 NTPv4 TCP - ")});
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(NtpOverTcp, LogsTheClientThatAskedAndNotTheLastThatConnected) {
  State.Flags.EnableLogging = true;
  FakeConnection &good = Dial(123);
  FakeConnection &bad = Dial(123);
  Dial(123, Bob);
  Send(good, 48);
  Send(bad, 47);
  EXPECT_EQ(LogLines(), (std::vector<std::string>{LogLine("48 48 0 123 NTPv4 TCP - "),
                                                  LogLine("0 47 0 123 NTPv4 TCP - ")}));
}

TEST_F(NtpOverTcp, LightsTheLampOfDataAgainWhenTheRequestComes) {
  FakeConnection &client = Dial(123);
  ShowWindow();
  Send(client, 48);
  EXPECT_TRUE(IsLit(Received));
  EXPECT_FALSE(IsLit(Tcp));
}

TEST_F(NtpOverTcp, ClosesAndLogsARequestOfAnyOtherLength) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  for (const std::size_t length : {1U, 47U, 49U, 68U}) {
    FakeConnection &client = Dial(123);
    Send(client, length);
    EXPECT_EQ(client.Received, Bytes()) << length;
    EXPECT_TRUE(client.HasEnded) << length;
    EXPECT_EQ(SlotState(), SocketState::Closed) << length;
  }
  ASSERT_EQ(LogLines().size(), 4U);
  EXPECT_EQ(LogLines()[1], LogLine("0 47 0 123 NTPv4 TCP - "));
  EXPECT_EQ(State.Requests.ReqTCP123, 4);
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(NtpOverTcp, RefusesARequestInTwoPiecesAtTheFirst) {
  FakeConnection &client = Dial(123);
  Send(client, 20);
  EXPECT_EQ(SlotState(), SocketState::Closed);
  Send(client, 28);
  EXPECT_EQ(client.Received, Bytes());
  EXPECT_EQ(State.Requests.ReqTCP123, 1);
}

TEST_F(NtpOverTcp, ClosesAFailedRead) {
  State.Flags.EnableLogging = true;
  Dial(123);
  Sockets.TCP123.Events.DataArrival(1, 48);  // nothing has come
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("0 48 0 123 NTPv4 TCP - ")});
}

TEST_F(NtpOverTcp, AnswersAnAcceptedClientInAPause) {
  FakeConnection &client = Dial(123);
  State.Flags.ServicePaused = true;
  Send(client, 48);
  EXPECT_EQ(client.Received.size(), 48U);
  EXPECT_EQ(State.Requests.ReqTCP123, 1);
}

TEST_F(NtpOverTcp, LeavesTheSlotOpenInMillisecond999) {
  State.Flags.EnableLogging = true;
  FakeConnection &client = Dial(123);
  Clock.StandAtUtc(DateTime::Of(2002, 10, 3, 12, 0, 0), 999);
  Send(client, 48);
  EXPECT_EQ(client.Received, Bytes());
  EXPECT_EQ(SlotState(), SocketState::Connected);
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("48 48 0 123 NTPv4 TCP - ")});
}

TEST_F(NtpOverTcp, ShowsTheNumberOfAFailedSendAndClosesTheSlot) {
  ShowWindow();
  FakeConnection &client = Dial(123);
  Sockets.TCP123.Events.DataArrival = [&client, inner = Sockets.TCP123.Events.DataArrival](
                                          std::int16_t index, std::int32_t bytes) {
    client.Break();  // between the request and its answer
    inner(index, bytes);
  };
  Send(client, 48);
  EXPECT_EQ(Window.CVLRemHost[panel::Ntp].Text(), "10054");
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(NtpOverTcp, NeverUsesTheSlotOfAClientThatWentAwayAgain) {
  Dial(123).End();
  Loop.Drain();
  EXPECT_EQ(SlotState(), SocketState::Closing);
  Dial(123).Break();
  Loop.Drain();
  EXPECT_EQ(Sockets.TCP123[2].State(), SocketState::Error);
  Dial(123);
  EXPECT_EQ(Sockets.TCP123.Highest(), 3);
}

TEST_F(NtpOverTcp, AnswersARequestThatTheEndFollows) {
  FakeConnection &client = Dial(123);
  client.Send(Bytes(48));
  client.End();
  Loop.Drain();
  EXPECT_EQ(client.Received.size(), 48U);
}

TEST_F(NtpOverTcp, EndsTheProcessWhenTheCounterIsFull) {
  State.Requests.ReqTCP123 = INT32_MAX;
  FakeConnection &client = Dial(123);
  client.Send(Bytes(48));
  ExpectProcessEnds(error_number::Overflow, [&] { Loop.Drain(); });
}

}  // namespace
}  // namespace cvl
