#include "tools/query/describe.h"

#include <gtest/gtest.h>

#include "tools/wire/client_packet.h"
#include "tools/wire/ntp_packet.h"

namespace cvl::tools {
namespace {

constexpr NtpTime Sent{0xC146AFC0, 0};
constexpr NtpTime Arrived{0xC146AFC0, 0x80000000};

Exchange Answered(const Question &question, std::vector<Bytes> pieces) {
  Exchange exchange;
  exchange.Asked = question;
  exchange.Peer = {LoopbackAddress, DefaultPort(question.Of)};
  exchange.Request = RequestFor(question, Sent);
  exchange.Pieces = std::move(pieces);
  exchange.LastArrival = Arrived;
  exchange.End = question.Over == Transport::Tcp && ShapeOf(question).ServerCloses ? Ending::Closed
                                                                                   : Ending::Enough;
  return exchange;
}

Bytes TextBytes(std::string_view text) {
  return {text.begin(), text.end()};
}

void ExpectAnswer(const Exchange &exchange, const std::string &text) {
  const Report report = Describe(exchange, Form::Readable);
  EXPECT_TRUE(report.Answered);
  EXPECT_EQ(report.Text, text);
}

void ExpectNoAnswer(const Exchange &exchange, const std::string &text) {
  const Report report = Describe(exchange, Form::Readable);
  EXPECT_FALSE(report.Answered);
  EXPECT_EQ(report.Text, text);
}

NtpPacket NtpReply() {
  NtpPacket packet;
  packet.Mode = NtpModeServer;
  packet.Stratum = 2;
  packet.Poll = 4;
  packet.Precision = -17;
  packet.RootDelay = 79;
  packet.RootDispersion = 673;
  packet.ReferenceId = {10, 0, 0, 1};
  packet.Reference = {0xC146AFBF, 0};
  packet.Originate = Sent;
  packet.Receive = {0xC146AFC1, 0x40000000};
  packet.Transmit = {0xC146AFC1, 0x40000000};
  return packet;
}

Bytes Encoded(const NtpPacket &packet) {
  const auto bytes = EncodeNtpPacket(packet);
  return {bytes.begin(), bytes.end()};
}

TEST(DescribeNtp, ShowsTheFieldsWithOffsetAndDelay) {
  ExpectAnswer(Answered({Service::Ntp, Transport::Udp}, {Encoded(NtpReply())}),
               "ntp udp 127.0.0.1:123\n"
               "  leap             0\n"
               "  version          4\n"
               "  mode             4\n"
               "  stratum          2\n"
               "  poll             4\n"
               "  precision        -17\n"
               "  root delay       0.001205 s\n"
               "  root dispersion  0.010269 s\n"
               "  reference id     10.0.0.1\n"
               "  reference        2002-10-03 11:59:59.000000 UTC\n"
               "  originate        2002-10-03 12:00:00.000000 UTC\n"
               "  receive          2002-10-03 12:00:01.250000 UTC\n"
               "  transmit         2002-10-03 12:00:01.250000 UTC\n"
               "  offset           +1.000000 s\n"
               "  delay            0.500000 s\n");
}

TEST(DescribeNtp, ShowsTheReferenceIdOfStratumOneAsAName) {
  NtpPacket packet = NtpReply();
  packet.Stratum = 1;
  packet.ReferenceId = {'G', 'P', 'S', 0};
  const Report report =
      Describe(Answered({Service::Ntp, Transport::Tcp}, {Encoded(packet)}), Form::Readable);
  EXPECT_TRUE(report.Answered);
  EXPECT_NE(report.Text.find("  reference id     GPS\n"), std::string::npos);
}

TEST(DescribeNtp, IsNoAnswerWithoutOurTimestampButShowsTheFields) {
  NtpPacket packet = NtpReply();
  packet.Originate = {Sent.Seconds, 1};
  const Report report =
      Describe(Answered({Service::Ntp, Transport::Udp}, {Encoded(packet)}), Form::Readable);
  EXPECT_FALSE(report.Answered);
  EXPECT_TRUE(
      report.Text.starts_with("ntp udp 127.0.0.1:123\n"
                              "  no answer: the originate timestamp is not the one that was sent\n"
                              "  leap             0\n"));
  EXPECT_EQ(report.Text.find("offset"), std::string::npos);
}

TEST(DescribeNtp, IsNoAnswerWithAnotherLength) {
  const Question question{Service::Ntp, Transport::Udp};
  ExpectNoAnswer(Answered(question, {Bytes{0x24}}),
                 "ntp udp 127.0.0.1:123\n"
                 "  no answer: 1 byte instead of 48\n"
                 "     0  24\n");
  EXPECT_FALSE(Describe(Answered(question, {Bytes(47)}), Form::Readable).Answered);
  EXPECT_FALSE(Describe(Answered(question, {Bytes(49)}), Form::Readable).Answered);
  EXPECT_FALSE(Describe(Answered(question, {Bytes{}}), Form::Readable).Answered);
}

TEST(DescribeTime, PutsFourDatagramsTogether) {
  ExpectAnswer(Answered({Service::Time, Transport::Udp}, {{0xC1}, {0x46}, {0xAF}, {0xC0}}),
               "time udp 127.0.0.1:37\n"
               "  seconds          3242635200\n"
               "  moment           2002-10-03 12:00:00 UTC\n");
}

TEST(DescribeTime, IsNoAnswerWithThreeDatagramsOrOneOfFourBytes) {
  Exchange exchange = Answered({Service::Time, Transport::Udp}, {{0xC1}, {0x46}, {0xAF}});
  exchange.End = Ending::TimedOut;
  ExpectNoAnswer(exchange,
                 "time udp 127.0.0.1:37\n"
                 "  no answer: 3 datagrams instead of 4\n"
                 "     0  c1\n"
                 "     0  46\n"
                 "     0  af\n");
  ExpectNoAnswer(Answered({Service::Time, Transport::Udp}, {{0xC1, 0x46, 0xAF, 0xC0}}),
                 "time udp 127.0.0.1:37\n"
                 "  no answer: 4 bytes instead of 1\n"
                 "     0  c1 46 af c0\n");
}

TEST(DescribeTime, ReadsFourBytesOverTcp) {
  ExpectAnswer(Answered({Service::Time, Transport::Tcp}, {{0xC1, 0x46, 0xAF, 0xC0}}),
               "time tcp 127.0.0.1:37\n"
               "  seconds          3242635200\n"
               "  moment           2002-10-03 12:00:00 UTC\n");
}

TEST(DescribeTime, IsNoAnswerWithAnotherLengthOverTcp) {
  for (const std::size_t length : {1U, 3U, 5U}) {
    EXPECT_FALSE(
        Describe(Answered({Service::Time, Transport::Tcp}, {Bytes(length)}), Form::Readable)
            .Answered);
  }
}

TEST(DescribeTime, IsNoAnswerWhenTheConnectionStaysOpen) {
  Exchange exchange = Answered({Service::Time, Transport::Tcp}, {{0xC1, 0x46, 0xAF, 0xC0}});
  exchange.End = Ending::TimedOut;
  ExpectNoAnswer(exchange,
                 "time tcp 127.0.0.1:37\n"
                 "  no answer: the server did not close the connection\n"
                 "     0  c1 46 af c0\n");
}

TEST(DescribeUnix, CountsFrom1970) {
  ExpectAnswer(Answered({Service::Unix, Transport::Tcp}, {{0x3D, 0x9C, 0x31, 0x40}}),
               "unix tcp 127.0.0.1:519\n"
               "  seconds          1033646400\n"
               "  moment           2002-10-03 12:00:00 UTC\n");
}

TEST(DescribeUnix, IsNoAnswerWithAnotherLength) {
  for (const std::size_t length : {3U, 5U}) {
    EXPECT_FALSE(
        Describe(Answered({Service::Unix, Transport::Tcp}, {Bytes(length)}), Form::Readable)
            .Answered);
  }
}

TEST(DescribeDaytime, ShowsTheTextWithoutTheLineEndsAroundIt) {
  ExpectAnswer(Answered({Service::Daytime, Transport::Tcp},
                        {TextBytes("\n52550 02-10-03 17:25:41 25 0 0 750.0 UTC(CVLS) *\n")}),
               "daytime tcp 127.0.0.1:13\n"
               "  text             52550 02-10-03 17:25:41 25 0 0 750.0 UTC(CVLS) *\n");
}

TEST(DescribeDaytime, EscapesAHostileText) {
  ExpectAnswer(Answered({Service::Daytime, Transport::Udp}, {TextBytes("a\x1B[2J\nb")}),
               "daytime udp 127.0.0.1:13\n"
               "  text             a\\x1b[2J\\x0ab\n");
}

TEST(DescribeDaytime, BelievesNoEmptyAndNoEndlessText) {
  const Question question{Service::Daytime, Transport::Udp};
  EXPECT_TRUE(Describe(Answered(question, {Bytes(LongestDaytime, 'x')}), Form::Readable).Answered);
  EXPECT_FALSE(
      Describe(Answered(question, {Bytes(LongestDaytime + 1, 'x')}), Form::Readable).Answered);
  ExpectNoAnswer(Answered(question, {Bytes{}}),
                 "daytime udp 127.0.0.1:13\n"
                 "  no answer: 0 bytes instead of 1 to 512\n"
                 "  (empty)\n");
}

/// A good reply over UDP to the request that Answered makes.
Bytes ClientUdpReply() {
  Bytes reply = RequestFor({Service::Client, Transport::Udp}, Sent);
  const Bytes head = TextBytes("CVLS5");
  std::copy(head.begin(), head.end(), reply.begin());
  PutBig32(reply, 16, 0x016B8194);
  PutBig32(reply, 20, 0x40000000);
  return reply;
}

TEST(DescribeClient, ShowsReleaseAndMoment) {
  ExpectAnswer(Answered({Service::Client, Transport::Udp}, {ClientUdpReply()}),
               "client udp 127.0.0.1:3777\n"
               "  release          5\n"
               "  moment           2002-10-03 17:25:40.250000 UTC\n");
}

TEST(DescribeClient, ReadsTheTcpFormOverTcp) {
  Bytes reply = ClientUdpReply();
  ExpectNoAnswer(Answered({Service::Client, Transport::Tcp}, {reply}),
                 "client tcp 127.0.0.1:3777\n"
                 "  no answer: the reply does not say UTC\n" +
                     HexDump(reply));
  const Bytes zone = TextBytes("UTC");
  std::copy(zone.begin(), zone.end(), reply.begin() + 5);
  PutBig32(reply, 20, 0x00000040);
  ExpectAnswer(Answered({Service::Client, Transport::Tcp}, {reply}),
               "client tcp 127.0.0.1:3777\n"
               "  release          5\n"
               "  moment           2002-10-03 17:25:40.250000 UTC\n");
}

TEST(DescribeClient, SaysWhenTheServerHadNoStamp) {
  Bytes reply = ClientUdpReply();
  std::fill(reply.begin() + 16, reply.end(), std::uint8_t{0});
  ExpectAnswer(Answered({Service::Client, Transport::Udp}, {reply}),
               "client udp 127.0.0.1:3777\n"
               "  release          5\n"
               "  moment           none\n");
}

TEST(DescribeClient, IsNoAnswerWithAnotherLengthHeadOrData) {
  const Question question{Service::Client, Transport::Udp};
  const auto text = [&](const Bytes &reply) {
    const Report report = Describe(Answered(question, {reply}), Form::Readable);
    EXPECT_FALSE(report.Answered);
    return report.Text.substr(0, report.Text.find('\n', report.Text.find('\n') + 1));
  };
  const std::string title = "client udp 127.0.0.1:3777\n  no answer: ";
  EXPECT_EQ(text(Bytes(23)), title + "23 bytes instead of 24");
  EXPECT_EQ(text(Bytes(25)), title + "25 bytes instead of 24");
  EXPECT_EQ(text(Bytes(24)), title + "the reply does not begin with CVLS");
  Bytes reply = ClientUdpReply();
  reply[8] ^= 1;
  EXPECT_EQ(text(reply), title + "the reply does not return the data that was sent");
}

TEST(Describe, ShowsTheBytesOfAnAnswerWhenAsked) {
  const Report report = Describe(
      Answered({Service::Time, Transport::Udp}, {{0xC1}, {0x46}, {0xAF}, {0xC0}}), Form::Hex);
  EXPECT_TRUE(report.Answered);
  EXPECT_EQ(report.Text,
            "time udp 127.0.0.1:37\n"
            "     0  c1\n"
            "     0  46\n"
            "     0  af\n"
            "     0  c0\n");
}

TEST(Describe, StillJudgesWhatItShowsAsBytes) {
  const Report report = Describe(Answered({Service::Ntp, Transport::Udp}, {Bytes(48)}), Form::Hex);
  EXPECT_FALSE(report.Answered);
  EXPECT_EQ(report.Text,
            "ntp udp 127.0.0.1:123\n"
            "  no answer: the originate timestamp is not the one that was sent\n" +
                HexDump(Bytes(48)));
}

TEST(Describe, TellsWhyNothingCame) {
  Exchange exchange = Answered({Service::Unix, Transport::Tcp}, {});
  ExpectNoAnswer(exchange,
                 "unix tcp 127.0.0.1:519\n"
                 "  no answer: the connection was closed without a reply\n");
  exchange.End = Ending::TimedOut;
  ExpectNoAnswer(exchange,
                 "unix tcp 127.0.0.1:519\n"
                 "  no answer: nothing came in time\n");
  exchange.End = Ending::Failed;
  exchange.Failure = "Connection refused";
  ExpectNoAnswer(exchange,
                 "unix tcp 127.0.0.1:519\n"
                 "  no answer: Connection refused\n");
}

}  // namespace
}  // namespace cvl::tools
