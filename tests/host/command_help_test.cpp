#include "host/command_help.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>

#include "base/version.h"

namespace cvl {
namespace {

using testing::HasSubstr;

constexpr const char *Words[] = {"-install", "-uninstall", "-config",  "-debug",
                                 "-rs",      "--help",     "--version"};

TEST(FirstWordOf, EndsAtTheFirstBlank) {
  EXPECT_EQ(FirstWordOf(""), "");
  EXPECT_EQ(FirstWordOf("-rs"), "-rs");
  EXPECT_EQ(FirstWordOf("-config extra words"), "-config");
  EXPECT_EQ(FirstWordOf(" -rs"), "");
}

TEST(IsSwitch, ComparesExactly) {
  for (const char *word : Words) {
    EXPECT_TRUE(IsSwitch(word)) << word;
  }
  for (const char *word : {"", "-RS", "-Debug", "-help", "--Help", "-version", "config"}) {
    EXPECT_FALSE(IsSwitch(word)) << word;
  }
}

TEST(SwitchLines, HasALineForEachSwitch) {
  const std::string lines = "\n" + SwitchLines();
  for (const char *word : Words) {
    EXPECT_THAT(lines, HasSubstr(std::string("\n  ") + word + " "));
  }
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 1 + std::ssize(Words));
}

TEST(TextInsteadOfRun, IsThatOfHelpAndVersionAlone) {
  EXPECT_EQ(TextInsteadOfRun("--version"), std::string("cvlserver ") + VersionText + "\n");
  ASSERT_TRUE(TextInsteadOfRun("--help"));
  EXPECT_THAT(*TextInsteadOfRun("--help"), HasSubstr(SwitchLines()));
  for (const char *word : {"", "-rs", "-config", "-install", "-h", "--HELP", "help"}) {
    EXPECT_FALSE(TextInsteadOfRun(word)) << word;
  }
}

TEST(TextInsteadOfRun, FitsATerminal) {
  std::istringstream text(*TextInsteadOfRun("--help"));
  for (std::string line; std::getline(text, line);) {
    EXPECT_LE(line.size(), 90U) << line;
  }
}

}  // namespace
}  // namespace cvl
