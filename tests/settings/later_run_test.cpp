// A run with settings: what each of them does to the boxes and flags.

#include "tests/settings/settings_bench.h"

namespace cvl {
namespace {

using testing::ElementsAre;

class LaterRun : public SettingsTest {
 protected:
  void ReadSettings(const std::string &text) {
    Store("Settings", text);
    Settings.ReadCVLFile();
  }
};

TEST_F(LaterRun, WritesNothing) {
  ReadSettings("YES:59:Minutes/s:NA:36");
  EXPECT_TRUE(Registered.Writes.empty());
}

TEST_F(LaterRun, TakesTheFourFieldsOfTheSync) {
  ReadSettings("NO:7:Hour/s:EU:36");
  EXPECT_FALSE(Window.RandomCheck.IsTicked());
  EXPECT_EQ(Window.SyncN.Text(), "7");
  EXPECT_EQ(Window.SyncIntC.Text(), "Hour/s");
  EXPECT_EQ(State.RegionCode, "EU");
  EXPECT_EQ(Schedule.SyncSeconds(), 7 * 3600);
}

TEST_F(LaterRun, KeepsAUnitThatTheListDoesNotHave) {
  ReadSettings("YES:59:Minutes/s:NA:36");
  EXPECT_EQ(Window.SyncIntC.Text(), "Minutes/s");
  EXPECT_EQ(Schedule.SyncSeconds(), 59 * 60);
}

TEST_F(LaterRun, TakesNothingButYesInCapitalsForYes) {
  for (const char *random : {"yes", "Yes", " YES", "YES ", "1", ""}) {
    Window.RandomCheck.SetValue(Tick::On);
    ReadSettings(std::string(random) + ":59:Minutes/s:NA:36");
    EXPECT_FALSE(Window.RandomCheck.IsTicked()) << random;
  }
  ReadSettings("YES:59:Minutes/s:NA:36");
  EXPECT_TRUE(Window.RandomCheck.IsTicked());
}

TEST_F(LaterRun, LeavesTheCountAloneWhenItIsNoNumber) {
  ReadSettings("YES:abc:Hour/s:NA:36");
  EXPECT_EQ(Window.SyncN.Text(), "59");
  ReadSettings("YES::Hour/s:NA:36");
  EXPECT_EQ(Window.SyncN.Text(), "59");
  ReadSettings("YES: 12 :Hour/s:NA:36");
  EXPECT_EQ(Window.SyncN.Text(), " 12 ");
}

TEST_F(LaterRun, CutsTheBlanksOfTheRegion) {
  ReadSettings("YES:59:Minutes/s:  EU :36");
  EXPECT_EQ(State.RegionCode, "EU");
}

TEST_F(LaterRun, TakesAnEmptyRegionForNA) {
  State.RegionCode = "EU";
  ReadSettings("YES:59:Minutes/s::36");
  EXPECT_EQ(State.RegionCode, "NA");
  State.RegionCode = "EU";
  ReadSettings("YES:59:Minutes/s:  :36");
  EXPECT_EQ(State.RegionCode, "NA");
}

TEST_F(LaterRun, NeverReadsTheReplyHeaderBack) {
  for (const char *rest : {"", ":99", ":abc", ":99:1", ":36:1:2"}) {
    State.Sync.ReplyHeaderByte = 0;
    ReadSettings("YES:59:Minutes/s:NA" + std::string(rest));
    EXPECT_EQ(State.Sync.ReplyHeaderByte, 36) << rest;
  }
}

TEST_F(LaterRun, TakesNothingFromFewerThanFourFields) {
  Store("NTP37", "YES:YES:YES:37");
  ReadSettings("NO:7:Hour/s");
  EXPECT_TRUE(Window.RandomCheck.IsTicked());
  EXPECT_EQ(Window.SyncN.Text(), "59");
  EXPECT_EQ(Window.SyncIntC.Text(), "Minute/s");
  EXPECT_EQ(State.Sync.ReplyHeaderByte, 0);
  EXPECT_EQ(Net.OpenCount(), 0U);
  EXPECT_FALSE(Window.eNTP.IsTicked());
  EXPECT_EQ(Schedule.SyncSeconds(), 59 * 60);
}

TEST_F(LaterRun, StoresAReplyHeaderOf0AfterFewerThanFourFields) {
  ReadSettings("YES:59");
  EXPECT_EQ(State.Sync.ReplyHeaderByte, 0);
  Settings.WriteSettings();
  EXPECT_EQ(Stored("Settings"), "YES:59:Minute/s:NA:0");
  Settings.ReadCVLFile();
  EXPECT_EQ(State.Sync.ReplyHeaderByte, 36);
}

TEST_F(LaterRun, TakesTheFlagsEvenWithFewerThanFourFields) {
  Store("UseJulian", "YES");
  Store("EnableLogging", "YES");
  Store("OpenMinimized", "YES");
  ReadSettings("x");
  EXPECT_TRUE(State.Flags.UseJulian);
  EXPECT_TRUE(State.Flags.EnableLogging);
  EXPECT_EQ(Window.State, WindowState::Minimized);
}

TEST_F(LaterRun, MinimisesAWindowThatIsNotShownWithoutTheTray) {
  Store("OpenMinimized", "YES");
  ReadSettings("YES:59:Minutes/s:NA:36");
  EXPECT_EQ(Window.State, WindowState::Minimized);
  EXPECT_TRUE(Tray.Calls.empty());
}

TEST_F(LaterRun, TakesAWindowThatIsShownIntoTheTray) {
  Window.Visible = true;
  Store("OpenMinimized", "YES");
  ReadSettings("YES:59:Minutes/s:NA:36");
  EXPECT_EQ(Window.State, WindowState::Minimized);
  EXPECT_FALSE(Window.Visible);
  ASSERT_EQ(Tray.Calls.size(), 1U);
  EXPECT_EQ(Tray.Calls[0].Message, TrayMessage::Add);
  ReadSettings("YES:59:Minutes/s:NA:36");
  EXPECT_EQ(Tray.Calls.size(), 1U) << "it is there already";
}

TEST_F(LaterRun, SetsAFlagForYesAndClearsNone) {
  for (const char *text : {"NO", "yes", "", "YES "}) {
    Store("UseJulian", text);
    Store("EnableLogging", text);
    Store("OpenMinimized", text);
    ReadSettings("YES:59:Minutes/s:NA:36");
    EXPECT_FALSE(State.Flags.UseJulian) << text;
    EXPECT_FALSE(State.Flags.EnableLogging) << text;
    EXPECT_EQ(Window.State, WindowState::Normal) << text;
  }
  State.Flags.UseJulian = true;
  State.Flags.EnableLogging = true;
  ReadSettings("YES:59:Minutes/s:NA:36");
  EXPECT_TRUE(State.Flags.UseJulian);
  EXPECT_TRUE(State.Flags.EnableLogging);
}

TEST_F(LaterRun, ReadsTheZoneNamesOfTheSystem) {
  Registered.Put(FakeRegistry::ZoneKey, "StandardName", "Mitteleurop\xE4ische Zeit");
  Registered.Put(FakeRegistry::ZoneKey, "DaylightName", "Sommerzeit");
  ReadSettings("YES:59:Minutes/s:NA:36");
  EXPECT_EQ(StandardZoneName, "Mitteleurop\xE4ische Zeit");
  EXPECT_EQ(DaylightZoneName, "Sommerzeit");
}

TEST_F(LaterRun, KnowsWhetherTheSystemStartsIt) {
  ReadSettings("YES:59:Minutes/s:NA:36");
  EXPECT_FALSE(Settings.StartsWithSystem);
  Registered.Put(FakeRegistry::RunKey, "Chronvale Server", "anything");
  ReadSettings("YES:59:Minutes/s:NA:36");
  EXPECT_TRUE(Settings.StartsWithSystem);
}

TEST_F(LaterRun, ReadsInItsOrder) {
  Registered.Put(FakeRegistry::RunKey, "Chronvale Server", "");
  ReadSettings("YES:59:Minutes/s:NA:36");
  ASSERT_GE(Registered.Opened.size(), 4U);
  Registered.Opened.resize(4);
  EXPECT_THAT(Registered.Opened, ElementsAre(FakeRegistry::ZoneKey, FakeRegistry::ZoneKey,
                                             FakeRegistry::RunKey, FakeRegistry::SettingsKey));
}

}  // namespace
}  // namespace cvl
