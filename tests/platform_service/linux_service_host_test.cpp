#include "platform/linux/linux_service_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <vector>

#include "platform/linux/epoll_loop.h"
#include "tests/platform_service/notify_socket.h"
#include "tests/platform_service/scratch.h"

namespace cvl {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class LinuxServiceHostTest : public testing::Test {
 protected:
  LinuxServiceHostTest() {
    Service.Definition = {.Name = "CVLServer", .DisplayName = "Chronvale Server"};
    Service.OnStart = [this](bool &) { Events.emplace_back("start"); };
    Service.OnPause = [this](bool &) { Events.emplace_back("pause"); };
    Service.OnContinue = [this](bool &) { Events.emplace_back("continue"); };
    Service.OnStop = [this] { Events.emplace_back("stop"); };
  }

  /// The signal is pending when kill returns, so one pass has it.
  void Signal(int number) {
    kill(getpid(), number);
    Loop.RunOnePass();
  }

  ScopedVariable NoSpan{"WATCHDOG_USEC", nullptr};
  ScratchDirectory Units;
  ScopedVariable UnitDirectory{"CHRONVALE_UNIT_DIR", Units.Path().c_str()};
  NotifySocket Manager;
  std::vector<std::string> Events;
  EpollLoop Loop;
  LinuxServiceHost Service{Loop, "/srv/time", "/srv/time/registry.reg"};
};

TEST_F(LinuxServiceHostTest, TellsTheManagerOnceTheServiceStarts) {
  EXPECT_THAT(Manager.Take(), IsEmpty());
  Service.StartService();
  EXPECT_THAT(Manager.Take(), ElementsAre("READY=1"));
  EXPECT_THAT(Events, ElementsAre("start"));
}

TEST_F(LinuxServiceHostTest, RaisesStartWithoutAManagerToo) {
  const ScopedVariable no_manager("NOTIFY_SOCKET", nullptr);
  Service.StartService();
  EXPECT_THAT(Events, ElementsAre("start"));
  EXPECT_THAT(Manager.Take(), IsEmpty());
}

TEST_F(LinuxServiceHostTest, PausesAndContinuesOnTheUserSignals) {
  Signal(SIGUSR1);
  EXPECT_THAT(Events, ElementsAre("pause"));
  Signal(SIGUSR2);
  EXPECT_THAT(Events, ElementsAre("pause", "continue"));
  EXPECT_THAT(Manager.Take(), IsEmpty());
}

TEST_F(LinuxServiceHostTest, StopsOnThreeSignalsAndSaysSoFirst) {
  std::vector<std::string> told;
  Service.OnStop = [&] { told = Manager.Take(); };
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    told.clear();
    Signal(number);
    EXPECT_THAT(told, ElementsAre("STOPPING=1")) << "signal " << number;
  }
}

TEST_F(LinuxServiceHostTest, HandsTheStatusOn) {
  Service.ReportStatus("Not synchronised yet");
  EXPECT_THAT(Manager.Take(), ElementsAre("STATUS=Not synchronised yet"));
}

TEST_F(LinuxServiceHostTest, GoesOnGivingSignsOfLifeInAPause) {
  const ScopedVariable span("WATCHDOG_USEC", "2000");
  Service.StartService();
  Signal(SIGUSR1);
  EXPECT_THAT(Events, ElementsAre("start", "pause"));
  Manager.Take();
  std::vector<std::string> told;
  Service.OnStop = [this] { Loop.Quit(); };
  LoopTimer look(Loop, [&] {
    for (const std::string &message : Manager.Take()) {
      told.push_back(message);
    }
    if (told.size() >= 3) Loop.Quit();
  });
  look.Start(1, LoopTimer::Repeat::Yes);
  Loop.Run();
  EXPECT_THAT(told, testing::Each("WATCHDOG=1"));
}

TEST_F(LinuxServiceHostTest, EntersTheServiceUnderItsNameWithTheDescriptionThatWasSaved) {
  const ScratchDirectory programs;
  const ScopedVariable path("PATH", programs.Path().c_str());
  WriteScript(programs / "systemctl", "exit 0\n");
  Service.SaveSetting("", "Description", "Chronvale Server Services");
  EXPECT_TRUE(Service.Install());
  const std::string unit = ReadText(Units / "CVLServer.service");
  EXPECT_THAT(unit, HasSubstr("\nDescription=Chronvale Server Services\n"));
  EXPECT_THAT(unit, HasSubstr(" /srv/time/QRB_CVLS4.CVL "));
  EXPECT_TRUE(Service.Uninstall());
  EXPECT_FALSE(std::filesystem::exists(Units / "CVLServer.service"));
}

TEST_F(LinuxServiceHostTest, DescribesItByItsDisplayNameWhereNothingWasSaved) {
  const ScratchDirectory programs;
  const ScopedVariable path("PATH", programs.Path().c_str());
  WriteScript(programs / "systemctl", "exit 0\n");
  Service.SaveSetting("", "Colour", "green");
  EXPECT_TRUE(Service.Install());
  EXPECT_THAT(ReadText(Units / "CVLServer.service"), HasSubstr("\nDescription=Chronvale Server\n"));
}

}  // namespace

}  // namespace cvl
