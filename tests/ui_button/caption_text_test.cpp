#include "ui/button/caption_text.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

TEST(AccessKey, IsTheCharacterBehindTheMark) {
  EXPECT_EQ(AccessKeyOf("&ok"), "o");
  EXPECT_EQ(AccessKeyOf("Time &zone"), "z");
  EXPECT_EQ(AccessKeyOf("&5"), "5");
}

TEST(AccessKey, IsInLowerCase) {
  EXPECT_EQ(AccessKeyOf("&OK"), "o");
  EXPECT_EQ(AccessKeyOf("&\xC4ndern"), "\xE4");
  EXPECT_EQ(AccessKeyOf("&\xD7"), "\xD7") << "a sign among the capitals";
  EXPECT_EQ(AccessKeyOf("&\xDF"), "\xDF");
  EXPECT_EQ(AccessKeyOf("&["), "[") << "right behind Z";
}

TEST(AccessKey, IsEmptyWithoutAMark) {
  EXPECT_EQ(AccessKeyOf(""), "");
  EXPECT_EQ(AccessKeyOf("OK"), "");
}

TEST(AccessKey, IsNotAtADoubledMark) {
  EXPECT_EQ(AccessKeyOf("Save && exit"), "");
  EXPECT_EQ(AccessKeyOf("Save && &exit"), "e");
  EXPECT_EQ(AccessKeyOf("&&&x"), "x") << "one doubled, then a single one";
  EXPECT_EQ(AccessKeyOf("&&&&x"), "");
}

TEST(AccessKey, IsThatOfTheFirstSingleMark) {
  EXPECT_EQ(AccessKeyOf("&Open &Help"), "o");
}

TEST(AccessKey, IsEmptyWhenNothingStandsBehindTheMark) {
  EXPECT_EQ(AccessKeyOf("Help&"), "");
  EXPECT_EQ(AccessKeyOf("&"), "");
}

TEST(ShowCaption, LeavesMarksOutAndDoubledOnesSingle) {
  EXPECT_EQ(ShowCaption("Online &Help").Text, "Online Help");
  EXPECT_EQ(ShowCaption("Save && exit").Text, "Save & exit");
  EXPECT_EQ(ShowCaption("a&b&c&").Text, "abc");
  EXPECT_EQ(ShowCaption("plain").Text, "plain");
}

TEST(ShowCaption, UnderlinesTheAccessKey) {
  EXPECT_EQ(ShowCaption("&OK").Underlined, 0U);
  EXPECT_EQ(ShowCaption("a && &b").Underlined, 4U);
  EXPECT_EQ(ShowCaption("&a &b").Underlined, 0U);
  EXPECT_EQ(ShowCaption("a && b").Underlined, ShownCaption::Nothing);
  EXPECT_EQ(ShowCaption("a&").Underlined, ShownCaption::Nothing);
}

}  // namespace
}  // namespace cvl
