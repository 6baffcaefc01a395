#include "base/runtime_error.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

TEST(RuntimeError, CarriesItsNumberAndTheUsualDescription) {
  const RuntimeError error(6);
  EXPECT_EQ(error.Number(), 6);
  EXPECT_STREQ(error.what(), "Overflow");
}

TEST(RuntimeError, CarriesADescriptionOfItsOwn) {
  const RuntimeError error(6, "too late");
  EXPECT_EQ(error.Number(), 6);
  EXPECT_STREQ(error.what(), "too late");
}

TEST(DescriptionOf, KnowsTheNumbersThatReportsShow) {
  EXPECT_STREQ(DescriptionOf(5), "Invalid procedure call or argument");
  EXPECT_STREQ(DescriptionOf(6), "Overflow");
  EXPECT_STREQ(DescriptionOf(7), "Out of memory");
  EXPECT_STREQ(DescriptionOf(9), "Subscript out of range");
  EXPECT_STREQ(DescriptionOf(13), "Type mismatch");
  EXPECT_STREQ(DescriptionOf(53), "File not found");
  EXPECT_STREQ(DescriptionOf(61), "Disk full");
  EXPECT_STREQ(DescriptionOf(70), "Permission denied");
  EXPECT_STREQ(DescriptionOf(75), "Path/File access error");
  EXPECT_STREQ(DescriptionOf(380), "Invalid property value");
  EXPECT_STREQ(DescriptionOf(35600), "Element not found");
  EXPECT_STREQ(DescriptionOf(10048), "Address in use");
  EXPECT_STREQ(DescriptionOf(10013), "Permission denied");
  EXPECT_STREQ(DescriptionOf(11001), "Host not found");
}

TEST(DescriptionOf, HasOneForUnknownNumbers) {
  for (const int number : {-1, 0, 4, 54, 10047, 65536}) {
    EXPECT_STREQ(DescriptionOf(number), "Application-defined or object-defined error") << number;
  }
}

}  // namespace
}  // namespace cvl
