#include "tests/host/host_bench.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CommandLineTest : public HostTest {
 protected:
  void ExpectHiddenRun(const std::string &tail) {
    EXPECT_EQ(Load(tail), Loaded::Running) << '"' << tail << '"';
    EXPECT_FALSE(Server->Window.Visible) << tail;
    EXPECT_FALSE(Server->Window.InTaskList) << tail;
    EXPECT_FALSE(Server->State.Flags.Interactive) << tail;
    EXPECT_FALSE(System.Service.Definition.Debug) << tail;
    EXPECT_TRUE(System.Net.IsListening(123)) << tail;
    EXPECT_TRUE(Server->State.Sync.SyncWaiting) << tail << ": it goes on to the first sync";
  }

  void ExpectWindow(const std::string &tail) {
    EXPECT_EQ(Load(tail), Loaded::Running) << '"' << tail << '"';
    EXPECT_TRUE(Server->Window.Visible) << tail;
    EXPECT_TRUE(Server->Window.InTaskList) << tail;
    EXPECT_TRUE(Server->State.Flags.Interactive) << tail;
    EXPECT_TRUE(System.Service.Definition.Debug) << tail;
    EXPECT_TRUE(System.Net.IsListening(123)) << tail;
    EXPECT_TRUE(Server->State.Sync.SyncWaiting) << tail;
  }

  std::vector<FakeServiceHost::Record> LogOf(const std::string &text) {
    return {{4, 110, std::string(NoonText) + " --- " + text}};
  }
};

TEST_F(CommandLineTest, NoWordRunsHidden) {
  ExpectHiddenRun("");
}

TEST_F(CommandLineTest, RsRunsHidden) {
  ExpectHiddenRun("-rs");
}

TEST_F(CommandLineTest, UnknownWordsRunHidden) {
  for (const char *tail :
       {"-RS", "-Debug", "-CONFIG", "-Install", "debug", "-debugx", "--halp", "x", "-rs,-config"}) {
    ExpectHiddenRun(tail);
    Server.reset();
  }
}

TEST_F(CommandLineTest, ABlankInFrontMakesAnEmptyFirstWord) {
  for (const char *tail : {" -rs", " -config", " -install", " ", "  "}) {
    ExpectHiddenRun(tail);
    Server.reset();
  }
}

TEST_F(CommandLineTest, OnlyTheFirstWordCounts) {
  for (const char *tail : {"-rs -config", "x -install", "-rs -uninstall"}) {
    ExpectHiddenRun(tail);
    Server.reset();
  }
  ExpectWindow("-config extra words");
}

TEST_F(CommandLineTest, DebugShowsTheWindow) {
  ExpectWindow("-debug");
}

TEST_F(CommandLineTest, ConfigDoesTheSame) {
  ExpectWindow("-config");
}

TEST_F(CommandLineTest, TheWindowIsThereWhenTheServiceStarts) {
  When("start service", [&] {
    EXPECT_TRUE(Server->Window.Visible);
    EXPECT_TRUE(Server->State.Flags.Interactive);
    EXPECT_TRUE(System.Service.Definition.Debug);
  });
  Load("-config");
  EXPECT_TRUE(HasLooked);
}

TEST_F(CommandLineTest, TheRunIsNotInteractiveWhileTheSettingsAreRead) {
  When("open tcp 123", [&] { EXPECT_FALSE(Server->State.Flags.Interactive); });
  Load("-config");
  EXPECT_TRUE(HasLooked);
}

// Without a display.

TEST_F(CommandLineTest, WithoutADisplayAWindowEndsTheRunBeforeTheSettingsAreRead) {
  System.Screen.InTheWay = "there is no display";
  for (const char *tail : {"-config", "-debug", "-config extra"}) {
    System.Journal.Calls.clear();
    EXPECT_EQ(Load(tail), Loaded::NoWindow) << tail;
    EXPECT_EQ(Server->Obstacle(), "there is no display");
    EXPECT_THAT(Calls(), ElementsAre("claim instance", "obstacle"));
    Server.reset();
  }
}

TEST_F(CommandLineTest, AHiddenRunAsksForNoDisplay) {
  System.Screen.InTheWay = "there is no display";
  for (const char *tail : {"", "-rs", "-Config", " -config", "-configx"}) {
    ExpectHiddenRun(tail);
    EXPECT_FALSE(HasCalled("obstacle")) << tail;
    Server.reset();
  }
}

// -install and -uninstall.

TEST_F(CommandLineTest, InstallEntersTheServiceAndEnds) {
  When("save setting /Description=Chronvale Server Services",
       [&] { System.Service.Definition.Interactive = true; });
  EXPECT_EQ(Load("-install"), Loaded::Ended);

  const auto saved = std::find(Calls().begin(), Calls().end(),
                               "save setting /Description=Chronvale Server Services");
  EXPECT_THAT(
      std::vector<std::string>(saved, Calls().end()),
      ElementsAre("save setting /Description=Chronvale Server Services", "install", "log event"));
  EXPECT_EQ(System.Service.Log, LogOf("[CVL Server installed successfully!] "));
  EXPECT_FALSE(System.Service.Definition.Interactive);
  EXPECT_FALSE(HasCalled("start service"));
  EXPECT_THAT(System.Net.Sent, IsEmpty());
}

TEST_F(CommandLineTest, AFailedInstallIsLoggedAndEnds) {
  System.Service.Obeys = false;
  EXPECT_EQ(Load("-install"), Loaded::Ended);
  EXPECT_EQ(System.Service.Log, LogOf("[CVL Server failed to install - please contact us at "
                                      "support@chronvale.example!] "));
}

TEST_F(CommandLineTest, UninstallRemovesTheServiceAndEnds) {
  EXPECT_EQ(Load("-uninstall"), Loaded::Ended);
  EXPECT_TRUE(HasCalled("uninstall"));
  EXPECT_FALSE(HasCalled("install"));
  EXPECT_EQ(System.Service.Log, LogOf("[CVL Server uninstalled successfully!] "));
  EXPECT_FALSE(HasCalled("start service"));
}

TEST_F(CommandLineTest, AFailedUninstallIsLoggedAndEnds) {
  System.Service.Obeys = false;
  EXPECT_EQ(Load("-uninstall"), Loaded::Ended);
  EXPECT_EQ(System.Service.Log, LogOf("[CVL Server failed to uninstall!] "));
}

TEST_F(CommandLineTest, AnInstallOnAFreshMachineLeavesTheDefaultsAndUnloadsNothing) {
  FakeRegistry fresh;
  std::swap(System.Store, fresh);
  EXPECT_EQ(Load("-install"), Loaded::Ended);
  EXPECT_EQ(System.Store.Text(FakeRegistry::SettingsKey, "NTP37"), "YES:YES:YES:37");
  Server.reset();
  EXPECT_EQ(System.Store.Text(FakeRegistry::SettingsKey, "NTP37"), "YES:YES:YES:37")
      << "no unload has stored what the boxes show";
  EXPECT_FALSE(HasCalled("tray 2"));
}

TEST_F(CommandLineTest, AnInstallOpensTheListenersForAMoment) {
  Load("-install");
  EXPECT_TRUE(HasCalled("open tcp 123"));
  EXPECT_THAT(System.Store.Writes, IsEmpty());
  Server.reset();
  EXPECT_EQ(System.Net.OpenCount(), 0U);
}

TEST_F(CommandLineTest, AnInstallThatFailsOnTheWayRunsOn) {
  When("install", [] { throw RuntimeError(error_number::PermissionDenied); });
  EXPECT_EQ(Load("-install"), Loaded::Running);
  EXPECT_THAT(System.Service.Log, IsEmpty());
  EXPECT_FALSE(HasCalled("start service"));
}

}  // namespace
}  // namespace cvl
