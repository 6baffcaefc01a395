#include "tools/wire/client_packet.h"

#include <gtest/gtest.h>

namespace cvl::tools {
namespace {

constexpr NtpTime Mark{0x11223344, 0x55667788};

const Bytes TcpReply{'C',  'V',  'L',  'S',  '5',  'U',  'T',  'C',  0x11, 0x22, 0x33, 0x44,
                     0x55, 0x66, 0x77, 0x88, 0x01, 0x6B, 0x81, 0x94, 0x0A, 0x0B, 0x0C, 0x40};
const Bytes UdpReply{'C',  'V',  'L',  'S',  '5',  0,    0,    0,    0x11, 0x22, 0x33, 0x44,
                     0x55, 0x66, 0x77, 0x88, 0x01, 0x6B, 0x81, 0x94, 0x40, 0x0C, 0x0B, 0x0A};

std::variant<ClientReply, ClientFault> Decode(ByteView reply, ClientForm form) {
  return DecodeClientReply(reply, EncodeClientRequest(Mark), form);
}

void ExpectFault(ByteView reply, ClientForm form, ClientFault fault) {
  const auto outcome = Decode(reply, form);
  ASSERT_TRUE(std::holds_alternative<ClientFault>(outcome));
  EXPECT_EQ(std::get<ClientFault>(outcome), fault);
}

Bytes With(Bytes bytes, std::size_t offset, std::uint8_t value) {
  bytes[offset] = value;
  return bytes;
}

TEST(EncodeClientRequest, HasHeadCodeAndMark) {
  const auto request = EncodeClientRequest(Mark);
  EXPECT_EQ(Bytes(request.begin(), request.end()),
            (Bytes{'C',  'V',  'L',  'C',  '1', 0, 0, 0, 0x11, 0x22, 0x33, 0x44,
                   0x55, 0x66, 0x77, 0x88, 0,   0, 0, 0, 0,    0,    0,    0}));
}

TEST(DecodeClientReply, ReadsTheFractionInTheOrderOfTheTransport) {
  for (const auto &outcome :
       {Decode(TcpReply, ClientForm::Tcp), Decode(UdpReply, ClientForm::Udp)}) {
    ASSERT_TRUE(std::holds_alternative<ClientReply>(outcome));
    const ClientReply &reply = std::get<ClientReply>(outcome);
    EXPECT_EQ(reply.Release, '5');
    EXPECT_EQ(reply.Seconds, 0x016B8194U);
    EXPECT_EQ(reply.Fraction, 0x400C0B0AU);
    EXPECT_TRUE(reply.HasStamp());
  }
}

TEST(DecodeClientReply, TakesNoOtherLength) {
  Bytes longer = TcpReply;
  longer.push_back(0);
  ExpectFault(ByteView{TcpReply}.first(23), ClientForm::Tcp, ClientFault::Length);
  ExpectFault(longer, ClientForm::Tcp, ClientFault::Length);
  ExpectFault(ByteView{}, ClientForm::Udp, ClientFault::Length);
}

TEST(DecodeClientReply, RefusesAnotherHead) {
  ExpectFault(With(TcpReply, 3, 'C'), ClientForm::Tcp, ClientFault::Head);
  ExpectFault(With(UdpReply, 0, 'c'), ClientForm::Udp, ClientFault::Head);
}

TEST(DecodeClientReply, WantsTheZoneOverTcpOnly) {
  ExpectFault(With(TcpReply, 7, 'X'), ClientForm::Tcp, ClientFault::Zone);
  ExpectFault(UdpReply, ClientForm::Tcp, ClientFault::Zone);
  ExpectFault(TcpReply, ClientForm::Udp, ClientFault::NotMyData);
}

TEST(DecodeClientReply, WantsTheClientsDataBack) {
  ExpectFault(With(TcpReply, 8, 0), ClientForm::Tcp, ClientFault::NotMyData);
  ExpectFault(With(TcpReply, 15, 0), ClientForm::Tcp, ClientFault::NotMyData);
  ExpectFault(With(UdpReply, 5, 1), ClientForm::Udp, ClientFault::NotMyData);
}

TEST(DecodeClientReply, KnowsAReplyWithoutStamp) {
  Bytes reply = TcpReply;
  std::fill(reply.begin() + 16, reply.end(), std::uint8_t{0});
  const auto outcome = Decode(reply, ClientForm::Tcp);
  ASSERT_TRUE(std::holds_alternative<ClientReply>(outcome));
  EXPECT_FALSE(std::get<ClientReply>(outcome).HasStamp());
}

TEST(DecodeClientReply, MakesAStrangeReleasePrintable) {
  const auto outcome = Decode(With(TcpReply, 4, 0x1B), ClientForm::Tcp);
  ASSERT_TRUE(std::holds_alternative<ClientReply>(outcome));
  EXPECT_EQ(std::get<ClientReply>(outcome).Release, '?');
}

}  // namespace
}  // namespace cvl::tools
