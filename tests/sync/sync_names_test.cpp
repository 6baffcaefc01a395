// SyncTimeNow, where the server is given by its name.

#include "tests/sync/sync_bench.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr Ipv4Address Address = 0x0A000009;  // 10.0.0.9

class SyncNamesTest : public SyncTest {
 protected:
  SyncNamesTest() {
    AddServer("one.example", "One NA");
    AddServer("two.example", "Two NA");
    Every(3540);
    ShowWindow();
  }

  /// Nothing behind step 5 has happened.
  void ExpectStillWaiting() {
    EXPECT_THAT(Net.Sent, IsEmpty());
    EXPECT_FALSE(State.Sync.SyncWaiting);
    EXPECT_EQ(Clock.TickReadings, 0);
    EXPECT_EQ(Tip(), std::string(64, ' '));
    EXPECT_EQ(Window.LED[0].Image, LampDarkImage);
  }
};

TEST_F(SyncNamesTest, TheRequestWaitsForTheAddress) {
  Exchange.SyncTimeNow();
  EXPECT_THAT(Resolver.Asked, ElementsAre("one.example"));
  ExpectStillWaiting();

  Resolver.Tell("one.example", Address);
  ASSERT_THAT(Net.Sent, SizeIs(1));
  EXPECT_EQ(Net.Sent[0].To, At("10.0.0.9", 123));
  EXPECT_TRUE(State.Sync.SyncWaiting);
  EXPECT_EQ(Clock.TickReadings, 1);
  EXPECT_TRUE(Tip().starts_with(" Checking Time Server: One NA "));
  EXPECT_EQ(Window.LED[0].Image, LampLitImage);
}

TEST_F(SyncNamesTest, TheStepsBeforeTheLookupAreDoneAtOnce) {
  bool closed = false;
  Exchange.CloseTcpTime = [&] { closed = true; };
  Exchange.SyncTimeNow();
  EXPECT_TRUE(closed);
  EXPECT_EQ(Servers.CurrentServer, "one.example");
}

TEST_F(SyncNamesTest, TheLookupIsNoPartOfTheRoundTrip) {
  OpenUdp123();
  Exchange.SyncTimeNow();
  Clock.Pass(1500);
  Resolver.Tell("one.example", Address);
  Clock.Pass(10);
  // The transmit timestamp is a whole second; half of ten milliseconds is added to it.
  Net.Arrive(123, At("10.0.0.9", 123), ReplyOf(State.Sync.SyncStamp, 3242721600, 0));
  Loop.Drain();
  ASSERT_THAT(Clock.SystemTimesSet, SizeIs(1));
  EXPECT_EQ(Clock.SystemTimesSet[0].Milliseconds, 5);
}

TEST_F(SyncNamesTest, WithoutAnAnswerTheSendFailsAfterTwoSeconds) {
  Exchange.SyncTimeNow();
  Loop.Advance(1999);
  ExpectStillWaiting();

  Loop.Advance(1);
  EXPECT_THAT(Net.Sent, IsEmpty());
  EXPECT_TRUE(State.Sync.SyncWaiting);
  EXPECT_EQ(Schedule.SyncCount(), 3540);
  EXPECT_TRUE(Tip().starts_with(" Checking Time Server: "));
}

TEST_F(SyncNamesTest, ANameThatHasNoAddressFailsTheSendAtOnce) {
  Exchange.SyncTimeNow();
  Resolver.Tell("one.example", std::nullopt);
  EXPECT_THAT(Net.Sent, IsEmpty());
  EXPECT_TRUE(State.Sync.SyncWaiting);
  EXPECT_EQ(Schedule.SyncCount(), 3540);
  EXPECT_EQ(Window.LED[0].Image, LampLitImage);
}

TEST_F(SyncNamesTest, AnAnswerBehindTheTwoSecondsServesTheNextExchange) {
  Exchange.SyncTimeNow();
  Loop.Advance(2000);
  Resolver.Tell("one.example", Address);
  EXPECT_THAT(Net.Sent, IsEmpty());

  Servers.CurrentServer = "one.example";
  Exchange.SyncTimeNow();
  EXPECT_THAT(Net.Sent, SizeIs(1));
  EXPECT_THAT(Resolver.Asked, SizeIs(1));
}

TEST_F(SyncNamesTest, AFurtherCallTakesThePlaceOfTheOneThatWaits) {
  Exchange.SyncTimeNow();
  Servers.CurrentServer = "two.example";
  Exchange.SyncTimeNow();

  Resolver.Tell("one.example", Address);
  ExpectStillWaiting();

  Resolver.Tell("two.example", Address);
  EXPECT_THAT(Net.Sent, SizeIs(1));
  Loop.Advance(5000);
  EXPECT_THAT(Net.Sent, SizeIs(1));
}

TEST_F(SyncNamesTest, AFurtherCallForTheSameNameSendsOnce) {
  Exchange.SyncTimeNow();
  Loop.Advance(1500);
  Exchange.SyncTimeNow();
  Loop.Advance(1500);
  ExpectStillWaiting();  // the two seconds are the second call's

  Resolver.Tell("one.example", Address);
  EXPECT_THAT(Net.Sent, SizeIs(1));
}

TEST_F(SyncNamesTest, AFurtherCallForAnAddressDropsTheOneThatWaits) {
  Exchange.SyncTimeNow();
  Servers.CurrentServer = "10.0.0.1";
  Exchange.SyncTimeNow();
  ASSERT_THAT(Net.Sent, SizeIs(1));

  Resolver.Tell("one.example", Address);
  Loop.Advance(5000);
  EXPECT_THAT(Net.Sent, SizeIs(1));
  EXPECT_EQ(Schedule.SyncCount(), 0);
}

TEST_F(SyncNamesTest, AServerThatIsChosenMeanwhileIsLookedUpInItsTurn) {
  Exchange.SyncTimeNow();
  Servers.CurrentServer = "two.example";
  Resolver.Tell("one.example", Address);
  ExpectStillWaiting();
  EXPECT_TRUE(Resolver.IsWaitingFor("two.example"));

  Resolver.Tell("two.example", Address + 1);
  ASSERT_THAT(Net.Sent, SizeIs(1));
  EXPECT_EQ(Net.Sent[0].To, At("10.0.0.10", 123));
}

TEST_F(SyncNamesTest, ANumericServerThatIsChosenMeanwhileIsAskedAtOnce) {
  Exchange.SyncTimeNow();
  Servers.CurrentServer = "10.0.0.1";
  Resolver.Tell("one.example", Address);
  ASSERT_THAT(Net.Sent, SizeIs(1));
  EXPECT_EQ(Net.Sent[0].To, At("10.0.0.1", 123));
}

TEST_F(SyncNamesTest, CancellingDropsTheExchange) {
  Exchange.SyncTimeNow();
  Exchange.Cancel();
  Resolver.Tell("one.example", Address);
  Loop.Advance(5000);
  ExpectStillWaiting();
}

TEST_F(SyncNamesTest, AnAddressNeedsNoLookup) {
  Servers.CurrentServer = "10.0.0.1";
  Exchange.SyncTimeNow();
  EXPECT_THAT(Net.Sent, SizeIs(1));
  EXPECT_THAT(Resolver.Asked, IsEmpty());
}

TEST_F(SyncNamesTest, AnAnswerIsFreshForAMinute) {
  Exchange.SyncTimeNow();
  Resolver.Tell("one.example", Address);
  Loop.Advance(59999);
  Exchange.SyncTimeNow();
  EXPECT_THAT(Net.Sent, SizeIs(2));
  EXPECT_THAT(Resolver.Asked, SizeIs(1));

  Loop.Advance(1);
  Exchange.SyncTimeNow();
  EXPECT_THAT(Net.Sent, SizeIs(2));
  EXPECT_THAT(Resolver.Asked, SizeIs(2));
}

TEST_F(SyncNamesTest, AShutLayerSendsNothingWhenTheAnswerComes) {
  Exchange.SyncTimeNow();
  Layer.Shut();
  EXPECT_NO_THROW(Resolver.Tell("one.example", Address));
  EXPECT_THAT(Net.Sent, IsEmpty());
  EXPECT_EQ(Net.OpenCount(), 0U);
}

}  // namespace
}  // namespace cvl
