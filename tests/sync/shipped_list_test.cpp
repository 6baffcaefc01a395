#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "sync/server_list.h"

namespace cvl {
namespace {

// In the order of their globes, which begin with image 2.
const std::vector<std::string> Regions{"NA", "SA", "EU", "AF", "AW", "AE", "AP"};
constexpr int FirstGlobe = 2;
constexpr int FirstFlag = 9;
constexpr int LastFlag = 32;

/// The list that comes with the program.
class ShippedListTest : public testing::Test {
 protected:
  ShippedListTest() {
    std::ifstream file(CVL_SHIPPED_LIST, std::ios::binary);
    ServerList(Window).Read(file);
  }

  static std::string RegionOf(const ImageCombo::Item &item) {
    return item.Text.substr(item.Text.size() - 2);
  }

  MainWindow Window;
};

TEST_F(ShippedListTest, CountsEachOfItsLines) {
  std::ifstream file(CVL_SHIPPED_LIST, std::ios::binary);
  const auto lines = std::count(std::istreambuf_iterator<char>(file), {}, '\n');
  EXPECT_EQ(Window.Servers.Count(), lines - 5);
}

TEST_F(ShippedListTest, HasSeveralServersInEveryRegionAndInNoOther) {
  std::map<std::string, int> seen;
  for (std::int32_t number = 1; number <= Window.Servers.Count(); ++number) {
    const std::string region = RegionOf(Window.Servers.At(number));
    EXPECT_THAT(Regions, testing::Contains(region)) << number;
    ++seen[region];
  }
  for (const std::string &region : Regions) {
    EXPECT_GE(seen[region], 4) << region;
  }
}

TEST_F(ShippedListTest, ShowsAFlagOrTheGlobeOfTheRegion) {
  for (std::int32_t number = 1; number <= Window.Servers.Count(); ++number) {
    const ImageCombo::Item &item = Window.Servers.At(number);
    const auto region = std::ranges::find(Regions, RegionOf(item)) - Regions.begin();
    EXPECT_THAT(item.Image,
                testing::AnyOf(FirstGlobe + region,
                               testing::AllOf(testing::Ge(FirstFlag), testing::Le(LastFlag))))
        << item.Text;
  }
}

}  // namespace
}  // namespace cvl
