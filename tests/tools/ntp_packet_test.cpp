#include "tools/wire/ntp_packet.h"

#include <gtest/gtest.h>

#include <numeric>

namespace cvl::tools {
namespace {

/// Each byte holds its own offset, so that a field read from the wrong place shows.
Bytes NumberedPacket() {
  Bytes bytes(NtpLength);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  bytes[0] = 0x24;
  return bytes;
}

TEST(DecodeNtpPacket, ReadsEachFieldFromItsPlace) {
  Bytes bytes = NumberedPacket();
  bytes[3] = 0xEF;
  const auto packet = DecodeNtpPacket(bytes);
  ASSERT_TRUE(packet);
  EXPECT_EQ(packet->Leap, 0);
  EXPECT_EQ(packet->Version, 4);
  EXPECT_EQ(packet->Mode, NtpModeServer);
  EXPECT_EQ(packet->Stratum, 1);
  EXPECT_EQ(packet->Poll, 2);
  EXPECT_EQ(packet->Precision, -17);
  EXPECT_EQ(packet->RootDelay, 0x04050607U);
  EXPECT_EQ(packet->RootDispersion, 0x08090A0BU);
  EXPECT_EQ(packet->ReferenceId, (std::array<std::uint8_t, 4>{12, 13, 14, 15}));
  EXPECT_EQ(packet->Reference, (NtpTime{0x10111213, 0x14151617}));
  EXPECT_EQ(packet->Originate, (NtpTime{0x18191A1B, 0x1C1D1E1F}));
  EXPECT_EQ(packet->Receive, (NtpTime{0x20212223, 0x24252627}));
  EXPECT_EQ(packet->Transmit, (NtpTime{0x28292A2B, 0x2C2D2E2F}));
}

TEST(DecodeNtpPacket, TakesTheFirstByteApart) {
  Bytes bytes(NtpLength);
  bytes[0] = 0xDB;
  const auto packet = DecodeNtpPacket(bytes);
  ASSERT_TRUE(packet);
  EXPECT_EQ(packet->Leap, 3);
  EXPECT_EQ(packet->Version, 3);
  EXPECT_EQ(packet->Mode, NtpModeClient);
}

TEST(DecodeNtpPacket, TakesNoOtherLength) {
  EXPECT_FALSE(DecodeNtpPacket(Bytes(47)));
  EXPECT_TRUE(DecodeNtpPacket(Bytes(48)));
  EXPECT_FALSE(DecodeNtpPacket(Bytes(49)));
  EXPECT_FALSE(DecodeNtpPacket(Bytes{}));
}

TEST(EncodeNtpPacket, GivesBackWhatWasDecoded) {
  const Bytes bytes = NumberedPacket();
  const auto encoded = EncodeNtpPacket(*DecodeNtpPacket(bytes));
  EXPECT_EQ(Bytes(encoded.begin(), encoded.end()), bytes);
}

TEST(SampleOf, ComputesOffsetAndDelay) {
  NtpPacket reply;
  reply.Receive = {110, 0};
  reply.Transmit = {111, 0};
  // Sent at 100, arrived at 103: two seconds on the road, and the server nine ahead.
  const NtpSample sample = SampleOf({100, 0}, reply, {103, 0});
  EXPECT_DOUBLE_EQ(sample.Offset, 9.0);
  EXPECT_DOUBLE_EQ(sample.Delay, 2.0);
}

TEST(SampleOf, HasANegativeOffsetForAServerBehind) {
  NtpPacket reply;
  reply.Receive = {90, 0};
  reply.Transmit = {90, 0};
  const NtpSample sample = SampleOf({100, 0}, reply, {101, 0});
  EXPECT_DOUBLE_EQ(sample.Offset, -10.5);
  EXPECT_DOUBLE_EQ(sample.Delay, 1.0);
}

}  // namespace
}  // namespace cvl::tools
