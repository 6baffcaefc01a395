// Knowing the answer to a request, taking it, and setting the clock from it.

#include "tests/sync/sync_bench.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SyncReplyTest : public SyncTest {
 protected:
  SyncReplyTest() {
    OpenUdp123();
    AddServers(1);
    Every(3540);
    Clock.TickCount = 1000;
    Exchange.SyncTimeNow();
    State.Sync.LastSync = DateTime::Of(2002, 1, 1);
    State.Sync.ReferenceStamp = {9, 9, 9, 9, 9, 9, 9, 9};
    State.Sync.SyncMessage = "old";
    State.Requests.ReqUDP123 = 5;
  }

  NtpPacket Reply(std::uint32_t seconds = Noon, std::uint32_t fraction = 0) const {
    return ReplyOf(State.Sync.SyncStamp, seconds, fraction);
  }

  void ExpectSettingNotRecorded() {
    EXPECT_EQ(State.Sync.LastSync, DateTime::Of(2002, 1, 1));
    EXPECT_EQ(State.Sync.ReferenceStamp, (NtpTimestamp{9, 9, 9, 9, 9, 9, 9, 9}));
    EXPECT_EQ(State.Sync.SyncMessage, "old");
  }
  void ExpectSettingRecorded() {
    EXPECT_EQ(State.Sync.LastSync, Clock.Now());
    EXPECT_EQ(State.Sync.ReferenceStamp, Time.GrabTime());
    EXPECT_EQ(State.Sync.SyncMessage, "CVL Server is now Synchronized to Atomic Time.");
  }
};

// IsReply.

TEST_F(SyncReplyTest, ThreeBytesOfTheStampMakeAReply) {
  NtpPacket packet{};
  packet[24] = 0x11;
  packet[27] = 0x14;
  packet[31] = 0x18;
  EXPECT_TRUE(Exchange.IsReply(packet));

  for (std::size_t byte = 0; byte < packet.size(); ++byte) {
    NtpPacket other = packet;
    other[byte] = static_cast<std::uint8_t>(other[byte] + 1);
    const bool compared = byte == 24 || byte == 27 || byte == 31;
    EXPECT_EQ(Exchange.IsReply(other), !compared) << byte;
  }
}

TEST_F(SyncReplyTest, AReplyHas48Bytes) {
  const NtpPacket reply = Reply();
  EXPECT_TRUE(Exchange.IsReply(reply));
  EXPECT_FALSE(Exchange.IsReply(std::span(reply).first(47)));
  EXPECT_FALSE(Exchange.IsReply({}));
  std::vector<std::uint8_t> longer(reply.begin(), reply.end());
  longer.push_back(0);
  EXPECT_FALSE(Exchange.IsReply(longer));
}

TEST_F(SyncReplyTest, WhenNoRequestIsOutNothingIsAReply) {
  State.Sync.SyncWaiting = false;
  EXPECT_FALSE(Exchange.IsReply(Reply()));
}

// TakeReply.

TEST_F(SyncReplyTest, AReplyIsNoRequest) {
  Exchange.TakeReply(Reply());
  EXPECT_EQ(State.Requests.ReqUDP123, 4);
}

TEST_F(SyncReplyTest, ACounterThatCannotSinkStopsNothing) {
  State.Requests.ReqUDP123 = INT32_MIN;
  Exchange.TakeReply(Reply());
  EXPECT_EQ(State.Requests.ReqUDP123, INT32_MIN);
  EXPECT_THAT(Clock.SystemTimesSet, SizeIs(1));
}

TEST_F(SyncReplyTest, AReplyEndsTheWaitAndOpensTheServices) {
  EXPECT_FALSE(State.Flags.TimeSynced);
  Exchange.TakeReply(Reply());
  EXPECT_FALSE(State.Sync.SyncWaiting);
  EXPECT_TRUE(State.Flags.TimeSynced);
}

TEST_F(SyncReplyTest, TheClockIsSetToTheServersTimeAndHalfTheRoundTrip) {
  Clock.TickCount = 1100;
  Exchange.TakeReply(Reply(Noon + 3600, 0x40000000));
  EXPECT_THAT(Clock.SystemTimesSet, ElementsAre(SystemTime{2002, 10, 0, 3, 13, 0, 0, 300}));
}

TEST_F(SyncReplyTest, AnAnswerThatAgreesWithTheClockSetsItAllTheSame) {
  Exchange.TakeReply(Reply(Noon, 0x40000000));
  EXPECT_THAT(Clock.SystemTimesSet, ElementsAre(SystemTime{2002, 10, 0, 3, 12, 0, 0, 250}));
}

TEST_F(SyncReplyTest, TheRoundTripIsTakenBeforeAnythingElse) {
  // What the clock tells later on is no part of it.
  Clock.TickScript = {1010, 9999};
  Exchange.TakeReply(Reply());
  EXPECT_EQ(Clock.TickReadings, 2);
  EXPECT_EQ(Clock.SystemTimesSet.at(0).Milliseconds, 5);
}

TEST_F(SyncReplyTest, TheSettingIsRecordedByTheNewTime) {
  Clock.MovesWhenSet = true;
  Exchange.TakeReply(Reply(Noon + 3600, 0x40000000));
  EXPECT_EQ(State.Sync.LastSync, DateTime::Of(2002, 10, 3, 13, 0, 0));
  ExpectSettingRecorded();
}

TEST_F(SyncReplyTest, LastSyncIsLocalTime) {
  Clock.Zone.Bias = 300;
  Exchange.TakeReply(Reply());
  EXPECT_EQ(State.Sync.LastSync, DateTime::Of(2002, 10, 3, 7, 0, 0));
}

TEST_F(SyncReplyTest, ARefusedSettingCountsAsASuccess) {
  Clock.RefusesAll = true;
  Exchange.TakeReply(Reply(Noon + 3600));
  EXPECT_TRUE(State.Flags.TimeSynced);
  EXPECT_EQ(State.Sync.LastSync, DateTime::Of(2002, 10, 3, 12, 0, 0));
  ExpectSettingRecorded();
}

TEST_F(SyncReplyTest, AMillisecondFieldOfAThousandIsASettingThatIsLost) {
  Clock.MovesWhenSet = true;
  Clock.TickCount = 1300;
  Exchange.TakeReply(Reply(Noon + 3600, 0xE6666666));  // 900 ms, and 150 of the way

  ASSERT_THAT(Clock.SystemTimesSet, SizeIs(1));
  EXPECT_EQ(Clock.SystemTimesSet[0].Milliseconds, 1050);
  EXPECT_EQ(Clock.SystemTimesSet[0].Second, 0);
  EXPECT_EQ(Clock.UtcMs, UtcMsOf(DateTime::Of(2002, 10, 3, 12, 0, 0), 250));
  EXPECT_TRUE(State.Flags.TimeSynced);
  ExpectSettingRecorded();
}

TEST_F(SyncReplyTest, AnAllZeroTimestampIsRefusedByTheClockAndCounts) {
  Exchange.TakeReply(Reply(0, 0));
  EXPECT_THAT(Clock.SystemTimesSet, ElementsAre(SystemTime{1900, 1, 0, 1, 0, 0, 0, 0}));
  EXPECT_TRUE(State.Flags.TimeSynced);
  ExpectSettingRecorded();
}

TEST_F(SyncReplyTest, ATickCountThatWrapsBetweenLeavesTheClockAlone) {
  Clock.TickCount = 2147483000;
  Exchange.SyncTimeNow();
  Clock.Pass(1000);
  ASSERT_LT(Clock.TickCount, 0);

  Exchange.TakeReply(Reply());

  EXPECT_THAT(Clock.SystemTimesSet, IsEmpty());
  ExpectSettingNotRecorded();
  EXPECT_TRUE(State.Flags.TimeSynced);
  EXPECT_FALSE(State.Sync.SyncWaiting);
}

TEST_F(SyncReplyTest, ATickCountAtItsEndIsNoTrouble) {
  Clock.TickCount = 2147483000;
  Exchange.SyncTimeNow();
  Clock.Pass(600);
  Exchange.TakeReply(Reply());
  EXPECT_EQ(Clock.SystemTimesSet.at(0).Milliseconds, 300);
}

TEST_F(SyncReplyTest, InMillisecond999TheReferenceStaysAsItWas) {
  Clock.UtcMs += 749;
  Exchange.TakeReply(Reply());
  EXPECT_THAT(Clock.SystemTimesSet, SizeIs(1));
  EXPECT_EQ(State.Sync.LastSync, DateTime::Of(2002, 10, 3, 12, 0, 0));
  EXPECT_EQ(State.Sync.ReferenceStamp, (NtpTimestamp{9, 9, 9, 9, 9, 9, 9, 9}));
  EXPECT_TRUE(State.Flags.TimeSynced);
}

TEST_F(SyncReplyTest, TheReferenceOctetsStayZero) {
  Exchange.TakeReply(Reply());
  EXPECT_THAT(State.Sync.ReferenceOctets, ElementsAre(0, 0, 0, 0));
}

TEST_F(SyncReplyTest, ASuccessLeavesTheCount) {
  for (int tick = 0; tick < 10; ++tick) {
    Schedule.Tick();
  }
  Exchange.TakeReply(Reply());
  EXPECT_EQ(Schedule.SyncCount(), 10);
}

TEST_F(SyncReplyTest, NoStatusTextIsTouched) {
  ShowWindow();
  const std::string tip = Tip();
  Exchange.TakeReply(Reply());
  EXPECT_EQ(State.Status.StatusText.Text(), "");
  EXPECT_EQ(Tip(), tip);
  EXPECT_THAT(Net.Sent, SizeIs(1)) << "the request alone";
}

TEST_F(SyncReplyTest, ALateReplyIsTakenForTheRequestBehindIt) {
  Clock.Pass(5000);
  Exchange.SyncTimeNow();
  Clock.Pass(10);
  Exchange.TakeReply(Reply());
  EXPECT_EQ(Clock.SystemTimesSet.at(0).Milliseconds, 5) << "the round trip comes out too short";
}

TEST_F(SyncReplyTest, ASecondReplyIsNone) {
  Exchange.TakeReply(Reply());
  EXPECT_FALSE(Exchange.IsReply(Reply()));
}

class FirstReplyTest : public SyncTest {};

TEST_F(FirstReplyTest, ASentTimeThatWasNeverTakenStopsNothing) {
  AddServers(1);
  Clock.UtcMs += 749;
  Exchange.SyncTimeNow();
  Clock.UtcMs -= 749;

  Exchange.TakeReply(ReplyOf(State.Sync.SyncStamp, Noon, 0));

  EXPECT_THAT(Clock.SystemTimesSet, SizeIs(1));
  EXPECT_TRUE(State.Flags.TimeSynced);
}

// TakeRefusal.

TEST_F(SyncReplyTest, ARefusalMakesTheNextTickAskAnother) {
  AddServers(10);
  ASSERT_TRUE(Net.Arrive(123, At("10.0.0.1", 123), "x"));
  Loop.Drain();

  EXPECT_EQ(Servers.CurrentServer, "10.0.0.2");
  EXPECT_EQ(Schedule.SyncCount(), 3539);
  EXPECT_TRUE(State.Sync.SyncWaiting);
  EXPECT_FALSE(State.Flags.TimeSynced);

  Schedule.Tick();
  ASSERT_THAT(Net.Sent, SizeIs(2));
  EXPECT_EQ(Net.Sent[1].To, At("10.0.0.2", 123));
}

TEST_F(SyncReplyTest, ARefusalWithTheSmallestIntervalStopsNothing) {
  Window.SyncN.SetText("-2e9");
  Schedule.CalcIntC();
  EXPECT_NO_THROW(Exchange.TakeRefusal());
}

// GoMilli.

TEST_F(SyncReplyTest, GoMilliTellsMillisecondsSince1900) {
  EXPECT_EQ(Exchange.GoMilli(40, Reply(Noon, 0x40000000), false), 3242635200250.0);
  EXPECT_THAT(Clock.SystemTimesSet, IsEmpty());
  ExpectSettingNotRecorded();

  EXPECT_EQ(Exchange.GoMilli(40, Reply(Noon, 0x40000000), true), 3242635200250.0);
  EXPECT_THAT(Clock.SystemTimesSet, SizeIs(1));
}

TEST_F(SyncReplyTest, GoMilliRaises9OutsideTheBytes) {
  ExpectRuntimeError(9, [&] { return Exchange.GoMilli(41, Reply(), true); });
  ExpectRuntimeError(9, [&] { return Exchange.GoMilli(-1, Reply(), true); });
}

// StoreOctets.

TEST_F(SyncReplyTest, OctetsAreStoredOneByOne) {
  Exchange.StoreOctets("10.77.0.255");
  EXPECT_THAT(State.Sync.ReferenceOctets, ElementsAre(10, 77, 0, 255));

  Exchange.StoreOctets("1.2");
  EXPECT_THAT(State.Sync.ReferenceOctets, ElementsAre(1, 2, 0, 255));

  Exchange.StoreOctets("99999.x.3.4.5");
  EXPECT_THAT(State.Sync.ReferenceOctets, ElementsAre(1, 0, 3, 4));
}

}  // namespace
}  // namespace cvl
