#include "settings/registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/fake_message_boxes.h"
#include "tests/support/fake_registry.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

constexpr std::string_view Path = "Software\\Chronvale Server";
constexpr const char *Key = FakeRegistry::SettingsKey;

class RegistryTest : public testing::Test {
 protected:
  std::string Read(std::string_view name) { return Module.RegReadString(Path, name); }
  bool Write(std::string_view name, std::string_view text) {
    return Module.RegWriteString(RegistryRoot::LocalMachine, Path, name, text);
  }

  FakeRegistry Store;
  FakeMessageBoxes Boxes;
  Registry Module{Store, Boxes};
};

class RegReadString : public RegistryTest {};

TEST_F(RegReadString, FindsATextAmongOthers) {
  Store.Put(Key, "a", "1");
  Store.Put(Key, "b", "2");
  Store.Put(Key, "c", "3");
  EXPECT_EQ(Read("b"), "2");
}

TEST_F(RegReadString, IsEmptyForAKeyOrAValueThatIsNotThere) {
  EXPECT_EQ(Read("a"), "");
  Store.Put(Key, "b", "2");
  EXPECT_EQ(Read("a"), "");
}

TEST_F(RegReadString, CannotTellAnEmptyTextFromNone) {
  Store.Put(Key, "a", "");
  EXPECT_EQ(Read("a"), "");
}

TEST_F(RegReadString, ComparesNamesLetterByLetter) {
  Store.Put(Key, "settings", "1");
  EXPECT_EQ(Read("Settings"), "");
  EXPECT_EQ(Read("setting"), "");
  EXPECT_EQ(Read("settings "), "");
  EXPECT_EQ(Read("settings"), "1");
}

TEST_F(RegReadString, FindsItsKeyWithoutRegardToCase) {
  Store.Put(Key, "a", "1");
  EXPECT_EQ(Module.RegReadString("SOFTWARE\\CHRONVALE SERVER", "a"), "1");
}

TEST_F(RegReadString, ReadsTextsOfUpTo254Characters) {
  Store.Put(Key, "a", std::string(254, 'x'));
  EXPECT_EQ(Read("a"), std::string(254, 'x'));
  Store.Put(Key, "a", std::string(255, 'x'));
  EXPECT_EQ(Read("a"), "");
}

TEST_F(RegReadString, EndsItsWalkAtAValueThatIsTooLong) {
  Store.Put(Key, "before", "1");
  Store.Put(Key, "long", std::string(255, 'x'));
  Store.Put(Key, "behind", "2");
  EXPECT_EQ(Read("before"), "1");
  EXPECT_EQ(Read("long"), "");
  EXPECT_EQ(Read("behind"), "");
}

TEST_F(RegReadString, EndsItsWalkAtANameThatIsTooLong) {
  Store.Put(Key, std::string(255, 'n'), "1");
  Store.Put(Key, "behind", "2");
  EXPECT_EQ(Read("behind"), "");
}

TEST_F(RegReadString, WalksOnToTheLastValueWhenItHasFoundItsOwn) {
  Store.Put(Key, "a", "1");
  Store.Put(Key, "b", "2");
  Store.Put(Key, "c", "3");
  EXPECT_EQ(Read("a"), "1");
  EXPECT_EQ(Store.Enumerations, 4);  // three values and the end
}

TEST_F(RegReadString, DoesNotLookAtTheTypeOfAValue) {
  Store.PutBytes(Key, "number", "\x41\x42\0\0"s);
  EXPECT_EQ(Read("number"), "AB\0"s);
}

TEST_F(RegReadString, ReadsAValueOfNoBytesAsAnEmptyText) {
  Store.PutBytes(Key, "none", "");
  EXPECT_EQ(Read("none"), "");
}

TEST_F(RegReadString, KeepsBlanksAndBytes) {
  Store.Put(Key, "a", "  \xE4\xFF  ");
  EXPECT_EQ(Read("a"), "  \xE4\xFF  ");
}

TEST_F(RegReadString, ReadsBelowTheLocalMachineAlone) {
  Store.Put("HKEY_CURRENT_USER\\Software\\Chronvale Server", "a", "1");
  EXPECT_EQ(Read("a"), "");
}

TEST_F(RegReadString, IsEmptyWhenTheStoreIsDamaged) {
  Store.Put(Key, "a", "1");
  Store.OpenResult = registry_result::BadDatabase;
  EXPECT_EQ(Read("a"), "");
  EXPECT_THAT(Boxes.Boxes, IsEmpty());
}

TEST_F(RegReadString, LeavesNoKeyOpen) {
  Store.Put(Key, "a", "1");
  Read("a");
  Read("b");
  EXPECT_EQ(Store.OpenKeys, 0);
}

class RegWriteString : public RegistryTest {};

TEST_F(RegWriteString, MakesTheKeyThatIsNotThere) {
  EXPECT_FALSE(Store.HasKey(Key));
  EXPECT_TRUE(Write("a", "1"));
  EXPECT_EQ(Store.Text(Key, "a"), "1");
  EXPECT_EQ(Store.OpenKeys, 0);
}

TEST_F(RegWriteString, ReplacesAValueInItsPlace) {
  Store.Put(Key, "a", "1");
  Store.Put(Key, "b", "2");
  EXPECT_TRUE(Write("A", "3"));
  EXPECT_THAT(Store.Names(Key), ElementsAre("a", "b"));
  EXPECT_EQ(Store.Text(Key, "a"), "3");
}

TEST_F(RegWriteString, WritesBelowTheGivenRoot) {
  EXPECT_TRUE(Module.RegWriteString(RegistryRoot::CurrentUser, "A", "a", "1"));
  EXPECT_EQ(Store.Text("HKEY_CURRENT_USER\\A", "a"), "1");
}

TEST_F(RegWriteString, IsFalseWhenTheWriteFails) {
  Store.SetResult = registry_result::DiskFull;
  EXPECT_FALSE(Write("a", "1"));
  Store.SetResult = registry_result::Success;
  EXPECT_TRUE(Write("a", "1"));
}

TEST_F(RegWriteString, IsFalseWhenTheKeyCannotBeOpened) {
  Store.CreateResult = registry_result::BadDatabase;
  EXPECT_FALSE(Write("a", "1"));
  EXPECT_THAT(Store.Writes, IsEmpty());
}

class RegParseKeyPath : public RegistryTest {
 protected:
  void Parse(std::string path) {
    PathLeft = std::move(path);
    Root = RegistryRoot::Users;
    Module.RegParseKeyPath(PathLeft, Root);
  }

  std::string PathLeft;
  RegistryRoot Root = RegistryRoot::None;
};

TEST_F(RegParseKeyPath, CutsAtTheFirstBackslash) {
  Parse("HKEY_LOCAL_MACHINE\\Software\\Chronvale Server");
  EXPECT_EQ(Root, RegistryRoot::LocalMachine);
  EXPECT_EQ(PathLeft, "Software\\Chronvale Server");
  EXPECT_THAT(Boxes.Boxes, IsEmpty());
}

TEST_F(RegParseKeyPath, LeavesNothingOfARootAlone) {
  Parse("HKEY_LOCAL_MACHINE");
  EXPECT_EQ(Root, RegistryRoot::LocalMachine);
  EXPECT_EQ(PathLeft, "");
}

TEST_F(RegParseKeyPath, FindsNoRootByAnUnknownName) {
  Parse("HKEY_NOWHERE\\Software");
  EXPECT_EQ(Root, RegistryRoot::None);
  EXPECT_EQ(PathLeft, "Software");
  Parse("HKEY_");
  EXPECT_EQ(Root, RegistryRoot::None);
  EXPECT_EQ(PathLeft, "");
  EXPECT_THAT(Boxes.Boxes, IsEmpty());
}

TEST_F(RegParseKeyPath, ShowsAPathWithoutARootAndLeavesItAlone) {
  Parse("Software\\Chronvale Server");
  EXPECT_EQ(Root, RegistryRoot::Users);
  EXPECT_EQ(PathLeft, "Software\\Chronvale Server");
  ASSERT_EQ(Boxes.Boxes.size(), 1U);
  EXPECT_EQ(Boxes.Boxes[0].Text, "Incorrect Format:\n\nSoftware\\Chronvale Server");
  EXPECT_EQ(Boxes.Boxes[0].Style, BoxStyle::Ok);
}

TEST_F(RegParseKeyPath, ShowsAPathThatEndsWithABackslash) {
  Parse("HKEY_LOCAL_MACHINE\\");
  EXPECT_EQ(Root, RegistryRoot::Users);
  EXPECT_EQ(PathLeft, "HKEY_LOCAL_MACHINE\\");
  Parse("");
  Parse("hkey_local_machine");
  ASSERT_EQ(Boxes.Boxes.size(), 3U);
  EXPECT_EQ(Boxes.Boxes[0].Text, "Incorrect Format:\n\nHKEY_LOCAL_MACHINE\\");
  EXPECT_EQ(Boxes.Boxes[1].Text, "Incorrect Format:\n\n");
}

TEST(RegRootFromName, KnowsSevenNames) {
  const auto number = [](std::string_view name) {
    return static_cast<std::uint32_t>(Registry::RegRootFromName(name));
  };
  EXPECT_EQ(number("HKEY_CLASSES_ROOT"), 0x80000000U);
  EXPECT_EQ(number("HKEY_CURRENT_USER"), 0x80000001U);
  EXPECT_EQ(number("HKEY_LOCAL_MACHINE"), 0x80000002U);
  EXPECT_EQ(number("HKEY_USERS"), 0x80000003U);
  EXPECT_EQ(number("HKEY_PERFORMANCE_DATA"), 0x80000004U);
  EXPECT_EQ(number("HKEY_CURRENT_CONFIG"), 0x80000005U);
  EXPECT_EQ(number("HKEY_DYN_DATA"), 0x80000006U);
}

TEST(RegRootFromName, ComparesExactly) {
  for (const char *name : {"", "HKEY_users", "HKEY_USERS ", "HKEY_USER", "HKU"}) {
    EXPECT_EQ(Registry::RegRootFromName(name), RegistryRoot::None) << name;
  }
}

class RegCreateKeyPath : public RegistryTest {};

TEST_F(RegCreateKeyPath, MakesNoKeyAndLeavesAShortenedPath) {
  std::string path = Key;
  Module.RegCreateKeyPath(path);
  EXPECT_EQ(path, Path);
  EXPECT_FALSE(Store.HasKey(Key));
  EXPECT_THAT(Store.Opened, IsEmpty());
}

TEST_F(RegCreateKeyPath, ChecksTheFormOfAPath) {
  std::string path = "Software";
  Module.RegCreateKeyPath(path);
  EXPECT_EQ(path, "Software");
  EXPECT_EQ(Boxes.Boxes.size(), 1U);
}

TEST(RegErrorText, HasATextForEachFailureThatIsTold) {
  EXPECT_EQ(RegErrorText(1010), "Bad Key Name");
  EXPECT_EQ(RegErrorText(1009), "The Registry Database is corrupt!");
  EXPECT_EQ(RegErrorText(1011), "Can't Open Key");
  EXPECT_EQ(RegErrorText(1012), "Can't Read Key");
  EXPECT_EQ(RegErrorText(5), "Access to this key is denied");
  EXPECT_EQ(RegErrorText(1013), "Can't Write Key");
  EXPECT_EQ(RegErrorText(14), "Out of memory");
  EXPECT_EQ(RegErrorText(87), "Invalid Parameter");
  EXPECT_EQ(RegErrorText(234), "There is more data than the buffer has been allocated to hold.");
  EXPECT_EQ(RegErrorText(259), "");
  EXPECT_EQ(RegErrorText(0), "");
}

}  // namespace
}  // namespace cvl
