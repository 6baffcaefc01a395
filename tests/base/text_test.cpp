#include "base/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Split, CutsAtEachDelimiter) {
  EXPECT_THAT(Split("YES:YES:37", ":"), ElementsAre("YES", "YES", "37"));
  EXPECT_THAT(Split("alone", ":"), ElementsAre("alone"));
}

TEST(Split, KeepsEmptyParts) {
  EXPECT_THAT(Split(":", ":"), ElementsAre("", ""));
  EXPECT_THAT(Split(":a::b:", ":"), ElementsAre("", "a", "", "b", ""));
}

TEST(Split, YieldsNoPartOfAnEmptyText) {
  EXPECT_THAT(Split("", ":"), IsEmpty());
  EXPECT_THAT(Split("", ":", 3), IsEmpty());
}

TEST(Split, LeavesTheRestWholeInTheLastPart) {
  EXPECT_THAT(Split("a:b:c:d", ":", 1), ElementsAre("a:b:c:d"));
  EXPECT_THAT(Split("a:b:c:d", ":", 2), ElementsAre("a", "b:c:d"));
  EXPECT_THAT(Split("a:b:c:d", ":", 4), ElementsAre("a", "b", "c", "d"));
  EXPECT_THAT(Split("a:b:c:d", ":", 5), ElementsAre("a", "b", "c", "d"));
  EXPECT_THAT(Split("a:b:", ":", 2), ElementsAre("a", "b:"));
  EXPECT_THAT(Split("a:", ":", 2), ElementsAre("a", ""));
}

TEST(Split, TakesTheWholeDelimiter) {
  EXPECT_THAT(Split("a\r\nb\rc\nd\r\n", "\r\n"), ElementsAre("a", "b\rc\nd", ""));
  EXPECT_THAT(Split("aaa", "aa"), ElementsAre("", "a"));
}

TEST(Trim, TakesTheBlanksOffBothEnds) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("a"), "a");
  EXPECT_EQ(Trim("a "), "a");
  EXPECT_EQ(Trim(" a"), "a");
}

TEST(Trim, LeavesNothingOfBlanksAlone) {
  EXPECT_EQ(Trim(""), "");
  EXPECT_EQ(Trim("   "), "");
}

TEST(Trim, KeepsWhatIsNoBlank) {
  EXPECT_EQ(Trim("\ta\t"), "\ta\t");
  EXPECT_EQ(Trim("\xA0"), "\xA0");
}

TEST(FlagText, IsYesOrNo) {
  EXPECT_STREQ(FlagText(true), "YES");
  EXPECT_STREQ(FlagText(false), "NO");
}

}  // namespace
}  // namespace cvl
