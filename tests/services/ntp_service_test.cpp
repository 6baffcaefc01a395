// The NTP service over UDP.

#include "services/ntp_service.h"

#include <numeric>

#include "tests/services/service_bench.h"

namespace cvl {
namespace {

constexpr std::size_t ReferenceId = 12;
constexpr std::size_t Reference = 16;
constexpr std::size_t Originate = 24;
constexpr std::size_t Receive = 32;
constexpr std::size_t Transmit = 40;

const Bytes NoonStamp = {0xC1, 0x46, 0xAF, 0xC0, 0x40, 0x0A, 0x0A, 0x0A};

/// 48 bytes that are all different, from 0x80 on, with BYTE_24 at the place that decides.
Bytes Numbered(std::uint8_t byte_24) {
  Bytes request(48);
  std::iota(request.begin(), request.end(), std::uint8_t{0x80});
  request[Originate] = byte_24;
  return request;
}

class NtpOverUdp : public ServiceTest {
 protected:
  NtpOverUdp() {
    State.Sync.ReferenceStamp = {1, 2, 3, 4, 5, 6, 7, 8};
    State.Sync.SyncStamp = {0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7};
    Listening.LoadServers("4");
  }

  /// The reply to REQUEST; empty when there was none.
  Bytes Reply(const Bytes &request) {
    Net.Sent.clear();
    Arrive(123, request);
    return Net.Sent.empty() ? Bytes() : Net.Sent.back().Data;
  }

  static Bytes Field(const Bytes &reply, std::size_t offset, std::size_t length = 8) {
    if (reply.size() != 48) return {};
    const auto begin = reply.begin() + static_cast<std::ptrdiff_t>(offset);
    return Bytes(begin, begin + static_cast<std::ptrdiff_t>(length));
  }

  /// A packet that echoes three bytes of SyncStamp.
  Bytes Echo() {
    Bytes packet = Numbered(0xA0);
    packet[Originate + 3] = 0xA3;
    packet[Originate + 7] = 0xA7;
    return packet;
  }
};

TEST_F(NtpOverUdp, AnswersWithTheFixedFields) {
  const Bytes reply = Reply(Bytes(48));
  EXPECT_EQ(Field(reply, 0, 12), (Bytes{0x24, 2, 4, 0xEF, 0, 0, 0, 0x4F, 0, 0, 2, 0xA1}));
  EXPECT_EQ(Field(reply, ReferenceId, 4), Bytes(4));
  EXPECT_EQ(Field(reply, Reference), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(Net.Sent.at(0).To, Alice);
}

TEST_F(NtpOverUdp, TakesFieldsFromTheirPlaces) {
  State.Sync.ReplyHeaderByte = 0x1C;
  State.Sync.ReferenceOctets = {192, 0, 2, 1};
  const Bytes reply = Reply(Bytes(48));
  EXPECT_EQ(reply.at(0), 0x1C);
  EXPECT_EQ(Field(reply, ReferenceId, 4), (Bytes{192, 0, 2, 1}));
}

TEST_F(NtpOverUdp, EchoesNothingOfTheRequestsFirst24Bytes) {
  EXPECT_EQ(Field(Reply(Bytes(48, 0)), 0, 24), Field(Reply(Numbered(0)), 0, 24));
}

TEST_F(NtpOverUdp, AnswersARequestOfZeroesWithAnOriginateOfZeroes) {
  EXPECT_EQ(Field(Reply(Bytes(48)), Originate), Bytes(8));
}

TEST_F(NtpOverUdp, EchoesTheTransmitFieldWhereByte24Is0) {
  const Bytes request = Numbered(0);
  EXPECT_EQ(Field(Reply(request), Originate), Field(request, Transmit));
}

TEST_F(NtpOverUdp, EchoesTheOriginateFieldWhereByte24IsNot0) {
  for (const int byte : {0x01, 0x12, 0xFF}) {
    const Bytes request = Numbered(static_cast<std::uint8_t>(byte));
    EXPECT_EQ(Field(Reply(request), Originate), Field(request, Originate));
  }
}

TEST_F(NtpOverUdp, StampsTheArrivalAndTheSending) {
  const std::int64_t noon = Clock.UtcMs;
  // Seconds and milliseconds of the one, then of the other.
  Clock.Script = {noon, noon, noon + 1000, noon + 1250};
  const Bytes reply = Reply(Bytes(48));
  EXPECT_EQ(Field(reply, Receive), NoonStamp);
  EXPECT_EQ(Field(reply, Transmit), (Bytes{0xC1, 0x46, 0xAF, 0xC1, 0x80, 0x0A, 0x0A, 0x0A}));
}

TEST_F(NtpOverUdp, StampsUtc) {
  StandInLosAngeles(DateTime::Of(2002, 10, 3, 5, 0, 0), 250);
  EXPECT_EQ(Field(Reply(Bytes(48)), Transmit), NoonStamp);
}

TEST_F(NtpOverUdp, ShowsTheLastPeerOfDaytime) {
  Listening.LoadServers("0");
  Net.Arrive(13, Bob, "any");
  Loop.Drain();
  Reply(Bytes(48));
  EXPECT_EQ(Window.CVLRemHost[panel::Ntp].Text(), "10.0.0.8");
  EXPECT_EQ(Window.CVLRemHost[panel::Ntp].Tip.Text(), NoonTip);
}

TEST_F(NtpOverUdp, ShowsTheMomentOfTheArrivalsFirstReading) {
  const std::int64_t noon = Clock.UtcMs;
  Clock.Script = {noon, noon + 1000, noon + 2000, noon + 3000};
  Reply(Bytes(48));
  EXPECT_EQ(Window.CVLRemHost[panel::Ntp].Tip.Text(), NoonTip);

  // Also in millisecond 999, which has no timestamp.
  Window.CVLRemHost[panel::Ntp].Tip.Set("");
  Clock.Script = {noon, noon + 749, noon + 749, noon + 749};
  EXPECT_EQ(Reply(Bytes(48)), Bytes());
  EXPECT_EQ(Window.CVLRemHost[panel::Ntp].Tip.Text(), NoonTip);
}

TEST_F(NtpOverUdp, LogsAGoodPacketBeforeItAnswers) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  std::size_t sent = 1;
  bool was_lit = true;
  Files.OnAppend = [&] {
    sent = Net.Sent.size();
    was_lit = IsLit(Sent);
  };
  Reply(Bytes(48));
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("48 48 0 123 NTPv4 UDP - ")});
  EXPECT_EQ(sent, 0U);
  EXPECT_FALSE(was_lit);
  EXPECT_TRUE(IsLit(Received));
  EXPECT_TRUE(IsLit(Udp));
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_TRUE(IsStatusUp());
  EXPECT_EQ(State.Requests.ReqUDP123, 1);
}

TEST_F(NtpOverUdp, RefusesAnyOtherLength) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  for (const std::size_t length : {0U, 1U, 47U, 49U, 68U, 1500U}) {
    EXPECT_EQ(Reply(Bytes(length)), Bytes()) << length;
  }
  EXPECT_EQ(State.Requests.ReqUDP123, 6);
  ASSERT_EQ(LogLines().size(), 6U);
  EXPECT_EQ(LogLines()[2], LogLine("0 47 0 123 NTPv4 UDP - "));
  EXPECT_EQ(LogLines()[4], LogLine("0 68 0 123 NTPv4 UDP - "));
  EXPECT_TRUE(IsLit(Udp));
  EXPECT_FALSE(IsLit(Received));
  EXPECT_FALSE(IsStatusUp());
  EXPECT_EQ(Window.CVLRemHost[panel::Ntp].Text(), "None");
}

TEST_F(NtpOverUdp, RefusesWhatItCanNotRead) {
  State.Flags.EnableLogging = true;
  Sockets.UDP123.OnDataArrival(48);  // there is none
  EXPECT_EQ(LogLines().size(), 1U);
  EXPECT_EQ(State.Requests.ReqUDP123, 1);
  EXPECT_EQ(Net.Sent.size(), 0U);
}

TEST_F(NtpOverUdp, LogsNothingWhileTheLogIsOff) {
  Reply(Bytes(48));
  Reply(Bytes(47));
  EXPECT_EQ(Files.Appends, 0);
}

TEST_F(NtpOverUdp, IsDroppedUncountedInAPause) {
  ShowWindow();
  State.Flags.ServicePaused = true;
  EXPECT_EQ(Reply(Bytes(48)), Bytes());
  EXPECT_EQ(State.Requests.ReqUDP123, 0);
  EXPECT_FALSE(IsLit(Udp));
}

TEST_F(NtpOverUdp, IsCountedAndLoggedAndNotSentBeforeTheFirstSync) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  State.Flags.TimeSynced = false;
  EXPECT_EQ(Reply(Bytes(48)), Bytes());
  EXPECT_EQ(State.Requests.ReqUDP123, 1);
  EXPECT_EQ(LogLines(), std::vector<std::string>{LogLine("48 48 0 123 NTPv4 UDP - ")});
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(NtpOverUdp, HasNoReplyInMillisecond999ButALogLine) {
  ShowWindow();
  State.Flags.EnableLogging = true;
  Clock.StandAtUtc(DateTime::Of(2002, 10, 3, 12, 0, 0), 998);
  EXPECT_EQ(Reply(Bytes(48)).size(), 48U);
  ShowWindow();
  State.Status.StatusText.Set("");
  Clock.StandAtUtc(DateTime::Of(2002, 10, 3, 12, 0, 0), 999);
  EXPECT_EQ(Reply(Bytes(48)), Bytes());
  EXPECT_EQ(LogLines().size(), 2U);
  EXPECT_TRUE(IsLit(Received));
  EXPECT_FALSE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(NtpOverUdp, HasNoReplyWhenMillisecond999FollowsTheArrival) {
  ShowWindow();
  const std::int64_t before = UtcMsOf(DateTime::Of(2002, 10, 3, 12, 0, 0), 998);
  Clock.Script = {before, before, before, before + 1};
  EXPECT_EQ(Reply(Bytes(48)), Bytes());
  EXPECT_TRUE(Clock.Script.empty());
  EXPECT_FALSE(IsLit(Sent));
}

TEST_F(NtpOverUdp, SendsNothingWithoutAMomentOfArrival) {
  ShowWindow();
  const NtpPacket request{};
  ExpectRuntimeError(error_number::SubscriptOutOfRange,
                     [&] { Ntp.GrabTCP123(request, std::nullopt, 0, 0x0A000007); });
  EXPECT_EQ(Net.Sent.size(), 0U);
  EXPECT_FALSE(IsLit(Sent));
}

TEST_F(NtpOverUdp, RepliesToTheGivenAddressAndTheLastSendersPort) {
  Reply(Bytes(48));  // from Alice's port
  Net.Sent.clear();
  Ntp.GrabTCP123(NtpPacket{}, NtpTimestamp{}, 0, 0x0A000009);
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(Net.Sent[0].To, At("10.0.0.9", Alice.Port));
}

TEST_F(NtpOverUdp, IsSilentAboutAFailedSend) {
  ShowWindow();
  Net.Fail(Operation::SendTo, error_number::NoBuffers);
  EXPECT_EQ(Reply(Bytes(48)), Bytes());
  EXPECT_TRUE(IsLit(Sent));
  EXPECT_FALSE(IsStatusUp());
  EXPECT_EQ(Window.CVLRemHost[panel::Ntp].Text(), "");  // not the failure's number
}

TEST_F(NtpOverUdp, EndsTheProcessWhenTheCounterIsFull) {
  State.Requests.ReqUDP123 = INT32_MAX;
  Net.Arrive(123, Alice, Bytes(48));
  ExpectProcessEnds(error_number::Overflow, [&] { Loop.Drain(); });
}

// The answers of time servers, which come to the same socket.

TEST_F(NtpOverUdp, TakesAnEchoOfThreeBytesForTheServersReplyWhileOneIsAwaited) {
  State.Flags.TimeSynced = false;
  State.Sync.SyncWaiting = true;
  EXPECT_EQ(Reply(Echo()), Bytes());
  EXPECT_TRUE(State.Flags.TimeSynced);
  EXPECT_FALSE(State.Sync.SyncWaiting);
  EXPECT_EQ(State.Requests.ReqUDP123, 0);
}

TEST_F(NtpOverUdp, AnswersTheSameEchoWhileNoneIsAwaited) {
  EXPECT_EQ(Field(Reply(Echo()), Originate), Field(Echo(), Originate));
}

TEST_F(NtpOverUdp, AnswersWhatEchoesFewerBytesAlsoWhileAReplyIsAwaited) {
  State.Sync.SyncWaiting = true;
  for (const std::size_t changed : {0U, 3U, 7U}) {
    Bytes packet = Echo();
    ++packet[Originate + changed];
    EXPECT_EQ(Reply(packet).size(), 48U) << changed;
  }
  EXPECT_TRUE(State.Sync.SyncWaiting);
}

TEST_F(NtpOverUdp, TakesOneByteForARefusalWhileAReplyIsAwaited) {
  State.Flags.EnableLogging = true;
  State.Sync.SyncWaiting = true;
  Schedule.CalcIntC();
  Arrive(123, Bytes(1));
  EXPECT_EQ(Schedule.SyncCount(), Schedule.SyncSeconds() - 1);
  EXPECT_EQ(Files.Appends, 0);
  EXPECT_EQ(State.Requests.ReqUDP123, 1);
  Arrive(123, Bytes(2));
  EXPECT_EQ(LogLines().size(), 1U);
}

TEST_F(NtpOverUdp, TakesAReplyFromAnUpstreamThatAFloodIsForgedFor) {
  const Endpoint upstream = At("10.0.0.1", 123);
  State.Flags.TimeSynced = false;
  State.Sync.SyncWaiting = true;
  for (int count = 0; count < 200; ++count) {
    Net.Arrive(123, upstream, Bytes());
  }
  Net.Arrive(123, upstream, Echo());
  Loop.Drain();
  EXPECT_TRUE(State.Flags.TimeSynced);
  EXPECT_FALSE(State.Sync.SyncWaiting);
}

TEST_F(NtpOverUdp, CountsRepeatedRepliesAsRequests) {
  const Endpoint upstream = At("10.0.0.1", 123);
  State.Sync.SyncWaiting = true;
  for (int count = 0; count < 200; ++count) {
    Net.Arrive(123, upstream, Echo());
  }
  Loop.Drain();
  // The first is the reply. Of the others, as many are answered as the loop guard lets through.
  EXPECT_EQ(Net.Sent.size(), static_cast<std::size_t>(LoopGuard::MostPerSecond));
}

}  // namespace
}  // namespace cvl
