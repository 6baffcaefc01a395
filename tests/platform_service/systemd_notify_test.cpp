#include "platform/linux/systemd_notify.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/platform_service/notify_socket.h"
#include "tests/support/test_loop.h"

namespace cvl {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SystemdNotifyTest : public testing::Test {
 protected:
  ScopedVariable NoSpan{"WATCHDOG_USEC", nullptr};
  ScopedVariable NoProcess{"WATCHDOG_PID", nullptr};
  NotifySocket Manager;
  TestLoop Loop;
};

TEST_F(SystemdNotifyTest, TellsThatTheServiceIsReadyStoppingAndWhatItIsAt) {
  SystemdNotify notify(Loop);
  EXPECT_THAT(Manager.Take(), IsEmpty());
  notify.Ready();
  EXPECT_THAT(Manager.Take(), ElementsAre("READY=1"));
  notify.Status("12 requests");
  EXPECT_THAT(Manager.Take(), ElementsAre("STATUS=12 requests"));
  notify.Stopping();
  EXPECT_THAT(Manager.Take(), ElementsAre("STOPPING=1"));
}

TEST_F(SystemdNotifyTest, SaysNothingWhereNoManagerStartedTheProcess) {
  const ScopedVariable no_manager("NOTIFY_SOCKET", nullptr);
  SystemdNotify notify(Loop);
  notify.Ready();
  notify.Status("12 requests");
  notify.Stopping();
  EXPECT_THAT(Manager.Take(), IsEmpty());
}

TEST_F(SystemdNotifyTest, GivesTwoSignsOfLifeInEachSpanOfTheWatchdog) {
  const ScopedVariable span("WATCHDOG_USEC", "30000000");
  SystemdNotify notify(Loop);
  Loop.Advance(60000);
  EXPECT_THAT(Manager.Take(), IsEmpty()) << "before the service is ready";

  notify.Ready();
  EXPECT_THAT(Manager.Take(), ElementsAre("READY=1"));
  Loop.Advance(14999);
  EXPECT_THAT(Manager.Take(), IsEmpty());
  Loop.Advance(1);
  EXPECT_THAT(Manager.Take(), ElementsAre("WATCHDOG=1"));
  Loop.Advance(30000);
  EXPECT_THAT(Manager.Take(), ElementsAre("WATCHDOG=1", "WATCHDOG=1"));
}

TEST_F(SystemdNotifyTest, GivesNoneToAWatchdogOfAnotherProcess) {
  const ScopedVariable span("WATCHDOG_USEC", "30000000");
  const ScopedVariable other("WATCHDOG_PID", "1");
  SystemdNotify notify(Loop);
  notify.Ready();
  Loop.Advance(60000);
  EXPECT_THAT(Manager.Take(), ElementsAre("READY=1"));
}

TEST_F(SystemdNotifyTest, GivesNoneWithoutAWatchdogOrWithASpanThatIsNoNumber) {
  SystemdNotify without(Loop);
  without.Ready();
  const ScopedVariable span("WATCHDOG_USEC", "soon");
  SystemdNotify with(Loop);
  with.Ready();
  Loop.Advance(60000);
  EXPECT_THAT(Manager.Take(), ElementsAre("READY=1", "READY=1"));
}

TEST_F(SystemdNotifyTest, KeepsUpWithTheShortestSpan) {
  const ScopedVariable span("WATCHDOG_USEC", "1");
  SystemdNotify notify(Loop);
  notify.Ready();
  Loop.Advance(2);
  EXPECT_THAT(Manager.Take(), ElementsAre("READY=1", "WATCHDOG=1", "WATCHDOG=1"));
}

}  // namespace

}  // namespace cvl
