// The windows of a run, connected to the routines that their controls belong to.

#include "tests/host/host_bench.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class WindowsTest : public HostTest {
 protected:
  MainWindow &Main() { return Server->Window; }

  /// Selects a node of the tree as a hand does.
  void ClickNode(std::int16_t node) {
    Main().CVL_TV.Selected = node;
    Main().CVL_TV.OnNodeClick(node);
  }

  ConfigurationWindow &OpenConfiguration() {
    ClickNode(8);
    return Server->Others().Configuration();
  }

  std::vector<TrayMessage> TrayMessages() const {
    std::vector<TrayMessage> messages;
    for (const FakeShell::Call &call : System.Tray.Calls)
      messages.push_back(call.Message);
    return messages;
  }
};

// Tree and panels.

TEST_F(WindowsTest, TheLastTwoNodesShowTheSecondaryWindows) {
  Load("-config");
  EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr);
  ClickNode(8);
  ASSERT_NE(Server->Others().ConfigurationIfAny(), nullptr);
  EXPECT_TRUE(Server->Others().ConfigurationIfAny()->Visible);
  EXPECT_EQ(Server->Others().AboutIfAny(), nullptr);
  ClickNode(7);
  ASSERT_NE(Server->Others().AboutIfAny(), nullptr);
  EXPECT_TRUE(Server->Others().AboutIfAny()->Visible);
}

TEST_F(WindowsTest, AClickOnTheServiceTextSelectsTheNodeAgain) {
  Load("-config");
  ClickNode(3);
  Server->State.Requests.ReqTCP13 = 5;
  Main().svrStatlbl.OnClick();
  EXPECT_NE(Main().svrStatlbl.Caption.find("Requests: 5/t"), std::string::npos);
}

TEST_F(WindowsTest, AClickOnTheServiceTextWithoutASelectedNodeIsHarmless) {
  Load("-config");
  Server->State.Requests.ReqTCP37 = 5;
  const std::string before = Main().svrStatlbl.Caption;
  Main().svrStatlbl.OnClick();
  EXPECT_EQ(Main().svrStatlbl.Caption, before);
}

TEST_F(WindowsTest, AFailureBehindAClickOnTheServiceTextIsPassedOver) {
  Load("-config");
  Server->Others().OnConfigurationMade = [](ConfigurationWindow &) { throw RuntimeError(6); };
  Main().CVL_TV.Selected = 8;
  EXPECT_NO_THROW(Main().svrStatlbl.OnClick());
}

// Configuration window.

TEST_F(WindowsTest, ChoosingARegionDrawsFromItAndLeavesTheServer) {
  System.Files.Contents[ServerFile] += "10.0.0.9:::One EU:::3:::2\n";
  Load("-config");
  ConfigurationWindow &window = OpenConfiguration();
  window.Regions.Choose(2);
  EXPECT_EQ(Server->State.RegionCode, "EU");
  Main().RandomCheck.SetValue(Tick::On);
  EXPECT_THAT(System.Net.Sent, SizeIs(1));
  EXPECT_EQ(System.Net.Sent[0].To, At("10.0.0.1", 123)) << "asked before";
  Main().SyncN.SetText("1");
  Main().SyncIntC.Choose(0);
  System.Loop.Advance(1000);
  ASSERT_THAT(System.Net.Sent, SizeIs(2));
  EXPECT_EQ(System.Net.Sent[1].To, At("10.0.0.9", 123));
}

TEST_F(WindowsTest, ARegionWithoutServersIsAccepted) {
  Load("-config");
  OpenConfiguration().Regions.Choose(6);
  EXPECT_EQ(Server->State.RegionCode, "AP");
}

TEST_F(WindowsTest, TheRegionIsStoredByTheUnloadAndNotByClosingTheWindow) {
  Load("-config");
  OpenConfiguration().Regions.Choose(1);
  Server->Others().CloseConfiguration();
  EXPECT_EQ(System.Store.Text(FakeRegistry::SettingsKey, "Settings"), "NO:59:Minutes/s:NA:36");
  Server->Unload(UnloadMode::CloseButton);
  EXPECT_EQ(System.Store.Text(FakeRegistry::SettingsKey, "Settings"), "NO:59:Minutes/s:SA:36");
}

TEST_F(WindowsTest, TheLogSwitchTurnsTheLogOffAndOn) {
  Load("-config");
  ConfigurationWindow &window = OpenConfiguration();
  ASSERT_TRUE(window.wc3Logs.IsTicked());
  window.wc3Logs.SetValue(Tick::Off);
  EXPECT_FALSE(Server->State.Flags.EnableLogging);
  window.wc3Logs.SetValue(Tick::On);
  EXPECT_TRUE(Server->State.Flags.EnableLogging);
}

TEST_F(WindowsTest, TheBoxesWithoutEffectHaveNone) {
  Load("-config");
  ConfigurationWindow &window = OpenConfiguration();
  window.OpenMin.SetValue(Tick::On);
  window.RunCVL.SetValue(Tick::On);
  Server->Unload(UnloadMode::CloseButton);
  EXPECT_EQ(System.Store.Text(FakeRegistry::SettingsKey, "OpenMinimized"), "(none)");
}

TEST_F(WindowsTest, CheckingForUpdatesDisablesTheButton) {
  Load("-config");
  ConfigurationWindow &window = OpenConfiguration();
  window.CheckUpdate.Click();
  EXPECT_FALSE(window.CheckUpdate.Enabled);
}

TEST_F(WindowsTest, TheTimeZoneButtonOpensTheSystemsDialog) {
  Load("-config");
  OpenConfiguration().SelTimeZone.Click();
  EXPECT_TRUE(HasCalled("date and time dialog"));
}

TEST_F(WindowsTest, OkClosesTheConfigurationWindow) {
  Load("-config");
  OpenConfiguration().cfgsvrOK.Click();
  EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr);
}

TEST_F(WindowsTest, AWindowOpenedAgainIsConnectedAgain) {
  Load("-config");
  OpenConfiguration().cfgsvrOK.Click();
  OpenConfiguration().cfgsvrOK.Click();
  EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr);
}

// Into the tray and back.

TEST_F(WindowsTest, AShownWindowComesWithAResizeThatRemovesTheTrayEntry) {
  Load("-config");
  EXPECT_THAT(TrayMessages(), ElementsAre(TrayMessage::Remove));
  EXPECT_TRUE(Main().Visible);
}

TEST_F(WindowsTest, OpenMinimizedStartsInTheTrayWhereAWindowIsShown) {
  Store("OpenMinimized", "YES");
  Load("-config");
  EXPECT_FALSE(Main().Visible);
  EXPECT_EQ(Main().State, WindowState::Minimized);
  EXPECT_EQ(TrayMessages().front(), TrayMessage::Add);
}

TEST_F(WindowsTest, OpenMinimizedHasNoEffectWithoutAWindow) {
  Store("OpenMinimized", "YES");
  Load("");
  EXPECT_TRUE(System.Tray.Calls.empty());
}

TEST_F(WindowsTest, TheMenuEntryShowBringsTheWindowBack) {
  Load("-config");
  Server->Tray().OnResize(WindowState::Minimized);
  EXPECT_FALSE(Main().Visible);
  Main().mnuShow.OnClick();
  EXPECT_TRUE(Main().Visible);
  EXPECT_EQ(Main().State, WindowState::Normal);
  EXPECT_EQ(TrayMessages().back(), TrayMessage::Remove);
}

TEST_F(WindowsTest, TheMenuEntryExitEndsTheProgram) {
  Load("-config");
  Server->Tray().OnResize(WindowState::Minimized);
  Main().mnuExit.OnClick();
  EXPECT_TRUE(System.Loop.IsQuitting());
  EXPECT_EQ(TrayMessages().back(), TrayMessage::Remove);
}

// The end of the secondary windows.

TEST_F(WindowsTest, TheCloseButtonUnloadsBothSecondaryWindows) {
  Load("-config");
  ClickNode(7);
  ClickNode(8);
  Server->Unload(UnloadMode::CloseButton);
  EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr);
  EXPECT_EQ(Server->Others().AboutIfAny(), nullptr);
}

TEST_F(WindowsTest, ExitUnloadsBothSecondaryWindows) {
  Load("-config");
  ClickNode(7);
  ClickNode(8);
  Server->MnuExit();
  EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr);
  EXPECT_EQ(Server->Others().AboutIfAny(), nullptr);
}

TEST_F(WindowsTest, AStopOfTheServiceUnloadsBothSecondaryWindows) {
  Load("-config");
  ClickNode(7);
  ClickNode(8);
  System.Service.Stop();
  EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr);
  EXPECT_EQ(Server->Others().AboutIfAny(), nullptr);
}

TEST_F(WindowsTest, TheEndOfTheSystemLeavesAnOpenAboutBox) {
  Load("-config");
  ClickNode(7);
  ClickNode(8);
  Server->Unload(UnloadMode::SystemEnds);
  EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr);
  EXPECT_NE(Server->Others().AboutIfAny(), nullptr);
}

TEST_F(WindowsTest, AWindowOpenedAgainDuringACheckHasItsButtonEnabled) {
  Load("-config");
  OpenConfiguration().CheckUpdate.Click();
  Server->Others().CloseConfiguration();
  EXPECT_TRUE(OpenConfiguration().CheckUpdate.Enabled) << "a fresh window starts so";
}

}  // namespace
}  // namespace cvl
