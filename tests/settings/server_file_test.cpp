// ReadCVLFile around the settings: the server file in front of them and the sync behind.

#include "tests/settings/settings_bench.h"

namespace cvl {
namespace {

class ServerFileTest : public SettingsTest {};

TEST_F(ServerFileTest, StartsTheUpdateClientWhenItIsMissingAndDoesNothingElse) {
  Files.Contents.clear();
  Store("Settings", "NO:7:Hour/s:EU:36");
  Store("NTP37", "YES:YES:YES:37");
  Settings.FileRequested = true;
  Settings.ReadCVLFile();
  EXPECT_EQ(UpdatesStarted, 1);
  EXPECT_TRUE(Registered.Opened.empty());
  EXPECT_TRUE(Registered.Writes.empty());
  EXPECT_EQ(Net.OpenCount(), 0U);
  EXPECT_EQ(Schedule.SyncSeconds(), 0);
  EXPECT_TRUE(Settings.FileRequested);
  EXPECT_EQ(SyncsStarted, 0);
}

TEST_F(ServerFileTest, LetsTheUnloadOverwriteTheSettingsWhenItIsMissing) {
  Files.Contents.clear();
  Store("Settings", "NO:7:Hour/s:EU:36");
  Store("NTP37", "YES:YES:YES:1037");
  Settings.ReadCVLFile();
  Settings.WriteSettings();
  EXPECT_EQ(Stored("Settings"), "YES:59:Minute/s:NA:0");
  EXPECT_EQ(Stored("NTP37"), "NO:NO:NO:37");
}

TEST_F(ServerFileTest, IsReadIntoTheBoxOfServers) {
  WriteServerFile("a:::First NA:::7:::0\r\nb:::Second EU:::8:::0\r\n");
  Settings.ReadCVLFile();
  EXPECT_EQ(UpdatesStarted, 0);
  EXPECT_EQ(Window.Servers.Count(), 2);
  EXPECT_EQ(Servers.Host(2), "b");
}

TEST_F(ServerFileTest, HasItsFirstServerSelectedAndNoneInUse) {
  WriteServerFile("a:::First NA:::7:::0\r\nb:::Second EU:::8:::0\r\n");
  Settings.ReadCVLFile();
  EXPECT_EQ(Window.Servers.Selected(), 1);
  EXPECT_EQ(Servers.CurrentServer, "");
}

TEST_F(ServerFileTest, HasTheServersOfTheStoredRegionCounted) {
  WriteServerFile("a:::First NA:::7:::0\r\nb:::Second EU:::8:::0\r\nc:::Third EU:::8:::0\r\n");
  Store("Settings", "YES:59:Minutes/s:EU:36");
  Settings.ReadCVLFile();
  EXPECT_EQ(Draw.RegionCount(), 2);
}

TEST_F(ServerFileTest, MayHoldNoServerAtAll) {
  WriteServerFile("");
  Store("Settings", "YES:5:Minutes/s:NA:36");
  Store("NTP37", "YES:YES:NO:37");
  Settings.FileRequested = true;
  Settings.ReadCVLFile();
  EXPECT_EQ(Window.Servers.Count(), 0);
  EXPECT_EQ(Schedule.SyncSeconds(), 5 * 60);
  EXPECT_TRUE(Net.IsListening(37));
  EXPECT_FALSE(Settings.FileRequested);
}

TEST_F(ServerFileTest, EndsTheLoadWithItsFailure) {
  WriteServerFile("a:::First NA:::99:::0\r\n");
  ExpectRuntimeError(error_number::InvalidPropertyValue, [this] { Settings.ReadCVLFile(); });
  EXPECT_TRUE(Registered.Opened.empty());
  Files.OpenError = error_number::PermissionDenied;
  ExpectRuntimeError(error_number::PermissionDenied, [this] { Settings.ReadCVLFile(); });
}

TEST_F(ServerFileTest, StartsASyncWhenItWasBeingFetched) {
  Settings.ReadCVLFile();
  EXPECT_EQ(SyncsStarted, 0);
  Settings.FileRequested = true;
  Settings.ReadCVLFile();
  EXPECT_EQ(SyncsStarted, 1);
  EXPECT_FALSE(Settings.FileRequested);
  Settings.ReadCVLFile();
  EXPECT_EQ(SyncsStarted, 1);
}

TEST_F(ServerFileTest, StartsTheSyncWhenAllElseIsRead) {
  Store("Settings", "YES:5:Hour/s:NA:36");
  Settings.FileRequested = true;
  Settings.SyncTimeNow = [this] {
    ++SyncsStarted;
    EXPECT_EQ(Schedule.SyncSeconds(), 5 * 3600);
    EXPECT_EQ(Draw.RegionCount(), 1);
    EXPECT_EQ(Window.Servers.Selected(), 1);
    EXPECT_FALSE(Settings.FileRequested);
  };
  Settings.ReadCVLFile();
  EXPECT_EQ(SyncsStarted, 1);
}

TEST_F(ServerFileTest, LeavesAnIntervalThatDoesNotFitToTheCaller) {
  Store("Settings", "YES:999999:Day/s:NA:36");
  Settings.FileRequested = true;
  ExpectRuntimeError(error_number::Overflow, [this] { Settings.ReadCVLFile(); });
  EXPECT_EQ(Draw.RegionCount(), 0) << "what comes behind it is left undone";
  EXPECT_EQ(Window.Servers.Selected(), 0);
  EXPECT_TRUE(Settings.FileRequested);
  EXPECT_EQ(SyncsStarted, 0);
}

}  // namespace
}  // namespace cvl
