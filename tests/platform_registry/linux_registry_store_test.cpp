#include "platform/linux/linux_registry_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstdlib>

#include "base/text.h"
#include "tests/platform_registry/registry_text.h"
#include "tests/platform_registry/scratch_directory.h"
#include "tests/platform_registry/system_calls.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_files.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

constexpr std::string_view Path = "Software\\Chronvale Server";
constexpr std::string_view ZonePath = "SYSTEM\\CurrentControlSet\\Control\\TimeZoneInformation";

class LinuxRegistryStoreTest : public testing::Test {
 protected:
  LinuxRegistryStoreTest() {
    Clock.Zone.StandardName = ZoneNameOf(u"CET");
    Clock.Zone.DaylightName = ZoneNameOf(u"CEST");
  }

  /// Opens a key for writing and stores a text there; the number of what failed first.
  std::int32_t Set(std::string_view name, std::string_view text) {
    RegistryKey key = RegistryKey::None;
    if (const std::int32_t result = Store.CreateKey(RegistryRoot::LocalMachine, Path, key);
        result != 0) {
      return result;
    }
    const std::int32_t result = Store.SetString(key, name, text);
    Store.CloseKey(key);
    return result;
  }

  std::int32_t Open(std::string_view path) {
    RegistryKey key = RegistryKey::None;
    const std::int32_t result = Store.OpenKey(RegistryRoot::LocalMachine, path, key);
    EXPECT_EQ(result == 0, key != RegistryKey::None);
    Store.CloseKey(key);
    return result;
  }

  /// The values of a key up to the first that fails, and with what number it ended.
  std::vector<RegistryValue> Walk(std::string_view path, std::int32_t &end) {
    std::vector<RegistryValue> values;
    RegistryKey key = RegistryKey::None;
    Store.OpenKey(RegistryRoot::LocalMachine, path, key);
    for (std::uint32_t index = 0;; ++index) {
      ValueBuffer buffer(255);
      end = Store.EnumValue(key, index, buffer);
      if (end != 0) break;
      values.push_back(
          {buffer.Name.substr(0, buffer.NameLength), buffer.Data.substr(0, buffer.DataLength)});
    }
    Store.CloseKey(key);
    return values;
  }
  std::vector<RegistryValue> Walk(std::string_view path) {
    std::int32_t end = 0;
    std::vector<RegistryValue> values = Walk(path, end);
    EXPECT_EQ(end, registry_result::NoMoreItems);
    return values;
  }

  ScratchDirectory Directory;
  FakeClock Clock;
  LinuxRegistryStore Store{Directory.PathOf("registry.reg"), Clock};
};

TEST_F(LinuxRegistryStoreTest, MakesItsFileWithTheFirstKey) {
  RegistryKey key = RegistryKey::None;
  EXPECT_EQ(Store.CreateKey(RegistryRoot::LocalMachine, Path, key), registry_result::Success);
  const std::string bytes = Directory.Read("registry.reg");
  EXPECT_TRUE(bytes.starts_with(RegistryFile().Bytes()));
  EXPECT_TRUE(bytes.ends_with(Heading + "\n"));
}

TEST_F(LinuxRegistryStoreTest, MakesNoFileToRead) {
  EXPECT_EQ(Open(Path), registry_result::FileNotFound);
  EXPECT_THAT(Directory.Names(), IsEmpty());
}

TEST_F(LinuxRegistryStoreTest, WalksOverWhatWasStoredInItsOrder) {
  EXPECT_EQ(Set("b", "1"), registry_result::Success);
  EXPECT_EQ(Set("a", "2"), registry_result::Success);
  EXPECT_EQ(Set("B", "3"), registry_result::Success);
  EXPECT_THAT(Walk(Path), ElementsAre(RegistryValue{"b", "3\0"s}, RegistryValue{"a", "2\0"s}));
}

TEST_F(LinuxRegistryStoreTest, KeepsWhatItDoesNotKnow) {
  Directory.Write("registry.reg", Utf16Of(WithReturns(Everything)));
  EXPECT_EQ(Set("NTP37", "NO:NO:NO:37"), registry_result::Success);
  RegistryFile expected = Parsed(Utf16Of(WithReturns(Everything)));
  expected.SetString(Key, "NTP37", "NO:NO:NO:37");
  EXPECT_EQ(Directory.Read("registry.reg"), expected.Bytes());
}

TEST_F(LinuxRegistryStoreTest, SeesWhatAnEditorChangedMeanwhile) {
  EXPECT_EQ(Set("a", "1"), registry_result::Success);
  RegistryKey key = RegistryKey::None;
  EXPECT_EQ(Store.CreateKey(RegistryRoot::LocalMachine, Path, key), registry_result::Success);
  Directory.Write("registry.reg", InKey("; edited\n\"c\"=\"3\"\n"));
  EXPECT_EQ(Store.SetString(key, "a", "2"), registry_result::Success);
  EXPECT_EQ(Directory.Read("registry.reg"), InKey("; edited\n\"c\"=\"3\"\n\"a\"=\"2\"\n"));
}

TEST_F(LinuxRegistryStoreTest, EndsTheWalkAtAValueThatIsTooLarge) {
  std::int32_t end = 0;
  const auto text = [](std::size_t length) {
    return Joined({"\"", std::string(length, 'x'), "\"\n"});
  };
  Directory.Write("registry.reg", InKey("\"a\"=\"1\"\n\"b\"=" + text(254) + "\"c\"=\"3\"\n"));
  EXPECT_EQ(Walk(Path, end).size(), 3U);
  EXPECT_EQ(end, registry_result::NoMoreItems);
  Directory.Write("registry.reg", InKey("\"a\"=\"1\"\n\"b\"=" + text(255) + "\"c\"=\"3\"\n"));
  EXPECT_EQ(Walk(Path, end).size(), 1U);
  EXPECT_EQ(end, registry_result::MoreData);
}

TEST_F(LinuxRegistryStoreTest, EndsTheWalkAtBytesThatAreTooMany) {
  std::int32_t end = 0;
  std::string bytes = "\"b\"=hex:00";
  for (int count = 1; count < 256; ++count) {
    bytes += ",00";
  }
  Directory.Write("registry.reg", InKey(bytes + "\n"));
  EXPECT_THAT(Walk(Path, end), IsEmpty());
  EXPECT_EQ(end, registry_result::MoreData);
}

TEST_F(LinuxRegistryStoreTest, EndsTheWalkAtANameThatIsTooLong) {
  std::int32_t end = 0;
  Directory.Write("registry.reg", InKey("\"" + std::string(254, 'n') + "\"=\"1\"\n"));
  EXPECT_EQ(Walk(Path, end).size(), 1U);
  Directory.Write("registry.reg", InKey("\"" + std::string(255, 'n') + "\"=\"1\"\n"));
  EXPECT_THAT(Walk(Path, end), IsEmpty());
  EXPECT_EQ(end, registry_result::MoreData);
}

TEST_F(LinuxRegistryStoreTest, OpensNothingOfADamagedFileAndNeverWritesIt) {
  const std::string damaged = InKey("\"a\"=\"1\n");
  Directory.Write("registry.reg", damaged);
  EXPECT_EQ(Open(Path), registry_result::BadDatabase);
  EXPECT_EQ(Open(ZonePath), registry_result::BadDatabase);
  EXPECT_EQ(Set("a", "2"), registry_result::BadDatabase);
  EXPECT_EQ(Directory.Read("registry.reg"), damaged);
  EXPECT_EQ(Store.Obstacle(),
            Directory.PathOf("registry.reg") + ", line 4: no line of a settings file");
}

TEST_F(LinuxRegistryStoreTest, WritesNoFileThatWasDamagedWhileAKeyWasOpen) {
  RegistryKey key = RegistryKey::None;
  EXPECT_EQ(Store.CreateKey(RegistryRoot::LocalMachine, Path, key), registry_result::Success);
  Directory.Write("registry.reg", "rubbish");
  EXPECT_EQ(Store.SetString(key, "a", "1"), registry_result::BadDatabase);
  EXPECT_EQ(Directory.Read("registry.reg"), "rubbish");
}

TEST_F(LinuxRegistryStoreTest, TakesWhatIsNoFileForDamage) {
  ASSERT_EQ(mkdir(Directory.PathOf("registry.reg").c_str(), 0700), 0);
  EXPECT_EQ(Open(Path), registry_result::BadDatabase);
  EXPECT_EQ(Set("a", "1"), registry_result::BadDatabase);
}

TEST_F(LinuxRegistryStoreTest, LeavesAFileAloneThatItMayNotRead) {
  Directory.Write("registry.reg", InKey(""));
  EXPECT_EQ(RunFailing({SYS_openat}, EACCES, [this] { return Set("a", "1"); }),
            registry_result::AccessDenied);
  EXPECT_EQ(Directory.Read("registry.reg"), InKey(""));
}

TEST_F(LinuxRegistryStoreTest, LeavesAFileAloneThatItMayNotWrite) {
  // Its directory would let it be replaced all the same.
  Directory.Write("registry.reg", InKey(""));
  const int result =
      RunFailing({SYS_faccessat, SYS_faccessat2}, EACCES, [this] { return Set("a", "1"); });
  EXPECT_EQ(result, registry_result::AccessDenied);
  EXPECT_EQ(Directory.Read("registry.reg"), InKey(""));
}

TEST_F(LinuxRegistryStoreTest, TellsWhyAWriteFailed) {
  Directory.Write("registry.reg", InKey("\"a\"=\"1\"\n"));
  const auto failing = [this](long call, int error) {
    return RunFailing({call}, error, [this] { return Set("a", "2"); });
  };
  EXPECT_EQ(failing(SYS_fsync, ENOSPC), registry_result::DiskFull);
  EXPECT_EQ(failing(SYS_renameat, EROFS), registry_result::AccessDenied);
  EXPECT_EQ(failing(SYS_flock, EWOULDBLOCK), registry_result::SharingViolation);
  // 1016 doesn't fit the status of a process.
  EXPECT_EQ(failing(SYS_fsync, EIO), registry_result::InputOutputError & 0xFF);
  EXPECT_EQ(Directory.Read("registry.reg"), InKey("\"a\"=\"1\"\n"));
}

TEST_F(LinuxRegistryStoreTest, FailsWithoutItsDirectory) {
  LinuxRegistryStore store(Directory.PathOf("missing/registry.reg"), Clock);
  RegistryKey key = RegistryKey::None;
  EXPECT_EQ(store.CreateKey(RegistryRoot::LocalMachine, Path, key), registry_result::FileNotFound);
  EXPECT_EQ(key, RegistryKey::None);
}

TEST_F(LinuxRegistryStoreTest, WritesNothingThatIsThereAlready) {
  Directory.Write("registry.reg", InKey("\"a\"=\"1\"\n"));
  EXPECT_EQ(RunFailing({SYS_renameat}, EROFS, [this] { return Set("a", "1"); }),
            registry_result::Success);
}

TEST_F(LinuxRegistryStoreTest, KnowsKeysThatAreOpenFromThoseThatAreNot) {
  ValueBuffer buffer(255);
  EXPECT_EQ(Store.SetString(RegistryKey::None, "a", "1"), registry_result::InvalidHandle);
  EXPECT_EQ(Store.EnumValue(RegistryKey::None, 0, buffer), registry_result::InvalidHandle);
  EXPECT_EQ(Store.CloseKey(RegistryKey::None), registry_result::InvalidHandle);
  RegistryKey key = RegistryKey::None;
  EXPECT_EQ(Store.CreateKey(RegistryRoot::LocalMachine, Path, key), registry_result::Success);
  EXPECT_EQ(Store.CloseKey(key), registry_result::Success);
  EXPECT_EQ(Store.CloseKey(key), registry_result::InvalidHandle);
  EXPECT_EQ(Store.CreateKey(RegistryRoot::None, Path, key), registry_result::InvalidHandle);
  EXPECT_EQ(Store.OpenKey(RegistryRoot::None, Path, key), registry_result::InvalidHandle);
}

TEST_F(LinuxRegistryStoreTest, StoresNothingInAKeyThatIsOpenForReading) {
  Directory.Write("registry.reg", InKey(""));
  RegistryKey key = RegistryKey::None;
  EXPECT_EQ(Store.OpenKey(RegistryRoot::LocalMachine, Path, key), registry_result::Success);
  EXPECT_EQ(Store.SetString(key, "a", "1"), registry_result::AccessDenied);
  EXPECT_EQ(Directory.Read("registry.reg"), InKey(""));
}

TEST_F(LinuxRegistryStoreTest, OpensATreeItself) {
  EXPECT_EQ(Open(""), registry_result::Success);
}

TEST_F(LinuxRegistryStoreTest, TakesTheZoneNamesFromTheZoneDatabase) {
  const auto both = ElementsAre(RegistryValue{"DaylightName", "CEST\0"s},
                                RegistryValue{"StandardName", "CET\0"s});
  EXPECT_THAT(Walk(ZonePath), both);
  Directory.Write("registry.reg", InKey(""));
  EXPECT_THAT(Walk("system\\currentcontrolset\\control\\timezoneinformation"), both);
  EXPECT_EQ(Open("SYSTEM\\CurrentControlSet\\Control\\TimeZone"), registry_result::FileNotFound);
}

TEST_F(LinuxRegistryStoreTest, TakesTheZoneNamesOfTheFileFirst) {
  Directory.Write("registry.reg", Head + "[HKEY_LOCAL_MACHINE\\" + std::string(ZonePath) +
                                      "]\n\"Bias\"=dword:0\n\"standardname\"=\"Mine\"\n");
  EXPECT_THAT(Walk(ZonePath), ElementsAre(RegistryValue{"Bias", "\0\0\0\0"s},
                                          RegistryValue{"standardname", "Mine\0"s},
                                          RegistryValue{"DaylightName", "CEST\0"s}));
}

TEST_F(LinuxRegistryStoreTest, PutsTheZoneNamesNowhereElse) {
  EXPECT_EQ(Set("a", "1"), registry_result::Success);
  EXPECT_EQ(Walk(Path).size(), 1U);
  EXPECT_THAT(Directory.Read("registry.reg"), testing::Not(testing::HasSubstr("CET")));
}

TEST_F(LinuxRegistryStoreTest, SeesNoObstacleInASoundFileOrNone) {
  EXPECT_EQ(Store.Obstacle(), "");
  Directory.Write("registry.reg", Everything);
  EXPECT_EQ(Store.Obstacle(), "");
}

TEST(LinuxRegistryStoreUsualPath, IsInTheProgramDirectoryOrWhereTheEnvironmentSays) {
  const FakeFiles files;
  ASSERT_EQ(unsetenv("CHRONVALE_REGISTRY"), 0);
  EXPECT_EQ(LinuxRegistryStore::UsualPath(files), "/program/registry.reg");
  ASSERT_EQ(setenv("CHRONVALE_REGISTRY", "", 1), 0);
  EXPECT_EQ(LinuxRegistryStore::UsualPath(files), "/program/registry.reg");
  ASSERT_EQ(setenv("CHRONVALE_REGISTRY", "/elsewhere/my.reg", 1), 0);
  EXPECT_EQ(LinuxRegistryStore::UsualPath(files), "/elsewhere/my.reg");
  ASSERT_EQ(unsetenv("CHRONVALE_REGISTRY"), 0);
}

}  // namespace
}  // namespace cvl
