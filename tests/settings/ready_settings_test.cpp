// The ready settings that come with the program switch all five services on.

#include <fstream>
#include <iterator>

#include "platform/registry_file.h"
#include "tests/settings/settings_bench.h"

namespace cvl {
namespace {

class ReadySettings : public SettingsTest {
 protected:
  ReadySettings() {
    std::ifstream stream(CVL_READY_SETTINGS, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    const std::optional<RegistryFile> file = RegistryFile::Parse(bytes);
    if (!file) return;
    for (const RegistryValue &value : file->Values(FakeRegistry::SettingsKey)) {
      Registered.PutBytes(FakeRegistry::SettingsKey, value.Name, value.Data);
    }
    Settings.ReadCVLFile();
  }
};

TEST_F(ReadySettings, OpenTheSocketsOfAllFiveServices) {
  for (const Service *service : Services.All) {
    EXPECT_TRUE(service->MasterBox.IsTicked()) << service->Setting;
    EXPECT_EQ(service->TcpSlots[0].State(), SocketState::Listening) << service->Setting;
    // The datagrams of the Unix time service are never heard of.
    EXPECT_EQ(service->UdpSocket.State(),
              service == &Services.Unix ? SocketState::Closed : SocketState::Open)
        << service->Setting;
  }
}

TEST_F(ReadySettings, HaveAllValuesThatAFirstRunWrites) {
  EXPECT_TRUE(Registered.Writes.empty());
  EXPECT_EQ(Registered.Names(FakeRegistry::SettingsKey).size(), 9U);
  EXPECT_TRUE(State.Flags.UseJulian);
  EXPECT_TRUE(State.Flags.EnableLogging);
  EXPECT_EQ(Window.State, WindowState::Normal);
  EXPECT_EQ(State.Sync.ReplyHeaderByte, 36);
}

TEST_F(ReadySettings, StayAsTheyAreWhenTheServerStops) {
  std::vector<std::string> before;
  const char *const names[] = {"Settings", "EnableLogging", "NTP37", "UNIX519",
                               "SNTP123",  "CVL3777",       "DTS13"};
  for (const char *name : names) {
    before.push_back(name + std::string("=") + Stored(name));
  }
  Settings.WriteSettings();
  EXPECT_EQ(Registered.Writes, before);
}

}  // namespace
}  // namespace cvl
