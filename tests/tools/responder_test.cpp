#include "tools/upstream/responder.h"

#include <gtest/gtest.h>

#include "fake_clock.h"
#include "tools/wire/ntp_packet.h"

namespace cvl::tools {
namespace {

constexpr Endpoint Client{LoopbackAddress, 4000};

class ResponderTest : public testing::Test {
 protected:
  void Take(std::uint16_t port = Client.Port) {
    NtpPacket packet;
    packet.Mode = NtpModeClient;
    Under_.Take(EncodeNtpPacket(packet), {Client.Address, port}, LoopbackAddress);
  }

  FakeClock Clock_;
  Responder Under_{Clock_};
};

TEST_F(ResponderTest, AnswersAtOnceFromTheAddressThatWasAsked) {
  Take();
  EXPECT_EQ(Under_.MsToNext(), 0);
  const auto answers = Under_.TakeDue();
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers[0].To, Client);
  EXPECT_EQ(answers[0].From, LoopbackAddress);
  EXPECT_EQ(answers[0].Data.size(), NtpLength);
  EXPECT_TRUE(Under_.TakeDue().empty());
  EXPECT_EQ(Under_.MsToNext(), std::nullopt);
}

TEST_F(ResponderTest, DropsWhatIsNoRequestAndDoesNotCountIt) {
  Under_.SetBehaviour({.Count = 1});
  Under_.Take(Bytes(48), Client, LoopbackAddress);
  Under_.Take(Bytes(1), Client, LoopbackAddress);
  EXPECT_TRUE(Under_.TakeDue().empty());
  EXPECT_EQ(Under_.Current().Count, 1);
}

TEST_F(ResponderTest, HoldsADelayedAnswerUntilItIsDue) {
  Under_.SetBehaviour({.DelayMs = 500});
  Take();
  EXPECT_EQ(Under_.MsToNext(), 500);
  Clock_.Ms += 499;
  EXPECT_TRUE(Under_.TakeDue().empty());
  EXPECT_EQ(Under_.MsToNext(), 1);
  Clock_.Ms += 1;
  EXPECT_EQ(Under_.TakeDue().size(), 1U);
}

TEST_F(ResponderTest, StampsADelayedAnswerWhenItIsSent) {
  Under_.SetBehaviour({.DelayMs = 500});
  const NtpTime asked = Clock_.Wall;
  Take();
  Clock_.Ms += 500;
  Clock_.Wall = Shifted(Clock_.Wall, 500);
  const auto answers = Under_.TakeDue();
  ASSERT_EQ(answers.size(), 1U);
  const auto packet = DecodeNtpPacket(answers[0].Data);
  ASSERT_TRUE(packet);
  EXPECT_EQ(packet->Receive, asked);
  EXPECT_EQ(packet->Transmit, Clock_.Wall);
}

TEST_F(ResponderTest, ADelayedAnswerHoldsUpNoOther) {
  Under_.SetBehaviour({.DelayMs = 500, .Count = 1});
  Take(4001);
  Take(4002);
  const auto first = Under_.TakeDue();
  ASSERT_EQ(first.size(), 1U);
  EXPECT_EQ(first[0].To.Port, 4002);
  Clock_.Ms += 500;
  const auto second = Under_.TakeDue();
  ASSERT_EQ(second.size(), 1U);
  EXPECT_EQ(second[0].To.Port, 4001);
}

TEST_F(ResponderTest, AWaitingAnswerKeepsTheBehaviourOfItsRequest) {
  Under_.SetBehaviour({.DelayMs = 500, .Length = 1});
  Take();
  Under_.SetBehaviour({});
  Clock_.Ms += 500;
  const auto answers = Under_.TakeDue();
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers[0].Data.size(), 1U);
}

TEST_F(ResponderTest, SaysNothingWhenSilent) {
  Under_.SetBehaviour({.Silent = true});
  Take();
  EXPECT_EQ(Under_.MsToNext(), std::nullopt);
}

TEST_F(ResponderTest, RepeatsAnAnswer) {
  Under_.SetBehaviour({.Repeat = 3});
  Take();
  const auto answers = Under_.TakeDue();
  ASSERT_EQ(answers.size(), 3U);
  EXPECT_EQ(answers[0].Data, answers[2].Data);
}

TEST_F(ResponderTest, AnswersFromAnotherAddress) {
  Under_.SetBehaviour({.From = 0x7F000002});
  Take();
  const auto answers = Under_.TakeDue();
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers[0].From, 0x7F000002U);
}

TEST_F(ResponderTest, IsNormalAfterTheCountedRequests) {
  Under_.SetBehaviour({.Silent = true, .Count = 2});
  Take();
  Take();
  EXPECT_TRUE(Under_.TakeDue().empty());
  Take();
  EXPECT_EQ(Under_.TakeDue().size(), 1U);
}

TEST_F(ResponderTest, DropsRequestsWhenTooManyWait) {
  Under_.SetBehaviour({.DelayMs = 500});
  for (int i = 0; i < 10'001; ++i) {
    Take();
  }
  Clock_.Ms += 500;
  EXPECT_EQ(Under_.TakeDue().size(), 10'000U);
}

}  // namespace
}  // namespace cvl::tools
