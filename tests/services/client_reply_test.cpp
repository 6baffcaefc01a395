#include <gtest/gtest.h>

#include <numeric>

#include "services/client_protocol.h"
#include "tests/support/expect_error.h"

namespace cvl {
namespace {

constexpr NtpTimestamp Stamp = {0x01, 0x6B, 0x81, 0x94, 0x40, 0x0A, 0x0B, 0x0C};

/// 24 bytes that are all different, from 0x50 on.
ClientMessage Numbered() {
  ClientMessage message;
  std::iota(message.begin(), message.end(), std::uint8_t{0x50});
  return message;
}

ClientMessage RequestOf(std::uint8_t first, std::uint8_t second, std::uint8_t third,
                        std::uint8_t fourth) {
  ClientMessage request = Numbered();
  request[0] = first;
  request[1] = second;
  request[2] = third;
  request[3] = fourth;
  return request;
}

TEST(IsClientRequest, WantsCAndVAndAnythingButLAtOffset3) {
  EXPECT_TRUE(IsClientRequest(RequestOf('C', 'V', 'L', 'C')));
  EXPECT_FALSE(IsClientRequest(RequestOf('C', 'V', 'L', 'L')));
  EXPECT_FALSE(IsClientRequest(RequestOf('c', 'V', 'L', 'C')));
  EXPECT_FALSE(IsClientRequest(RequestOf('C', 'v', 'L', 'C')));
}

TEST(IsClientRequest, NeverLooksAtOffset2) {
  for (int third = 0; third < 256; ++third) {
    EXPECT_TRUE(IsClientRequest(RequestOf('C', 'V', static_cast<std::uint8_t>(third), 'C')));
  }
}

TEST(IsClientRequest, TakesEveryByteButOneAtOffset3) {
  for (int fourth = 0; fourth < 256; ++fourth) {
    EXPECT_EQ(IsClientRequest(RequestOf('C', 'V', 'L', static_cast<std::uint8_t>(fourth))),
              fourth != 'L');
  }
}

TEST(IsClientRequest, FailsWith9WhereAnOffsetThatItTestsIsMissing) {
  const ClientMessage request = RequestOf('C', 'V', 'L', 'C');
  const std::span bytes(request);
  EXPECT_TRUE(IsClientRequest(bytes.first(4)));
  for (const std::size_t length : {0U, 1U, 2U, 3U}) {
    ExpectRuntimeError(error_number::SubscriptOutOfRange,
                       [&] { return IsClientRequest(bytes.first(length)); });
  }
}

TEST(IsClientRequest, IsNoneAsSoonAsAByteIsWrong) {
  const ClientMessage request = RequestOf('X', 'V', 'L', 'C');
  EXPECT_FALSE(IsClientRequest(std::span(request).first(1)));
}

TEST(TcpClientReply, HasFractionLeastSignificantByteFirst) {
  EXPECT_EQ(
      TcpClientReply(Numbered(), Stamp),
      (ClientMessage{'C',  'V',  'L',  'S',  '5',  'U',  'T',  'C',  0x58, 0x59, 0x5A, 0x5B,
                     0x5C, 0x5D, 0x5E, 0x5F, 0x01, 0x6B, 0x81, 0x94, 0x0C, 0x0B, 0x0A, 0x40}));
}

TEST(TcpClientReply, HasZeroesWithoutAStamp) {
  const ClientMessage reply = TcpClientReply(Numbered(), std::nullopt);
  EXPECT_EQ(reply[15], 0x5F);
  for (std::size_t at = 16; at < reply.size(); ++at) {
    EXPECT_EQ(reply[at], 0) << at;
  }
}

TEST(TcpClientReply, HasZeroesForWhatAShortRequestLacks) {
  const ClientMessage request = Numbered();
  const ClientMessage reply = TcpClientReply(std::span(request).first(10), Stamp);
  EXPECT_EQ(reply[8], 0x58);
  EXPECT_EQ(reply[9], 0x59);
  EXPECT_EQ(reply[10], 0);
  EXPECT_EQ(reply[16], 0x01);
  EXPECT_EQ(TcpClientReply({}, Stamp)[7], 'C');
}

TEST(MakeUdpClientReply, KeepsTheClientsBytesAndHasNoUtc) {
  ClientMessage message = Numbered();
  MakeUdpClientReply(message, Stamp);
  EXPECT_EQ(message, (ClientMessage{'C',  'V',  'L',  'S',  '5',  0x55, 0x56, 0x57,
                                    0x58, 0x59, 0x5A, 0x5B, 0x5C, 0x5D, 0x5E, 0x5F,
                                    0x01, 0x6B, 0x81, 0x94, 0x40, 0x0A, 0x0B, 0x0C}));
}

TEST(MakeUdpClientReply, KeepsTheClientsBytesAlsoInPlaceOfAMissingStamp) {
  ClientMessage message = Numbered();
  MakeUdpClientReply(message, std::nullopt);
  EXPECT_EQ(message[3], 'S');
  for (std::size_t at = 5; at < message.size(); ++at) {
    EXPECT_EQ(message[at], 0x50 + at) << at;
  }
}

}  // namespace
}  // namespace cvl
