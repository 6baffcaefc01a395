#include "update/version_file.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

TEST(VersionFile, HasTheLatestVersionAndTheSizeOfTheServerFile) {
  const auto file = ReadVersionFile("HTTP/1.1 200 OK\r\n\r\n0-:-5.2.0-:-2-:-3-:-4711-:-5");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->LatestVersion, "5.2.0");
  EXPECT_EQ(file->ServerFileSize, "4711");
}

TEST(VersionFile, MayHaveMoreThanSixFields) {
  const auto file = ReadVersionFile("\r\n\r\n0-:-1-:-2-:-3-:-4-:-5-:-6-:-7");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->ServerFileSize, "4");
}

TEST(VersionFile, MayHaveEmptyFields) {
  const auto file = ReadVersionFile("\r\n\r\n-:--:--:--:--:-");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->LatestVersion, "");
  EXPECT_EQ(file->ServerFileSize, "");
}

TEST(VersionFile, IsNoneWithFewerThanSixFields) {
  EXPECT_FALSE(ReadVersionFile("\r\n\r\n0-:-1-:-2-:-3-:-4"));
  EXPECT_FALSE(ReadVersionFile("\r\n\r\n"));
  EXPECT_FALSE(ReadVersionFile(""));
}

TEST(VersionFile, HasLineEndsAnywhere) {
  const auto file = ReadVersionFile("\r\n\r\n0-:-5.\r\n2.0-\r\n:-2-:-3-:-47\r\n11-:-5\r\n");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->LatestVersion, "5.2.0");
  EXPECT_EQ(file->ServerFileSize, "4711");
}

TEST(VersionFile, WithoutAHeaderLosesItsFirstThreeCharacters) {
  EXPECT_TRUE(ReadVersionFile("abc-:-1-:-2-:-3-:-4-:-5"));
  EXPECT_FALSE(ReadVersionFile("-:-1-:-2-:-3-:-4-:-5"));
}

}  // namespace
}  // namespace cvl
