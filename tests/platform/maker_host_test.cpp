#include "platform/maker_host.h"

#include <gtest/gtest.h>
#include <stdlib.h>

namespace cvl {
namespace {

constexpr const char *Variable = "CHRONVALE_MAKER_HOST";

TEST(MakerHost, IsTheUsualOneUnlessTheEnvironmentNamesAnother) {
  unsetenv(Variable);
  EXPECT_EQ(MakerHostName(), "www.chronvale.example");
  setenv(Variable, "", 1);
  EXPECT_EQ(MakerHostName(), "www.chronvale.example");
  setenv(Variable, "maker.test", 1);
  EXPECT_EQ(MakerHostName(), "maker.test");
  unsetenv(Variable);
}

}  // namespace
}  // namespace cvl
