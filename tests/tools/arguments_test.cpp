#include "tools/system/arguments.h"

#include <gtest/gtest.h>

namespace cvl::tools {
namespace {

TEST(ArgumentReader, TakesAValueFromTheNextArgumentOrBehindAnEqualsSign) {
  ArgumentReader reader{{"--port", "37", "--port=38", "host=x"}};
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.Value(), "37");
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.Name(), "--port");
  EXPECT_EQ(reader.Value(), "38");
  ASSERT_TRUE(reader.Next());
  EXPECT_FALSE(reader.IsOption());
  EXPECT_EQ(reader.Name(), "host=x");
  EXPECT_FALSE(reader.Next());
}

TEST(ArgumentReader, TakesAValueThatLooksLikeAnOption) {
  ArgumentReader reader{{"--shift", "-500"}};
  ASSERT_TRUE(reader.Next());
  EXPECT_EQ(reader.Value(), "-500");
}

TEST(ArgumentReader, RefusesAMissingValue) {
  ArgumentReader reader{{"--port"}};
  ASSERT_TRUE(reader.Next());
  EXPECT_THROW(reader.Value(), UsageError);
}

TEST(ArgumentReader, RefusesAValueThatNobodyAskedFor) {
  ArgumentReader reader{{"--hex=1"}};
  ASSERT_TRUE(reader.Next());
  EXPECT_THROW((void)reader.Next(), UsageError);
}

TEST(WholeNumber, TakesItsLimitsAndNothingBeyond) {
  EXPECT_EQ(WholeNumber("-3", -3, 5, "x"), -3);
  EXPECT_EQ(WholeNumber("5", -3, 5, "x"), 5);
  EXPECT_THROW(WholeNumber("-4", -3, 5, "x"), UsageError);
  EXPECT_THROW(WholeNumber("6", -3, 5, "x"), UsageError);
}

TEST(WholeNumber, RefusesWhatIsNoWholeNumber) {
  for (const char *text : {"", " 1", "1 ", "1.0", "0x1", "+1", "one", "99999999999999999999"}) {
    EXPECT_THROW(WholeNumber(text, 0, 100, "x"), UsageError) << text;
  }
}

TEST(VersionLine, NamesProgramAndVersion) {
  EXPECT_EQ(VersionLine("cvlquery"), "cvlquery 5.1.1\n");
}

}  // namespace
}  // namespace cvl::tools
