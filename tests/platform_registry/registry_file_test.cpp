// Reading a settings file: what it says of keys and values, and that it comes back as it was.

#include "platform/registry_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform_registry/registry_text.h"

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

std::vector<RegistryValue> ValuesOf(const std::string &lines) {
  return Parsed(InKey(lines)).Values(Key);
}

TEST(RegistryFile, YieldsTextsWithTheirTerminator) {
  EXPECT_THAT(
      ValuesOf("\"NTP37\"=\"YES:YES:YES:37\"\n\"Empty\"=\"\"\n"),
      ElementsAre(RegistryValue{"NTP37", "YES:YES:YES:37\0"s}, RegistryValue{"Empty", "\0"s}));
}

TEST(RegistryFile, UndoesTheEscapesOfNamesAndTexts) {
  EXPECT_THAT(ValuesOf(R"("a\\b\"c"="C:\\d\"e")"
                       "\n"),
              ElementsAre(RegistryValue{"a\\b\"c", "C:\\d\"e\0"s}));
}

TEST(RegistryFile, LetsABackslashBeforeAnythingElseStand) {
  EXPECT_THAT(ValuesOf("\"a\"=\"C:\\new\"\n"), ElementsAre(RegistryValue{"a", "C:\\new\0"s}));
}

TEST(RegistryFile, YieldsCharactersAsLatin1) {
  EXPECT_THAT(ValuesOf("\"Gr\xC3\xB6\xC3\x9F"
                       "e\"=\"Mitteleurop\xC3\xA4isch \xE2\x82\xAC\"\n"),
              ElementsAre(RegistryValue{"Gr\xF6\xDF"
                                        "e",
                                        "Mitteleurop\xE4isch ?\0"s}));
}

TEST(RegistryFile, YieldsNumbersAsFourBytes) {
  EXPECT_THAT(ValuesOf("\"a\"=dword:00000102\n\"b\"=DWORD:FF\n"),
              ElementsAre(RegistryValue{"a", "\x02\x01\0\0"s}, RegistryValue{"b", "\xFF\0\0\0"s}));
}

TEST(RegistryFile, YieldsBytesAsTheyAre) {
  EXPECT_THAT(ValuesOf("\"a\"=hex:01,02,ff\n\"b\"=hex(b):01,00,00,00,00,00,00,00\n\"c\"=hex:\n"),
              ElementsAre(RegistryValue{"a", "\x01\x02\xFF"},
                          RegistryValue{"b", "\x01\0\0\0\0\0\0\0"s}, RegistryValue{"c", ""}));
}

TEST(RegistryFile, YieldsTheOtherTypesOfTextAsTexts) {
  EXPECT_THAT(ValuesOf("\"plain\"=hex(1):41,00,e4,00,00,00\n"
                       "\"expanded\"=hex(2):25,00,00,00\n"
                       "\"many\"=hex(7):41,00,00,00,42,00,00,00,00,00\n"),
              ElementsAre(RegistryValue{"plain", "A\xE4\0"s}, RegistryValue{"expanded", "%\0"s},
                          RegistryValue{"many", "A\0B\0\0"s}));
}

TEST(RegistryFile, ReadsBytesOnSeveralLines) {
  EXPECT_THAT(ValuesOf("\"a\"=hex(2):41,00,\\\n  42,00,\\  \n\t00,00\n\"b\"=hex:\\\n  01\n"),
              ElementsAre(RegistryValue{"a", "AB\0"s}, RegistryValue{"b", "\x01"}));
}

TEST(RegistryFile, ReadsTextsOnSeveralLines) {
  EXPECT_THAT(ValuesOf("\"a\"=\"one\ntwo\"\n\"b\"=\"\"\n"),
              ElementsAre(RegistryValue{"a", "one\ntwo\0"s}, RegistryValue{"b", "\0"s}));
}

TEST(RegistryFile, ReadsTheValueWithoutAName) {
  EXPECT_THAT(ValuesOf("@=\"x\"\n"), ElementsAre(RegistryValue{"", "x\0"s}));
}

TEST(RegistryFile, AllowsBlanksAndCommentsBehindAValue) {
  EXPECT_THAT(ValuesOf("  \"a\" = \"x\"  ; said to be x\n\"b\"=dword:1 ;\n"),
              ElementsAre(RegistryValue{"a", "x\0"s}, RegistryValue{"b", "\x01\0\0\0"s}));
}

TEST(RegistryFile, FindsKeysWithoutRegardToCase) {
  const RegistryFile file = Parsed(InKey("\"a\"=\"x\"\n"));
  EXPECT_EQ(file.Values("hkey_local_machine\\SOFTWARE\\chronvale server").size(), 1U);
  EXPECT_TRUE(file.HasKey("HKEY_LOCAL_MACHINE\\SOFTWARE\\CHRONVALE SERVER"));
  EXPECT_FALSE(file.HasKey("HKEY_LOCAL_MACHINE\\SOFTWARE\\CHRONVALE SERVER 2"));
}

TEST(RegistryFile, HasTheKeysAboveThoseThatItNames) {
  const RegistryFile file = Parsed(InKey(""));
  EXPECT_TRUE(file.HasKey("HKEY_LOCAL_MACHINE\\Software"));
  EXPECT_FALSE(file.HasKey("HKEY_LOCAL_MACHINE\\Soft"));
  EXPECT_THAT(file.Values("HKEY_LOCAL_MACHINE\\Software"), IsEmpty());
}

TEST(RegistryFile, TakesBracketsInAPathForPartOfIt) {
  const RegistryFile file = Parsed(Head + "[A\\b]c]\n\"a\"=\"x\"\n[B] ; see [C]\n\"b\"=\"y\"\n");
  EXPECT_EQ(file.Values("A\\b]c").size(), 1U);
  EXPECT_EQ(file.Values("B").size(), 1U);
}

TEST(RegistryFile, JoinsAKeyThatIsNamedTwice) {
  const RegistryFile file =
      Parsed(InKey("\"a\"=\"1\"\n") + "[Other]\n\"a\"=\"9\"\n" + Heading + "\n\"b\"=\"2\"\n");
  EXPECT_THAT(file.Values(Key),
              ElementsAre(RegistryValue{"a", "1\0"s}, RegistryValue{"b", "2\0"s}));
}

TEST(RegistryFile, LetsTheLaterOfTwoValuesCountInThePlaceAndByTheNameOfTheFirst) {
  EXPECT_THAT(ValuesOf("\"a\"=\"1\"\n\"b\"=\"2\"\n\"A\"=\"3\"\n"),
              ElementsAre(RegistryValue{"a", "3\0"s}, RegistryValue{"b", "2\0"s}));
}

TEST(RegistryFile, DropsAValueThatIsDeleted) {
  EXPECT_THAT(ValuesOf("\"a\"=\"1\"\n\"b\"=\"2\"\n\"a\"=-\n"),
              ElementsAre(RegistryValue{"b", "2\0"s}));
  EXPECT_THAT(ValuesOf("\"a\"=\"1\"\n\"b\"=\"2\"\n\"a\"=-\n\"A\"=\"3\"\n"),
              ElementsAre(RegistryValue{"b", "2\0"s}, RegistryValue{"A", "3\0"s}));
}

TEST(RegistryFile, NeedsNoLineEndAtItsEnd) {
  EXPECT_THAT(ValuesOf("\"a\"=\"1\""), ElementsAre(RegistryValue{"a", "1\0"s}));
  EXPECT_TRUE(RegistryFile::Parse("Windows Registry Editor Version 5.00"));
}

TEST(RegistryFile, AllowsCommentsAboveItsHeading) {
  EXPECT_EQ(Parsed("; mine\n\n" + InKey("\"a\"=\"1\"\n")).Values(Key).size(), 1U);
}

TEST(RegistryFile, ComesBackByteByByte) {
  EXPECT_EQ(Parsed(Everything).Bytes(), Everything);
  EXPECT_EQ(Parsed(Utf16Of(Everything)).Bytes(), Utf16Of(Everything));
  EXPECT_EQ(Parsed("\xEF\xBB\xBF" + Everything).Bytes(), "\xEF\xBB\xBF" + Everything);
  const std::string stray = InKey(
      "; Gr\xF6\xDF"
      "e\n\"a\"=\"\xE4\"\n");
  EXPECT_EQ(Parsed(stray).Bytes(), stray);
}

TEST(RegistryFile, MeansTheSameInEveryForm) {
  EXPECT_EQ(Parsed(Utf16Of(Everything)).Values(Key), Parsed(Everything).Values(Key));
  const std::string lines = InKey("\"a\"=hex:01,\\\n  02\n\n\"b\"=\"1\"\n");
  EXPECT_EQ(Parsed(WithReturns(lines)).Values(Key), Parsed(lines).Values(Key));
}

TEST(RegistryFile, BeginsNewWithACommentAboutItself) {
  const std::string bytes = RegistryFile().Bytes();
  EXPECT_TRUE(bytes.starts_with("Windows Registry Editor Version 5.00\n\n; "));
  EXPECT_THAT(bytes, testing::HasSubstr("settings of Chronvale Server"));
  EXPECT_THAT(bytes, testing::HasSubstr("overwrites"));
  EXPECT_TRUE(RegistryFile::Parse(bytes));
}

}  // namespace
}  // namespace cvl
