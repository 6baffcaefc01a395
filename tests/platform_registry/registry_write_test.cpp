// Writing to a settings file: what changes, and that nothing else does.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/registry_file.h"
#include "tests/platform_registry/registry_text.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;
using Change = RegistryFile::Change;

/// Everything with one text in it replaced by another.
std::string EverythingWith(const std::string &old_text, const std::string &new_text) {
  std::string text = Everything;
  return text.replace(text.find(old_text), old_text.size(), new_text);
}

TEST(RegistryFileSetString, ChangesATextAndNothingElse) {
  RegistryFile file = Parsed(Everything);
  EXPECT_EQ(file.SetString(Key, "NTP37", "NO:NO:NO:37"), Change::Made);
  EXPECT_EQ(file.Bytes(), EverythingWith("YES:YES:YES:37", "NO:NO:NO:37"));
}

TEST(RegistryFileSetString, KeepsTheBlanksOfALine) {
  RegistryFile file = Parsed(InKey("\t \"a\" = \"1\"  ; one\n"));
  EXPECT_EQ(file.SetString(Key, "a", "two"), Change::Made);
  EXPECT_EQ(file.Bytes(), InKey("\t \"a\" = \"two\"  ; one\n"));
}

TEST(RegistryFileSetString, KeepsTheFormOfTheFile) {
  const std::string exported = Utf16Of(WithReturns(InKey("\"a\"=\"1\"\n")));
  RegistryFile file = Parsed(exported);
  EXPECT_EQ(file.SetString(Key, "a", "2"), Change::Made);
  EXPECT_EQ(file.SetString(Key, "b", "3"), Change::Made);
  EXPECT_EQ(file.SetString("Other", "c", "4"), Change::Made);
  EXPECT_EQ(file.Bytes(), Utf16Of(WithReturns(InKey("\"a\"=\"2\"\n\"b\"=\"3\"\n\n"
                                                    "[Other]\n\"c\"=\"4\"\n"))));
}

TEST(RegistryFileSetString, KeepsAMarkOfUtf8AndReturns) {
  RegistryFile file = Parsed("\xEF\xBB\xBF" + WithReturns(InKey("\"a\"=\"1\"\n")));
  EXPECT_EQ(file.SetString(Key, "b", "\xE4"), Change::Made);
  EXPECT_EQ(file.Bytes(), "\xEF\xBB\xBF" + WithReturns(InKey("\"a\"=\"1\"\n\"b\"=\"\xC3\xA4\"\n")));
}

TEST(RegistryFileSetString, FindsAValueWithoutRegardToCaseAndKeepsItsCase) {
  RegistryFile file = Parsed(InKey("\"nTp37\"=\"1\"\n"));
  EXPECT_EQ(file.SetString("hkey_local_machine\\software\\CHRONVALE SERVER", "NTP37", "2"),
            Change::Made);
  EXPECT_EQ(file.Bytes(), InKey("\"nTp37\"=\"2\"\n"));
}

TEST(RegistryFileSetString, PutsANewValueBehindTheLastOfItsKey) {
  RegistryFile file = Parsed(Head + "[A]\n\"a\"=\"1\"\n; end of A\n\n[B]\n\"b\"=\"2\"\n");
  EXPECT_EQ(file.SetString("A", "c", "3"), Change::Made);
  EXPECT_EQ(file.Bytes(), Head + "[A]\n\"a\"=\"1\"\n\"c\"=\"3\"\n; end of A\n\n[B]\n\"b\"=\"2\"\n");
}

TEST(RegistryFileSetString, PutsTheFirstValueBelowItsHeading) {
  RegistryFile file = Parsed(Head + "[A]\n\n[B]\n");
  EXPECT_EQ(file.SetString("A", "a", "1"), Change::Made);
  EXPECT_EQ(file.Bytes(), Head + "[A]\n\"a\"=\"1\"\n\n[B]\n");
}

TEST(RegistryFileSetString, MakesTheKeyThatIsMissing) {
  RegistryFile file = Parsed(InKey("\"a\"=\"1\""));
  EXPECT_EQ(file.SetString("Other", "b", "2"), Change::Made);
  EXPECT_EQ(file.Bytes(), InKey("\"a\"=\"1\"\n\n[Other]\n\"b\"=\"2\"\n"));
}

TEST(RegistryFileSetString, MakesAKeyThatOnlyHasKeysBelowIt) {
  RegistryFile file = Parsed(Head + "[A\\B]\n");
  EXPECT_EQ(file.AddKey("A"), Change::None);
  EXPECT_EQ(file.SetString("A", "a", "1"), Change::Made);
  EXPECT_EQ(file.Bytes(), Head + "[A\\B]\n\n[A]\n\"a\"=\"1\"\n");
}

TEST(RegistryFileSetString, EndsTheLastLineFirst) {
  RegistryFile file = Parsed(InKey("\"a\"=\"1\""));
  EXPECT_EQ(file.SetString(Key, "b", "2"), Change::Made);
  EXPECT_EQ(file.Bytes(), InKey("\"a\"=\"1\"\n\"b\"=\"2\"\n"));
}

TEST(RegistryFileSetString, ChangesTheValueThatCounts) {
  RegistryFile file = Parsed(InKey("\"a\"=\"1\"\n\"a\"=\"2\"\n"));
  EXPECT_EQ(file.SetString(Key, "a", "3"), Change::Made);
  EXPECT_EQ(file.Bytes(), InKey("\"a\"=\"1\"\n\"a\"=\"3\"\n"));
}

TEST(RegistryFileSetString, BringsADeletedValueBack) {
  RegistryFile file = Parsed(InKey("\"a\"=-\n"));
  EXPECT_EQ(file.SetString(Key, "a", "1"), Change::Made);
  EXPECT_EQ(file.Bytes(), InKey("\"a\"=\"1\"\n"));
}

TEST(RegistryFileSetString, TakesThePlaceOfAnotherType) {
  RegistryFile file = Parsed(InKey("\"a\"=hex(2):41,00,\\\n  00,00 ; A\n\"b\"=dword:1\n"));
  EXPECT_EQ(file.SetString(Key, "a", "A"), Change::Made);
  EXPECT_EQ(file.SetString(Key, "b", "1"), Change::Made);
  EXPECT_EQ(file.Bytes(), InKey("\"a\"=\"A\" ; A\n\"b\"=\"1\"\n"));
}

TEST(RegistryFileSetString, TellsWhenNothingHasChanged) {
  RegistryFile file = Parsed(Everything);
  EXPECT_EQ(file.SetString(Key, "ntp37", "YES:YES:YES:37"), Change::None);
  EXPECT_EQ(file.AddKey(Key), Change::None);
  EXPECT_EQ(file.Bytes(), Everything);
}

TEST(RegistryFileSetString, StoresEveryText) {
  std::string all;
  for (int c = 0; c <= 0xFF; ++c) {
    all += static_cast<char>(c);
  }
  for (const std::string &text :
       {all, ""s, "\\"s, "\""s, "\\\""s, "a\nb"s, "a\0b"s, "; c"s, "]"s}) {
    for (const std::string &bytes : {InKey(""), Utf16Of(InKey(""))}) {
      RegistryFile file = Parsed(bytes);
      EXPECT_EQ(file.SetString(Key, "a", text), Change::Made);
      EXPECT_THAT(Parsed(file.Bytes()).Values(Key), ElementsAre(RegistryValue{"a", text + '\0'}));
    }
  }
}

TEST(RegistryFileSetString, QuotesWhatItCanAndWritesBytesForTheRest) {
  RegistryFile file = Parsed(InKey(""));
  EXPECT_EQ(file.SetString(Key, "a", "C:\\\"\xE4"), Change::Made);
  EXPECT_EQ(file.SetString(Key, "b", "\tA"), Change::Made);
  EXPECT_EQ(file.Bytes(), InKey("\"a\"=\"C:\\\\\\\"\xC3\xA4\"\n\"b\"=hex(1):09,00,41,00,00,00\n"));
}

TEST(RegistryFileSetString, StoresTheValueWithoutAName) {
  RegistryFile file = Parsed(InKey(""));
  EXPECT_EQ(file.SetString(Key, "", "x"), Change::Made);
  EXPECT_EQ(file.Bytes(), InKey("@=\"x\"\n"));
}

TEST(RegistryFileSetString, RefusesNamesThatTheFileCannotHold) {
  RegistryFile file = Parsed(Everything);
  EXPECT_EQ(file.SetString(Key, "a\nb", "1"), Change::Refused);
  EXPECT_EQ(file.SetString(Key, "a\0b"s, "1"), Change::Refused);
  EXPECT_EQ(file.SetString("A\nB", "a", "1"), Change::Refused);
  EXPECT_EQ(file.SetString("A] ;B", "a", "1"), Change::Refused);
  EXPECT_EQ(file.AddKey(""), Change::Refused);
  EXPECT_EQ(file.Bytes(), Everything);
  EXPECT_EQ(file.SetString("A]B", "a=\"\\", "1"), Change::Made);
  EXPECT_THAT(Parsed(file.Bytes()).Values("A]B"), ElementsAre(RegistryValue{"a=\"\\", "1\0"s}));
}

TEST(RegistryFileAddKey, StandsBehindABlankLineAtTheEnd) {
  RegistryFile file = Parsed(Head + "[A]\n");
  EXPECT_EQ(file.AddKey("B\\C"), Change::Made);
  EXPECT_EQ(file.AddKey("b\\c"), Change::None);
  EXPECT_EQ(file.Bytes(), Head + "[A]\n\n[B\\C]\n");
}

TEST(RegistryFileAddKey, AddsNoSecondBlankLine) {
  RegistryFile file = Parsed(Head);
  EXPECT_EQ(file.AddKey("A"), Change::Made);
  EXPECT_EQ(file.Bytes(), Head + "[A]\n");
}

}  // namespace
}  // namespace cvl
