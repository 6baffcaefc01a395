#include "tools/upstream/answer.h"

#include <gtest/gtest.h>

#include "tools/wire/ntp_packet.h"

namespace cvl::tools {
namespace {

constexpr NtpTime Received{0xC146AFC0, 0x40000000};
constexpr NtpTime Transmitted{0xC146AFC0, 0x40001000};
constexpr NtpTime ClientStamp{0x01020304, 0x05060708};

Bytes Request(std::uint8_t version = 3) {
  NtpPacket packet;
  packet.Version = version;
  packet.Mode = NtpModeClient;
  packet.Poll = 6;
  packet.Transmit = ClientStamp;
  const auto bytes = EncodeNtpPacket(packet);
  return {bytes.begin(), bytes.end()};
}

NtpPacket Answer(const Behaviour &behaviour) {
  const auto packet = DecodeNtpPacket(BuildAnswer(Request(), behaviour, Received, Transmitted));
  EXPECT_TRUE(packet);
  return packet.value_or(NtpPacket{});
}

TEST(IsClientRequest, Wants48BytesInClientMode) {
  EXPECT_TRUE(IsClientRequest(Request()));
  const Bytes request = Request();
  EXPECT_FALSE(IsClientRequest(ByteView{request}.first(47)));
  Bytes longer = Request();
  longer.push_back(0);
  EXPECT_FALSE(IsClientRequest(longer));
  Bytes server = Request();
  server[0] = 0x24;
  EXPECT_FALSE(IsClientRequest(server));
}

TEST(BuildAnswer, TellsTheTimeOfStratumOne) {
  const NtpPacket answer = Answer({});
  EXPECT_EQ(answer.Leap, 0);
  EXPECT_EQ(answer.Version, 3);
  EXPECT_EQ(answer.Mode, NtpModeServer);
  EXPECT_EQ(answer.Stratum, 1);
  EXPECT_EQ(answer.Poll, 6);
  EXPECT_EQ(answer.Precision, -20);
  EXPECT_EQ(answer.ReferenceId, (std::array<std::uint8_t, 4>{'L', 'O', 'C', 'L'}));
  EXPECT_EQ(answer.Reference, (NtpTime{Received.Seconds, 0}));
  EXPECT_EQ(answer.Originate, ClientStamp);
  EXPECT_EQ(answer.Receive, Received);
  EXPECT_EQ(answer.Transmit, Transmitted);
}

TEST(BuildAnswer, CopiesTheVersion) {
  EXPECT_EQ(BuildAnswer(Request(4), {}, Received, Transmitted)[0], 0x24);
  EXPECT_EQ(BuildAnswer(Request(3), {}, Received, Transmitted)[0], 0x1C);
}

TEST(BuildAnswer, ShiftsItsMoments) {
  Behaviour behaviour;
  behaviour.ShiftMs = -1250;
  const NtpPacket answer = Answer(behaviour);
  EXPECT_EQ(answer.Receive, (NtpTime{0xC146AFBF, 0}));
  EXPECT_EQ(answer.Transmit, (NtpTime{0xC146AFBF, 0x1000}));
  EXPECT_EQ(answer.Originate, ClientStamp);
}

TEST(BuildAnswer, InvertsTheBytesThatItDoesNotEcho) {
  Behaviour behaviour;
  behaviour.EchoBytes = {true, false, false, true, false, false, false, true};
  EXPECT_EQ(Answer(behaviour).Originate, (NtpTime{0x01FDFC04, 0xFAF9F808}));
  behaviour.EchoBytes = {};
  EXPECT_EQ(Answer(behaviour).Originate, (NtpTime{0xFEFDFCFB, 0xFAF9F8F7}));
}

TEST(BuildAnswer, FixesPartsOfTheTransmitTimestampOnly) {
  Behaviour behaviour;
  behaviour.ShiftMs = 1000;
  behaviour.Fraction = 0xFFDF3B64;
  EXPECT_EQ(Answer(behaviour).Transmit, (NtpTime{0xC146AFC1, 0xFFDF3B64}));
  EXPECT_EQ(Answer(behaviour).Receive, (NtpTime{0xC146AFC1, 0x40000000}));
  behaviour.Seconds = 7;
  EXPECT_EQ(Answer(behaviour).Transmit, (NtpTime{7, 0xFFDF3B64}));
}

TEST(BuildAnswer, IsCutOrFilledUp) {
  const Bytes whole = BuildAnswer(Request(), {}, Received, Transmitted);
  Behaviour behaviour;
  behaviour.Length = 1;
  EXPECT_EQ(BuildAnswer(Request(), behaviour, Received, Transmitted), Bytes{whole[0]});
  behaviour.Length = 0;
  EXPECT_TRUE(BuildAnswer(Request(), behaviour, Received, Transmitted).empty());
  behaviour.Length = 50;
  Bytes longer = whole;
  longer.resize(50);
  EXPECT_EQ(BuildAnswer(Request(), behaviour, Received, Transmitted), longer);
}

}  // namespace
}  // namespace cvl::tools
