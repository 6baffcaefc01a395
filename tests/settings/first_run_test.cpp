// A run without settings: the usual ones are written, and no listener opens.

#include "tests/settings/settings_bench.h"

namespace cvl {
namespace {

using testing::ElementsAre;

class FirstRun : public SettingsTest {};

TEST_F(FirstRun, WritesTheUsualSettingsInOrder) {
  Settings.ReadCVLFile();
  EXPECT_THAT(
      Registered.Writes,
      ElementsAre("Settings=YES:59:Minutes/s:NA:36", "OpenMinimized=NO", "NTP37=YES:YES:YES:37",
                  "EnableLogging=YES", "SNTP123=YES:YES:YES:123", "UNIX519=YES:YES:NO:519",
                  "CVL3777=YES:YES:NO:3777", "DTS13=NO:YES:YES:13", "UseJulian=YES"));
  EXPECT_EQ(Registered.OpenKeys, 0);
  EXPECT_TRUE(MessageBox.Boxes.empty());
}

TEST_F(FirstRun, OpensNoListener) {
  Settings.ReadCVLFile();
  EXPECT_EQ(Net.OpenCount(), 0U);
}

TEST_F(FirstRun, TicksTheEnableBoxesOfAllButDaytime) {
  Window.eDTS.SetValue(Tick::On);
  Settings.ReadCVLFile();
  EXPECT_TRUE(Window.eNTP.IsTicked());
  EXPECT_TRUE(Window.eSNTP.IsTicked());
  EXPECT_TRUE(Window.eUnix.IsTicked());
  EXPECT_TRUE(Window.eCVLS.IsTicked());
  EXPECT_FALSE(Window.eDTS.IsTicked());
}

TEST_F(FirstRun, ShowsTheTransportBoxesOfAllButDaytimeUnticked) {
  Settings.ReadCVLFile();
  for (const Service *service : Services.All) {
    const bool shown = service != &Services.Daytime;
    EXPECT_EQ(service->TcpBox.Visible, shown) << service->Setting;
    EXPECT_EQ(service->UdpBox.Visible, shown) << service->Setting;
    EXPECT_FALSE(service->TcpBox.IsTicked()) << service->Setting;
    EXPECT_FALSE(service->UdpBox.IsTicked()) << service->Setting;
  }
}

TEST_F(FirstRun, SetsTheFlagsAndTheReplyHeader) {
  Settings.ReadCVLFile();
  EXPECT_TRUE(State.Flags.UseJulian);
  EXPECT_TRUE(State.Flags.EnableLogging);
  EXPECT_EQ(State.Sync.ReplyHeaderByte, 36);
}

TEST_F(FirstRun, LeavesTheBoxesOfTheSyncAsTheyWereDesigned) {
  Settings.ReadCVLFile();
  EXPECT_TRUE(Window.RandomCheck.IsTicked());
  EXPECT_EQ(Window.SyncN.Text(), "59");
  EXPECT_EQ(Window.SyncIntC.Text(), "Minute/s");
  EXPECT_EQ(State.RegionCode, "NA");
  EXPECT_EQ(Schedule.SyncSeconds(), 59 * 60);
}

TEST_F(FirstRun, StoresItsUntickedBoxesWithItsUnload) {
  Settings.ReadCVLFile();
  Settings.WriteSettings();
  EXPECT_EQ(Stored("Settings"), "YES:59:Minute/s:NA:36");
  EXPECT_EQ(Stored("NTP37"), "YES:NO:NO:37");
  EXPECT_EQ(Stored("SNTP123"), "YES:NO:NO:123");
  EXPECT_EQ(Stored("UNIX519"), "YES:NO:NO:519");
  EXPECT_EQ(Stored("CVL3777"), "YES:NO:NO:3777");
  EXPECT_EQ(Stored("DTS13"), "NO:NO:NO:13");
  EXPECT_EQ(Stored("UseJulian"), "YES");
  EXPECT_EQ(Stored("OpenMinimized"), "NO");
}

TEST_F(FirstRun, GoesOnWhenNothingCanBeWritten) {
  Registered.SetResult = registry_result::DiskFull;
  Settings.ReadCVLFile();
  EXPECT_TRUE(Window.eNTP.IsTicked());
  EXPECT_EQ(Schedule.SyncSeconds(), 59 * 60);
}

TEST_F(FirstRun, IsWhatADamagedStoreLooksLike) {
  Store("Settings", "NO:5:Hour/s:EU:36");
  Registered.OpenResult = registry_result::BadDatabase;
  Registered.CreateResult = registry_result::BadDatabase;
  Settings.ReadCVLFile();
  EXPECT_TRUE(Window.eNTP.IsTicked());
  EXPECT_EQ(Net.OpenCount(), 0U);
  EXPECT_TRUE(Registered.Writes.empty());
  Settings.WriteSettings();
  EXPECT_TRUE(Registered.Writes.empty());
}

TEST_F(FirstRun, IsAnEmptyTextOfSettingsToo) {
  Store("Settings", "");
  Store("NTP37", "YES:YES:YES:1037");
  Settings.ReadCVLFile();
  EXPECT_EQ(Stored("NTP37"), "YES:YES:YES:37");
  EXPECT_EQ(Net.OpenCount(), 0U);
}

}  // namespace
}  // namespace cvl
