// What the unload writes.

#include "tests/settings/settings_bench.h"

namespace cvl {
namespace {

using testing::ElementsAre;

class UnloadSettings : public SettingsTest {};

TEST_F(UnloadSettings, AreTheSevenValuesInTheirOrder) {
  Settings.WriteSettings();
  EXPECT_THAT(Registered.Writes,
              ElementsAre("Settings=YES:59:Minute/s:NA:0", "EnableLogging=NO", "NTP37=NO:NO:NO:37",
                          "UNIX519=NO:NO:NO:519", "SNTP123=NO:NO:NO:123", "CVL3777=NO:NO:NO:3777",
                          "DTS13=NO:NO:NO:13"));
  EXPECT_EQ(Registered.OpenKeys, 0);
}

TEST_F(UnloadSettings, AreThoseOfTheBoxes) {
  Window.RandomCheck.SetValue(Tick::Off);
  Window.SyncN.SetText("12");
  Window.SyncIntC.SetText("Day/s");
  State.RegionCode = "AS";
  State.Sync.ReplyHeaderByte = 36;
  State.Flags.EnableLogging = true;
  Window.eDTS.SetValue(Tick::On);
  Window.eUDP13.SetValue(Tick::On);
  Window.DS_Ptxt.SetText("1013");
  Window.eTCP123.SetValue(Tick::On);
  Settings.WriteSettings();
  EXPECT_EQ(Stored("Settings"), "NO:12:Day/s:AS:36");
  EXPECT_EQ(Stored("EnableLogging"), "YES");
  EXPECT_EQ(Stored("DTS13"), "YES:NO:YES:1013");
  EXPECT_EQ(Stored("SNTP123"), "NO:YES:NO:123");
}

TEST_F(UnloadSettings, TakeTheTextsOfTheBoxesAsTheyStand) {
  Window.SyncIntC.SetText("a:b");
  Window.NTP_Ptxt.SetText("");
  Settings.WriteSettings();
  EXPECT_EQ(Stored("Settings"), "YES:59:a:b:NA:0");
  EXPECT_EQ(Stored("NTP37"), "NO:NO:NO:");
}

TEST_F(UnloadSettings, LeaveTheOtherValuesAlone) {
  Store("UseJulian", "no");
  Store("OpenMinimized", "YES");
  State.Flags.UseJulian = true;
  Settings.WriteSettings();
  EXPECT_EQ(Stored("UseJulian"), "no");
  EXPECT_EQ(Stored("OpenMinimized"), "YES");
}

TEST_F(UnloadSettings, ComeBackWithTheNextRun) {
  Store("Settings", "NO:7:Hour/s:EU:36");
  Store("NTP37", "YES:YES:NO:1037");
  Store("SNTP123", "YES:NO:YES:1123");
  Store("UNIX519", "NO:NO:NO:519");
  Store("CVL3777", "YES:NO:NO:3777");
  Store("DTS13", "YES:YES:YES:1013");
  Store("EnableLogging", "YES");
  Settings.ReadCVLFile();
  Settings.WriteSettings();
  EXPECT_EQ(Stored("Settings"), "NO:7:Hour/s:EU:36");
  EXPECT_EQ(Stored("NTP37"), "YES:YES:NO:1037");
  EXPECT_EQ(Stored("SNTP123"), "YES:NO:YES:1123");
  EXPECT_EQ(Stored("UNIX519"), "NO:NO:NO:519");
  EXPECT_EQ(Stored("CVL3777"), "YES:NO:NO:3777");
  EXPECT_EQ(Stored("DTS13"), "YES:YES:YES:1013");
  EXPECT_EQ(Stored("EnableLogging"), "YES");
}

TEST_F(UnloadSettings, AreLostInSilenceWhenTheyCannotBeWritten) {
  Registered.SetResult = registry_result::AccessDenied;
  EXPECT_NO_THROW(Settings.WriteSettings());
  EXPECT_TRUE(MessageBox.Boxes.empty());
}

}  // namespace
}  // namespace cvl
