#include "tools/query/exchange.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include "scripted_peer.h"
#include "tools/query/describe.h"
#include "tools/system/socket_address.h"
#include "tools/wire/ntp_packet.h"

namespace cvl::tools {
namespace {

using namespace std::chrono_literals;

/// Far more than an exchange on loopback needs.
constexpr auto Long = 10s;
/// For what never comes.
constexpr auto Short = 30ms;

const SystemClock MachineClock;

Exchange AskPeer(const Question &question, const ScriptedPeer &peer,
                 std::chrono::milliseconds timeout = Long) {
  return Ask(question, peer.Where(), timeout, MachineClock);
}

bool IsAnswered(const Exchange &exchange) {
  return Describe(exchange, Form::Readable).Answered;
}

/// What a true server says to an NTP request.
std::vector<Bytes> NtpAnswer(const Bytes &request) {
  NtpPacket reply;
  reply.Mode = NtpModeServer;
  reply.Originate = ReadNtpTime(request, NtpTransmitOffset);
  reply.Receive = reply.Transmit = MachineClock.WallTime();
  const auto bytes = EncodeNtpPacket(reply);
  return {{bytes.begin(), bytes.end()}};
}

Bytes ClientReply(const Bytes &request, std::string_view head) {
  Bytes reply = request;
  std::copy(head.begin(), head.end(), reply.begin());
  reply[23] = 1;
  return reply;
}

TEST(Ask, NtpOverUdp) {
  ScriptedPeer peer{Transport::Udp, {.Answer = NtpAnswer}};
  const Exchange exchange = AskPeer({Service::Ntp, Transport::Udp}, peer);
  EXPECT_EQ(exchange.End, Ending::Enough);
  EXPECT_EQ(peer.Request(), exchange.Request);
  EXPECT_GE(SecondsBetween(ReadNtpTime(exchange.Request, NtpTransmitOffset), exchange.LastArrival),
            0.0);
  EXPECT_TRUE(IsAnswered(exchange));
}

TEST(Ask, NtpOverTcp) {
  ScriptedPeer peer{Transport::Tcp, {.Answer = NtpAnswer, .RequestLength = NtpLength}};
  const Exchange exchange = AskPeer({Service::Ntp, Transport::Tcp}, peer);
  EXPECT_EQ(exchange.End, Ending::Closed);
  EXPECT_EQ(peer.Request(), exchange.Request);
  EXPECT_TRUE(IsAnswered(exchange));
}

TEST(Ask, TimeOverUdpComesInFourDatagrams) {
  ScriptedPeer peer{Transport::Udp, {.Answer = Always({{0xC1}, {0x46}, {0xAF}, {0xC0}})}};
  const Exchange exchange = AskPeer({Service::Time, Transport::Udp}, peer);
  EXPECT_EQ(exchange.Pieces, (std::vector<Bytes>{{0xC1}, {0x46}, {0xAF}, {0xC0}}));
  EXPECT_TRUE(peer.Request().empty());
  EXPECT_TRUE(IsAnswered(exchange));
}

TEST(Ask, TimeOverTcpComesByteByByte) {
  const ScriptedPeer peer{Transport::Tcp, {.Answer = Always({{0xC1}, {0x46}, {0xAF}, {0xC0}})}};
  const Exchange exchange = AskPeer({Service::Time, Transport::Tcp}, peer);
  EXPECT_EQ(exchange.Pieces, (std::vector<Bytes>{{0xC1, 0x46, 0xAF, 0xC0}}));
  EXPECT_TRUE(IsAnswered(exchange));
}

TEST(Ask, DaytimeOverBothTransports) {
  for (const Transport transport : {Transport::Udp, Transport::Tcp}) {
    const ScriptedPeer peer{transport, {.Answer = Always({{'n', 'o', 'w'}})}};
    const Exchange exchange = AskPeer({Service::Daytime, transport}, peer);
    EXPECT_EQ(exchange.Pieces, (std::vector<Bytes>{{'n', 'o', 'w'}}));
    EXPECT_TRUE(IsAnswered(exchange));
  }
}

TEST(Ask, UnixTimeOverTcp) {
  const ScriptedPeer peer{Transport::Tcp, {.Answer = Always({{0x3D, 0x9C, 0x31, 0x40}})}};
  EXPECT_TRUE(IsAnswered(AskPeer({Service::Unix, Transport::Tcp}, peer)));
}

TEST(Ask, ClientProtocolOverUdp) {
  const ScriptedPeer peer{Transport::Udp, {.Answer = [](const Bytes &request) {
                            return std::vector<Bytes>{ClientReply(request, "CVLS5")};
                          }}};
  EXPECT_TRUE(IsAnswered(AskPeer({Service::Client, Transport::Udp}, peer)));
}

TEST(Ask, ClientProtocolOverTcpDoesNotWaitForTheClose) {
  const ScriptedPeer peer{Transport::Tcp,
                          {.Answer =
                               [](const Bytes &request) {
                                 return std::vector<Bytes>{ClientReply(request, "CVLS5UTC")};
                               },
                           .RequestLength = 24,
                           .Closes = false}};
  const Exchange exchange = AskPeer({Service::Client, Transport::Tcp}, peer);
  EXPECT_EQ(exchange.End, Ending::Enough);
  EXPECT_TRUE(IsAnswered(exchange));
}

TEST(Ask, TakesAnEmptyDatagramForWhatItIs) {
  const ScriptedPeer peer{Transport::Udp, {.Answer = Always({Bytes{}})}};
  const Exchange exchange = AskPeer({Service::Daytime, Transport::Udp}, peer);
  EXPECT_EQ(exchange.Pieces, (std::vector<Bytes>{{}}));
  EXPECT_FALSE(IsAnswered(exchange));
}

TEST(Ask, StopsReadingWhatIsTooLong) {
  const ScriptedPeer peer{Transport::Tcp,
                          {.Answer = Always({Bytes(100'000, 'x')}), .Closes = false}};
  const Exchange exchange = AskPeer({Service::Daytime, Transport::Tcp}, peer);
  EXPECT_EQ(exchange.End, Ending::Enough);
  EXPECT_FALSE(IsAnswered(exchange));
}

TEST(Ask, GivesUpOnASilentServer) {
  const ScriptedPeer udp{Transport::Udp, {}};
  EXPECT_EQ(AskPeer({Service::Ntp, Transport::Udp}, udp, Short).End, Ending::TimedOut);
  const ScriptedPeer tcp{Transport::Tcp, {.Closes = false}};
  EXPECT_EQ(AskPeer({Service::Time, Transport::Tcp}, tcp, Short).End, Ending::TimedOut);
}

/// A clock by which all time is over once it has been asked for the wall time `Limit`
/// times: once when the request is made, then for each arrival.
class ImpatientClock final : public Clock {
 public:
  explicit ImpatientClock(int limit) : Limit_{limit} {}
  [[nodiscard]] NtpTime WallTime() const override {
    ++Asked_;
    return {};
  }
  [[nodiscard]] std::int64_t MonotonicMs() const override {
    return Asked_ < Limit_ ? 0 : 1'000'000'000;
  }

 private:
  int Limit_;
  mutable int Asked_ = 0;
};

TEST(Ask, KeepsWhatCameBeforeTheTimeWasOver) {
  const ScriptedPeer peer{Transport::Udp, {.Answer = Always({{0xC1}, {0x46}, {0xAF}, {0xC0}})}};
  const ImpatientClock clock{3};
  const Exchange exchange = Ask({Service::Time, Transport::Udp}, peer.Where(), Long, clock);
  EXPECT_EQ(exchange.End, Ending::TimedOut);
  EXPECT_EQ(exchange.Pieces, (std::vector<Bytes>{{0xC1}, {0x46}}));
}

TEST(Ask, GrantsNoNewTimeForEachByte) {
  // The close comes behind the text, but only one with time left would see it.
  const ScriptedPeer peer{Transport::Tcp, {.Answer = Always({{'n', 'o', 'w'}})}};
  const ImpatientClock clock{2};
  const Exchange exchange = Ask({Service::Daytime, Transport::Tcp}, peer.Where(), Long, clock);
  EXPECT_EQ(exchange.End, Ending::TimedOut);
  EXPECT_FALSE(IsAnswered(exchange));
}

TEST(Ask, SeesAConnectionClosedWithoutAWord) {
  const ScriptedPeer peer{Transport::Tcp, {}};
  const Exchange exchange = AskPeer({Service::Unix, Transport::Tcp}, peer);
  EXPECT_EQ(exchange.End, Ending::Closed);
  EXPECT_TRUE(exchange.Pieces.empty());
}

TEST(Ask, TellsThatNobodyListens) {
  // Bound but not listening, so that nobody else gets the port meanwhile.
  const Descriptor idle = LoopbackSocket(SOCK_STREAM);
  const Exchange exchange =
      Ask({Service::Unix, Transport::Tcp}, LocalEndOf(idle.Number()), Long, MachineClock);
  EXPECT_EQ(exchange.End, Ending::Failed);
  EXPECT_EQ(exchange.Failure, ErrorText(ECONNREFUSED));
}

TEST(Ask, TakesNoDatagramFromAnotherSender) {
  const Descriptor stranger = LoopbackSocket(SOCK_DGRAM);
  // The stranger can't know the client's port before it has asked; the peer tells it.
  const Descriptor server = LoopbackSocket(SOCK_DGRAM);
  std::thread forger{[&] {
    char byte = 0;
    sockaddr_in client{};
    socklen_t length = sizeof client;
    recvfrom(server.Number(), &byte, 1, 0, reinterpret_cast<sockaddr *>(&client), &length);
    sendto(stranger.Number(), "forged", 6, 0, reinterpret_cast<const sockaddr *>(&client), length);
    sendto(server.Number(), "true", 4, 0, reinterpret_cast<const sockaddr *>(&client), length);
  }};
  const Exchange exchange =
      Ask({Service::Daytime, Transport::Udp}, LocalEndOf(server.Number()), Long, MachineClock);
  forger.join();
  EXPECT_EQ(exchange.Pieces, (std::vector<Bytes>{{'t', 'r', 'u', 'e'}}));
}

}  // namespace
}  // namespace cvl::tools
