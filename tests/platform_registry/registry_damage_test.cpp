// What makes no settings file. Each case stands beside the nearest one that does.

#include <gtest/gtest.h>

#include "platform/registry_file.h"
#include "tests/platform_registry/registry_text.h"

namespace cvl {
namespace {

using namespace std::string_literals;

bool IsSound(const std::string &bytes) {
  return RegistryFile::Parse(bytes).has_value();
}

bool IsSoundLine(const std::string &line) {
  return IsSound(InKey(line + "\n"));
}

TEST(RegistryDamage, IsAMissingHeading) {
  EXPECT_TRUE(IsSound(Head));
  EXPECT_FALSE(IsSound(""));
  EXPECT_FALSE(IsSound("\n"));
  EXPECT_FALSE(IsSound("; only a comment\n"));
  EXPECT_FALSE(IsSound("windows registry editor version 5.00\n"));
  EXPECT_FALSE(IsSound("Windows Registry Editor Version 5.001\n"));
  EXPECT_FALSE(IsSound(Heading + "\n\"a\"=\"1\"\n"));
  EXPECT_FALSE(IsSound("\xFF\xFE"));
}

TEST(RegistryDamage, IsALineThatMakesNoSense) {
  EXPECT_TRUE(IsSoundLine("; anything"));
  EXPECT_FALSE(IsSoundLine("anything"));
  EXPECT_FALSE(IsSoundLine("NTP37=YES"));
  EXPECT_FALSE(IsSound(Head + Head));
}

TEST(RegistryDamage, IsAValueAboveAllKeys) {
  EXPECT_TRUE(IsSound(Head + "[A]\n\"a\"=\"1\"\n"));
  EXPECT_FALSE(IsSound(Head + "\"a\"=\"1\"\n"));
}

TEST(RegistryDamage, IsAHeadingWithoutItsBracketOrPath) {
  EXPECT_TRUE(IsSound(Head + "[A]\n"));
  EXPECT_FALSE(IsSound(Head + "[A\n"));
  EXPECT_FALSE(IsSound(Head + "[A] B\n"));
  EXPECT_FALSE(IsSound(Head + "[]\n"));
}

TEST(RegistryDamage, IsAnUnfinishedText) {
  EXPECT_TRUE(IsSoundLine("\"a\"=\"1\""));
  EXPECT_FALSE(IsSoundLine("\"a\"=\"1"));
  EXPECT_FALSE(IsSoundLine("\"a\"=\"1\\\""));
  EXPECT_FALSE(IsSoundLine("\"a\"="));
  EXPECT_FALSE(IsSoundLine("\"a\""));
  EXPECT_FALSE(IsSoundLine("\"a"));
  EXPECT_FALSE(IsSoundLine("\"a\"=1"));
  EXPECT_FALSE(IsSoundLine("\"a\nb\"=\"1\""));
}

TEST(RegistryDamage, IsATextWithoutItsQuoteBeforeAnotherValue) {
  EXPECT_TRUE(IsSoundLine("\"a\"=\"1\"\n\"b\"=\"2\""));
  EXPECT_FALSE(IsSoundLine("\"a\"=\"1\n\"b\"=\"2\""));
}

TEST(RegistryDamage, IsSomethingBehindAValue) {
  EXPECT_TRUE(IsSoundLine("\"a\"=\"1\" ;2"));
  EXPECT_FALSE(IsSoundLine("\"a\"=\"1\" 2"));
  EXPECT_FALSE(IsSoundLine("\"a\"=dword:1x"));
  EXPECT_FALSE(IsSoundLine("\"a\"=-1"));
}

TEST(RegistryDamage, IsANumberThatIsNone) {
  EXPECT_TRUE(IsSoundLine("\"a\"=dword:ffffffff"));
  EXPECT_FALSE(IsSoundLine("\"a\"=dword:"));
  EXPECT_FALSE(IsSoundLine("\"a\"=dword:fffffffff"));
  EXPECT_FALSE(IsSoundLine("\"a\"=dword:000000001"));
  EXPECT_FALSE(IsSoundLine("\"a\"=dword:-1"));
}

TEST(RegistryDamage, IsAListOfBytesThatBreaksOff) {
  EXPECT_TRUE(IsSoundLine("\"a\"=hex:01,02"));
  EXPECT_FALSE(IsSoundLine("\"a\"=hex:01,"));
  EXPECT_FALSE(IsSoundLine("\"a\"=hex:01,,02"));
  EXPECT_FALSE(IsSoundLine("\"a\"=hex:012"));
  EXPECT_FALSE(IsSoundLine("\"a\"=hex:01 02"));
  EXPECT_FALSE(IsSoundLine("\"a\"=hex:01,\\"));
  EXPECT_FALSE(IsSoundLine("\"a\"=hex:01,\\ 02"));
  EXPECT_FALSE(IsSoundLine("\"a\"=hex(2:01"));
  EXPECT_FALSE(IsSoundLine("\"a\"=hex():01"));
  EXPECT_FALSE(IsSoundLine("\"a\"=hex01"));
}

TEST(RegistryDamage, IsAZeroAnywhere) {
  // A machine that lost its power may leave a file of zeros, or one that ends in them.
  EXPECT_FALSE(IsSound(std::string(200, '\0')));
  EXPECT_FALSE(IsSound(Everything + '\0'));
  EXPECT_FALSE(IsSound(Head + "; \0\n"s));
  EXPECT_FALSE(IsSound(Utf16Of(Head + "; \0\n"s)));
}

TEST(RegistryDamage, IsToldByItsLine) {
  const auto bad_line = [](const std::string &bytes) {
    std::size_t line = 0;
    EXPECT_FALSE(RegistryFile::Parse(bytes, &line));
    return line;
  };
  EXPECT_EQ(bad_line("x"), 1U);
  EXPECT_EQ(bad_line(InKey("\"a\"=\"1\"\n\"b\n")), 5U);
  EXPECT_EQ(bad_line("\xFF\xFE\x41"), 1U);
}

TEST(RegistryDamage, IsSeenWhereverAFileIsCutInAValue) {
  const std::string value = "\"NTP37\"=\"YES:YES:YES:37\"";
  for (std::size_t length = 1; length < value.size(); ++length) {
    EXPECT_FALSE(IsSound(InKey(value.substr(0, length)))) << length;
  }
  EXPECT_TRUE(IsSound(InKey(value)));
}

}  // namespace
}  // namespace cvl
