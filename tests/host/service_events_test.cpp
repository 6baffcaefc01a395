#include "tests/host/host_bench.h"

namespace cvl {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class ServiceEventsTest : public HostTest {};

TEST_F(ServiceEventsTest, TheServiceIsDefinedBeforeItStarts) {
  Server = std::make_unique<CVL_Server>(System.Interfaces(), "");
  const ServiceDefinition &definition = System.Service.Definition;
  EXPECT_EQ(definition.Name, "CVLServer");
  EXPECT_EQ(definition.DisplayName, "Chronvale Server");
  EXPECT_TRUE(definition.StartsAutomatically);
  EXPECT_TRUE(definition.AcceptsPause);
  EXPECT_FALSE(definition.Interactive);
  EXPECT_FALSE(definition.Debug);
}

TEST_F(ServiceEventsTest, AStartSucceedsAndLeavesNoRecord) {
  Load();
  bool success = false;
  System.Service.OnStart(success);
  EXPECT_TRUE(success);
  EXPECT_THAT(System.Service.Log, IsEmpty());
}

TEST_F(ServiceEventsTest, PauseAndContinueSucceedAndSetTheFlag) {
  Load();
  EXPECT_FALSE(Server->State.Flags.ServicePaused);
  EXPECT_TRUE(System.Service.Pause());
  EXPECT_TRUE(Server->State.Flags.ServicePaused);
  EXPECT_TRUE(System.Service.Pause());
  EXPECT_TRUE(Server->State.Flags.ServicePaused);
  EXPECT_TRUE(System.Service.Continue());
  EXPECT_FALSE(Server->State.Flags.ServicePaused);
}

TEST_F(ServiceEventsTest, ContinueWithoutAPauseIsHarmless) {
  Load();
  EXPECT_TRUE(System.Service.Continue());
  EXPECT_FALSE(Server->State.Flags.ServicePaused);
}

TEST_F(ServiceEventsTest, APauseKeepsTheSocketsOpenAndAnswersNothing) {
  Load();
  Synchronise();
  System.Service.Pause();
  const std::size_t sent = System.Net.Sent.size();
  System.Net.Arrive(123, At("10.0.0.7", 4000), Bytes(48, 0));
  FakeConnection &client = System.Net.Dial(123, At("10.0.0.7", 4000));
  System.Loop.Drain();
  EXPECT_THAT(System.Net.Sent, SizeIs(sent));
  EXPECT_EQ(Server->State.Requests.ReqUDP123, 0);
  EXPECT_TRUE(client.IsClosed);
  EXPECT_TRUE(System.Net.IsListening(123));

  System.Service.Continue();
  System.Net.Arrive(123, At("10.0.0.7", 4000), Bytes(48, 0));
  System.Loop.Drain();
  EXPECT_THAT(System.Net.Sent, SizeIs(sent + 1));
}

TEST_F(ServiceEventsTest, APauseStopsClockAndSchedule) {
  Store("Settings", "NO:3:Second/s:NA:36");
  Load();
  System.Loop.Advance(2000);
  const std::string shown = Server->Window.svrCurrent.Text();
  System.Service.Pause();
  System.Clock.Pass(60000);
  System.Loop.Advance(60000);
  EXPECT_EQ(Server->Window.svrCurrent.Text(), shown);
  EXPECT_THAT(System.Net.Sent, SizeIs(1)) << "that of the start";

  System.Service.Continue();
  System.Loop.Advance(1000);
  EXPECT_NE(Server->Window.svrCurrent.Text(), shown);
  EXPECT_THAT(System.Net.Sent, SizeIs(2)) << "the third tick that counts";
}

TEST_F(ServiceEventsTest, AReplyInAPauseIsLost) {
  Load();
  System.Service.Pause();
  NtpPacket reply{};
  std::copy(Server->State.Sync.SyncStamp.begin(), Server->State.Sync.SyncStamp.end(),
            reply.begin() + 24);
  System.Net.Arrive(123, At("10.0.0.1", 123), reply);
  System.Loop.Drain();
  EXPECT_FALSE(Server->State.Flags.TimeSynced);
  EXPECT_TRUE(Server->State.Sync.SyncWaiting);
}

TEST_F(ServiceEventsTest, AStopUnloadsAndLeavesNoRecord) {
  Load();
  System.Service.Stop();
  EXPECT_TRUE(System.Loop.IsQuitting());
  EXPECT_TRUE(HasCalled("store Settings"));
  EXPECT_THAT(System.Service.Log, IsEmpty());
}

TEST_F(ServiceEventsTest, APauseFollowedByAStopStillSavesAndEnds) {
  Load();
  System.Service.Pause();
  System.Service.Stop();
  EXPECT_TRUE(System.Loop.IsQuitting());
  EXPECT_TRUE(HasCalled("store Settings"));
}

TEST_F(ServiceEventsTest, AFailingStopGoesToTheEventLogAndNowhereElse) {
  Load();
  When("close tcp 123", [] { throw RuntimeError(error_number::Overflow); });
  EXPECT_NO_THROW(System.Service.Stop());
  EXPECT_EQ(System.Service.Log,
            (std::vector<FakeServiceHost::Record>{
                {109, 1, std::string(NoonText) + " --- CVL Stop [6] Overflow"}}));
}

TEST_F(ServiceEventsTest, AFailureWithADescriptionOfItsOwnIsLoggedWithIt) {
  Load();
  When("close tcp 123", [] { throw RuntimeError(1234, "something odd"); });
  System.Service.Stop();
  ASSERT_THAT(System.Service.Log, SizeIs(1));
  EXPECT_EQ(System.Service.Log[0].Text,
            std::string(NoonText) + " --- CVL Stop [1234] something odd");
}

}  // namespace
}  // namespace cvl
