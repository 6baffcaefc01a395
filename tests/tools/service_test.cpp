#include "tools/query/service.h"

#include <gtest/gtest.h>

#include "tools/wire/client_packet.h"
#include "tools/wire/ntp_packet.h"

namespace cvl::tools {
namespace {

constexpr Question NtpUdp{Service::Ntp, Transport::Udp};
constexpr Question TimeUdp{Service::Time, Transport::Udp};
constexpr Question TimeTcp{Service::Time, Transport::Tcp};
constexpr Question ClientTcp{Service::Client, Transport::Tcp};

TEST(Service, IsFoundByItsName) {
  for (const Service service :
       {Service::Ntp, Service::Time, Service::Daytime, Service::Unix, Service::Client}) {
    EXPECT_EQ(ServiceNamed(ServiceName(service)), service);
  }
  EXPECT_FALSE(ServiceNamed("all"));
  EXPECT_FALSE(ServiceNamed(""));
}

TEST(Service, HasItsUsualPort) {
  EXPECT_EQ(DefaultPort(Service::Ntp), 123);
  EXPECT_EQ(DefaultPort(Service::Time), 37);
  EXPECT_EQ(DefaultPort(Service::Daytime), 13);
  EXPECT_EQ(DefaultPort(Service::Unix), 519);
  EXPECT_EQ(DefaultPort(Service::Client), 3777);
}

TEST(QuestionsFor, AllAreNineWithoutUnixTimeOverUdp) {
  const std::vector<Question> wanted{
      {Service::Ntp, Transport::Udp},     {Service::Ntp, Transport::Tcp},
      {Service::Time, Transport::Udp},    {Service::Time, Transport::Tcp},
      {Service::Daytime, Transport::Udp}, {Service::Daytime, Transport::Tcp},
      {Service::Unix, Transport::Tcp},    {Service::Client, Transport::Udp},
      {Service::Client, Transport::Tcp}};
  EXPECT_EQ(QuestionsFor({}, {}), wanted);
}

TEST(QuestionsFor, AllOverOneTransport) {
  EXPECT_EQ(QuestionsFor({}, Transport::Udp).size(), 4U);
  EXPECT_EQ(QuestionsFor({}, Transport::Tcp).size(), 5U);
}

TEST(QuestionsFor, OneServiceOverBothTransports) {
  EXPECT_EQ(QuestionsFor(Service::Time, {}), (std::vector<Question>{TimeUdp, TimeTcp}));
}

TEST(QuestionsFor, UnixTimeOverUdpOnlyWhenNamed) {
  EXPECT_EQ(QuestionsFor(Service::Unix, {}),
            (std::vector<Question>{{Service::Unix, Transport::Tcp}}));
  EXPECT_EQ(QuestionsFor(Service::Unix, Transport::Udp),
            (std::vector<Question>{{Service::Unix, Transport::Udp}}));
}

TEST(RequestFor, NtpIsAVersion4ClientWithTheTimeInItsTransmitField) {
  const Bytes request = RequestFor(NtpUdp, {0xC146AFC0, 0x40000000});
  ASSERT_EQ(request.size(), NtpLength);
  EXPECT_EQ(request[0], 0x23);
  EXPECT_EQ(Bytes(request.begin() + 1, request.begin() + 40), Bytes(39));
  EXPECT_EQ(ReadNtpTime(request, NtpTransmitOffset), (NtpTime{0xC146AFC0, 0x40000000}));
}

TEST(RequestFor, TheClientProtocolMarksItsRequestWithTheTime) {
  const auto wanted = EncodeClientRequest({1, 2});
  EXPECT_EQ(RequestFor(ClientTcp, {1, 2}), Bytes(wanted.begin(), wanted.end()));
}

TEST(RequestFor, TheOthersSendNoBytes) {
  for (const Service service : {Service::Time, Service::Daytime, Service::Unix}) {
    EXPECT_TRUE(RequestFor({service, Transport::Udp}, {1, 2}).empty());
  }
}

TEST(HasEnough, WaitsForFourDatagramsOfTime) {
  EXPECT_FALSE(HasEnough(TimeUdp, {}));
  EXPECT_FALSE(HasEnough(TimeUdp, {{1}, {2}, {3}}));
  EXPECT_TRUE(HasEnough(TimeUdp, {{1}, {2}, {3}, {4}}));
}

TEST(HasEnough, StopsAtTheFirstDatagramOfAWrongLength) {
  EXPECT_TRUE(HasEnough(TimeUdp, {{1, 2, 3, 4}}));
  EXPECT_TRUE(HasEnough(TimeUdp, {{}}));
  EXPECT_TRUE(HasEnough(NtpUdp, {Bytes(47)}));
}

TEST(HasEnough, WaitsForTheCloseWhereTheServerCloses) {
  EXPECT_FALSE(HasEnough(TimeTcp, {Bytes(4)}));
  EXPECT_TRUE(HasEnough(TimeTcp, {Bytes(5)}));
  const Question daytime{Service::Daytime, Transport::Tcp};
  EXPECT_FALSE(HasEnough(daytime, {Bytes(LongestDaytime)}));
  EXPECT_TRUE(HasEnough(daytime, {Bytes(LongestDaytime + 1)}));
}

TEST(HasEnough, DoesNotWaitForACloseOfTheClientProtocol) {
  EXPECT_FALSE(HasEnough(ClientTcp, {Bytes(23)}));
  EXPECT_TRUE(HasEnough(ClientTcp, {Bytes(24)}));
}

}  // namespace
}  // namespace cvl::tools
