#include "services/client_protocol.h"

#include "tests/services/service_bench.h"

namespace cvl {
namespace {

/// The request of the worked example: "CVLC1", three bytes 0, eight bytes of the client's,
/// eight bytes 0.
const Bytes Request = {'C',  'V',  'L',  'C',  '1', 0, 0, 0, 0x11, 0x22, 0x33, 0x44,
                       0x55, 0x66, 0x77, 0x88, 0,   0, 0, 0, 0,    0,    0,    0};

const Bytes TcpReply = {'C',  'V',  'L',  'S',  '5',  'U',  'T',  'C',  0x11, 0x22, 0x33, 0x44,
                        0x55, 0x66, 0x77, 0x88, 0x01, 0x6B, 0x81, 0x94, 0x0A, 0x0A, 0x0A, 0x40};

const Bytes UdpReply = {'C',  'V',  'L',  'S',  '5',  0,    0,    0,    0x11, 0x22, 0x33, 0x44,
                        0x55, 0x66, 0x77, 0x88, 0x01, 0x6B, 0x81, 0x94, 0x40, 0x0A, 0x0A, 0x0A};

Bytes Cut(const Bytes &bytes, std::size_t length) {
  Bytes cut = bytes;
  cut.resize(length);
  return cut;
}

Bytes WithHead(std::string_view head) {
  Bytes request = Request;
  std::copy(head.begin(), head.end(), request.begin());
  return request;
}

class ClientProtocolTest : public ServiceTest {
 protected:
  ClientProtocolTest() { Clock.StandAtUtc(DateTime::Of(2002, 10, 3, 17, 25, 40), 250); }

  const std::string AfternoonTip = " 10/3/2002 5:25:40 PM ";

  static std::string AfternoonLine(const std::string &rest) {
    return "2002-10-03 17:25:40 10.0.0.7 - CVLS5 TIMEHOST SYSTEM 192.0.2.1 GET TIME - 0 0 " + rest;
  }
};

class ClientOverTcp : public ClientProtocolTest {
 protected:
  ClientOverTcp() { Listening.LoadServers("9"); }

  void Send(FakeConnection &client, const Bytes &bytes) {
    client.Send(bytes);
    Loop.Drain();
  }

  SocketState SlotState(std::int16_t slot = 1) { return Sockets.TCP3777[slot].State(); }
};

TEST_F(ClientOverTcp, WaitsForTheRequest) {
  ShowWindow();
  const FakeConnection &client = Dial(3777);
  EXPECT_EQ(client.Received, Bytes());
  EXPECT_EQ(SlotState(), SocketState::Connected);
  EXPECT_EQ(State.Requests.ReqTCP3777, 1);
  EXPECT_EQ(Window.CVLRemHost[panel::Client].Text(), "10.0.0.7");
  EXPECT_EQ(Window.CVLRemHost[panel::Client].Tip.Text(), AfternoonTip);
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(ClientOverTcp, SendsTheReplyOfTheWorkedExampleAndStaysOpen) {
  FakeConnection &client = Dial(3777);
  Send(client, Request);
  EXPECT_EQ(client.Received, TcpReply);
  EXPECT_EQ(SlotState(), SocketState::Connected);
  EXPECT_FALSE(client.HasEnded);
}

TEST_F(ClientOverTcp, AnswersASecondRequestWithoutCountingIt) {
  FakeConnection &client = Dial(3777);
  Send(client, Request);
  Clock.Pass(1000);
  Send(client, Request);
  ASSERT_EQ(client.Received.size(), 48U);
  EXPECT_EQ(client.Received[24 + 19], 0x95);
  EXPECT_EQ(State.Requests.ReqTCP3777, 1);
}

TEST_F(ClientOverTcp, LogsTheSizeThatItKnows) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Send(Dial(3777), Request);
  EXPECT_EQ(LogLines(),
            std::vector<std::string>{AfternoonLine("24 24 0 3777 CVL Server Client TCP - ")});
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(ClientOverTcp, AnswersAnOpenConnectionInAPause) {
  FakeConnection &client = Dial(3777);
  State.Flags.ServicePaused = true;
  Send(client, Request);
  EXPECT_EQ(client.Received, TcpReply);
}

TEST_F(ClientOverTcp, LeavesAWrongHeadWithoutAReplyAndItsSlotOpen) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  FakeConnection &client = Dial(3777);
  for (const char *head : {"CVLL", "XVLC", "CXLC"}) {
    Send(client, WithHead(head));
  }
  EXPECT_EQ(client.Received, Bytes());
  EXPECT_EQ(SlotState(), SocketState::Connected);
  EXPECT_EQ(Files.Appends, 0);
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
  Send(client, WithHead("CVxx"));
  EXPECT_EQ(client.Received, TcpReply);
}

TEST_F(ClientOverTcp, ClosesAt23Bytes) {
  FakeConnection &client = Dial(3777);
  Send(client, Cut(Request, 23));
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_EQ(client.Received, Bytes());
  EXPECT_TRUE(client.HasEnded);
}

TEST_F(ClientOverTcp, LogsARequestOfAWrongLengthWithAGoodHead) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  FakeConnection &client = Dial(3777);
  Send(client, Cut(Request, 25));
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_EQ(client.Received, Bytes());
  EXPECT_EQ(LogLines(),
            std::vector<std::string>{AfternoonLine("24 25 0 3777 CVL Server Client TCP - ")});
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(ClientOverTcp, LogsAHeadOfFourBytes) {
  State.Flags.EnableLogging = true;
  Send(Dial(3777), Cut(Request, 4));
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_EQ(LogLines(),
            std::vector<std::string>{AfternoonLine("24 4 0 3777 CVL Server Client TCP - ")});
}

TEST_F(ClientOverTcp, ClosesWithoutALineAtFewerThanFourBytes) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  for (const std::size_t length : {1U, 2U, 3U}) {
    FakeConnection &client = Dial(3777);
    Send(client, Cut(Request, length));
    EXPECT_EQ(SlotState(), SocketState::Closed) << length;
    EXPECT_EQ(client.Received, Bytes());
  }
  EXPECT_EQ(Files.Appends, 0);
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(ClientOverTcp, ClosesAtTwoRequestsInOne) {
  Bytes two = Request;
  two.insert(two.end(), Request.begin(), Request.end());
  FakeConnection &client = Dial(3777);
  Send(client, two);
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_EQ(client.Received, Bytes());
}

TEST_F(ClientOverTcp, ClosesAFailedRead) {
  State.Flags.EnableLogging = true;
  Dial(3777);
  Sockets.TCP3777.Events.DataArrival(1, 24);  // nothing has come
  EXPECT_EQ(SlotState(), SocketState::Closed);
  EXPECT_EQ(Files.Appends, 0);
}

TEST_F(ClientOverTcp, HasNoStampInMillisecond999) {
  FakeConnection &client = Dial(3777);
  Clock.StandAtUtc(DateTime::Of(2002, 10, 3, 17, 25, 40), 998);
  Send(client, Request);
  Clock.StandAtUtc(DateTime::Of(2002, 10, 3, 17, 25, 40), 999);
  Send(client, Request);
  ASSERT_EQ(client.Received.size(), 48U);
  EXPECT_EQ(Bytes(client.Received.begin() + 16, client.Received.begin() + 24),
            (Bytes{0x01, 0x6B, 0x81, 0x94, 0x91, 0xEE, 0x7D, 0xFF}));
  EXPECT_EQ(Bytes(client.Received.begin() + 24, client.Received.end()),
            (Bytes{'C',  'V',  'L',  'S',  '5', 'U', 'T', 'C', 0x11, 0x22, 0x33, 0x44,
                   0x55, 0x66, 0x77, 0x88, 0,   0,   0,   0,   0,    0,    0,    0}));
}

TEST_F(ClientOverTcp, HasNoStampBeforeTheEpoch) {
  FakeConnection &client = Dial(3777);
  Clock.StandAtUtc(DateTime::Of(2001, 12, 31, 23, 59, 59), 500);
  Send(client, Request);
  ASSERT_EQ(client.Received.size(), 24U);
  EXPECT_EQ(Bytes(client.Received.begin() + 16, client.Received.end()), Bytes(8));
}

TEST_F(ClientOverTcp, PassesOverAFailedSend) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  FakeConnection &client = Dial(3777);
  Net.Fail(Operation::Send, error_number::NoBuffers);
  Send(client, Request);
  EXPECT_EQ(client.Received, Bytes());
  EXPECT_EQ(LogLines().size(), 1U);
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(ClientOverTcp, KeepsTheSlotOfAClientThatEndsItsConnection) {
  Dial(3777).End();
  Loop.Drain();
  EXPECT_EQ(SlotState(), SocketState::Closing);
  Dial(3777);
  EXPECT_EQ(Sockets.TCP3777.Highest(), 2);
}

TEST_F(ClientOverTcp, AnswersARequestThatTheEndFollows) {
  FakeConnection &client = Dial(3777);
  client.Send(Request);
  client.End();
  Loop.Drain();
  EXPECT_EQ(client.Received, TcpReply);
}

TEST_F(ClientOverTcp, ClosesABrokenConnection) {
  Dial(3777).Break();
  Loop.Drain();
  EXPECT_EQ(SlotState(), SocketState::Closed);
}

class ClientOverUdp : public ClientProtocolTest {
 protected:
  ClientOverUdp() { Listening.LoadServers("8"); }
};

TEST_F(ClientOverUdp, SendsTheReplyOfTheWorkedExample) {
  Arrive(3777, Request);
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(Net.Sent[0].Data, UdpReply);
  EXPECT_EQ(Net.Sent[0].To, Alice);
}

TEST_F(ClientOverUdp, AnswersBeforeTheFirstSync) {
  State.Flags.TimeSynced = false;
  Arrive(3777, Request);
  EXPECT_EQ(SentBytes(), UdpReply);
}

TEST_F(ClientOverUdp, NeverCounts) {
  Arrive(3777, Request);
  Arrive(3777, "short");
  EXPECT_EQ(State.Requests.ReqUDP3777, 0);
}

TEST_F(ClientOverUdp, IsLeftOutOfTheTotals) {
  ShowWindow();
  Arrive(3777, Request);
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_THAT(State.Status.StatusText.Text(),
              testing::HasSubstr("\r# 0 | /T 0 | /D 0 | /S 0 | /U 0 | "
                                 "/CVL 0\r# UDP: 0 --- # TCP: 0\r"));
}

TEST_F(ClientOverUdp, ShowsAndLogsTheClient) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Arrive(3777, Request);
  EXPECT_EQ(Window.CVLRemHost[panel::Client].Text(), "10.0.0.7");
  EXPECT_EQ(Window.CVLRemHost[panel::Client].Tip.Text(), AfternoonTip);
  EXPECT_EQ(LogLines(),
            std::vector<std::string>{AfternoonLine("24 24 0 3777 CVL Server Client UDP - ")});
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
}

TEST_F(ClientOverUdp, IsDroppedInAPause) {
  ShowWindow();
  State.Flags.ServicePaused = true;
  Arrive(3777, Request);
  EXPECT_EQ(Net.Sent.size(), 0U);
  EXPECT_FALSE(IsLit(Udp));
}

TEST_F(ClientOverUdp, LightsTheLampsForAnyLengthAndAnswers24BytesAlone) {
  State.Flags.EnableLogging = true;
  for (const std::size_t length : {0U, 3U, 4U, 23U, 25U, 1500U}) {
    ShowWindow();
    Arrive(3777, Cut(Request, length));
    EXPECT_TRUE(IsLit(Received)) << length;
    EXPECT_TRUE(IsLit(Udp)) << length;
    EXPECT_FALSE(IsLit(Sent)) << length;
  }
  EXPECT_EQ(Net.Sent.size(), 0U);
  EXPECT_EQ(Files.Appends, 0);
  EXPECT_EQ(Window.CVLRemHost[panel::Client].Text(), "None");
}

TEST_F(ClientOverUdp, ShowsButDoesNotAnswerAWrongHead) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  for (const char *head : {"CVLL", "XVLC", "CXLC"}) {
    Arrive(3777, WithHead(head));
  }
  EXPECT_EQ(Net.Sent.size(), 0U);
  EXPECT_EQ(Window.CVLRemHost[panel::Client].Text(), "10.0.0.7");
  EXPECT_EQ(Files.Appends, 0);
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(ClientOverUdp, SendsTheClientsOwnBytesBackWithoutAStamp) {
  Bytes request = Request;
  std::fill(request.begin() + 16, request.end(), std::uint8_t{0xEE});
  Bytes reply = UdpReply;
  std::fill(reply.begin() + 16, reply.end(), std::uint8_t{0xEE});
  for (const auto &[utc, milliseconds] : {std::pair(DateTime::Of(2002, 10, 3, 17, 25, 40), 999),
                                          std::pair(DateTime::Of(2001, 12, 31, 23, 59, 59), 500),
                                          std::pair(DateTime::Of(2138, 2, 7, 6, 28, 16), 500)}) {
    Net.Sent.clear();
    Clock.StandAtUtc(utc, milliseconds);
    Arrive(3777, request);
    EXPECT_EQ(SentBytes(), reply);
  }
}

TEST_F(ClientOverUdp, HasAStampUntil2138) {
  Clock.StandAtUtc(DateTime::Of(2138, 2, 7, 6, 28, 15), 500);
  Arrive(3777, Request);
  EXPECT_EQ(Bytes(Net.Sent.at(0).Data.begin() + 16, Net.Sent.at(0).Data.end()),
            (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0x80, 0x0A, 0x0A, 0x0A}));
}

TEST_F(ClientOverUdp, LogsNothingOfAFailedSend) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Net.Fail(Operation::SendTo, error_number::NoBuffers);
  Arrive(3777, Request);
  EXPECT_EQ(Files.Appends, 0);
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(ClientOverUdp, StopsWhenTheDatagramCanNotBeRead) {
  ShowWindow();
  Sockets.UDP3777.OnDataArrival(24);  // there is none
  EXPECT_TRUE(IsLit(Received));
  EXPECT_TRUE(IsLit(Udp));
  EXPECT_EQ(Window.CVLRemHost[panel::Client].Text(), "None");
}

class GetCVLSM : public ClientProtocolTest {
 protected:
  GetCVLSM() {
    std::copy(UdpReply.begin(), UdpReply.end(), Client.ServerMessage.begin());
    Client.ServerMessage[20] = 0x40;
    Client.ServerMessage[21] = Client.ServerMessage[22] = Client.ServerMessage[23] = 0;
  }
};

TEST_F(GetCVLSM, ReadsAStampInSeconds) {
  EXPECT_EQ(Client.GetCVLSM(16), 23822740.25);
}

TEST_F(GetCVLSM, TakesTheBiasAway) {
  Clock.Zone.Bias = 420;
  EXPECT_EQ(Client.GetCVLSM(16), 23822740.25 - 25200);
}

TEST_F(GetCVLSM, ReadsAnUnsignedNumber) {
  std::fill(Client.ServerMessage.begin(), Client.ServerMessage.begin() + 4, std::uint8_t{0xFF});
  std::fill(Client.ServerMessage.begin() + 4, Client.ServerMessage.begin() + 8, std::uint8_t{0});
  EXPECT_EQ(Client.GetCVLSM(0), 4294967295.0);
}

TEST_F(GetCVLSM, FailsWith9OutsideTheMessage) {
  EXPECT_NO_THROW(Client.GetCVLSM(0));
  for (const int offset : {-1, -4, -8, -32768, 17, 20, 24, 32767}) {
    ExpectRuntimeError(error_number::SubscriptOutOfRange,
                       [&] { return Client.GetCVLSM(static_cast<std::int16_t>(offset)); });
  }
}

}  // namespace
}  // namespace cvl
