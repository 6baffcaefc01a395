#include "ui/art/artwork.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "state/main_window.h"

namespace cvl {
namespace {

constexpr std::uint32_t AlphaMask = 0xFF000000;

std::vector<std::uint32_t> PixelsOf(int number) {
  const std::span<const std::uint32_t> pixels = ImageOf(number).Pixels;
  return {pixels.begin(), pixels.end()};
}

/// Every pixel is opaque, or transparent and nothing but that.
void ExpectSound(const ArtPicture &picture) {
  ASSERT_EQ(picture.Pixels.size(), static_cast<std::size_t>(picture.Width * picture.Height));
  EXPECT_TRUE(std::ranges::all_of(picture.Pixels, [](std::uint32_t pixel) {
    return pixel == 0 || (pixel & AlphaMask) == AlphaMask;
  }));
  EXPECT_TRUE(std::ranges::any_of(picture.Pixels, [](std::uint32_t pixel) { return pixel != 0; }));
}

std::uint32_t Corner(const ArtPicture &picture, bool right, bool bottom) {
  const int x = right ? picture.Width - 1 : 0;
  const int y = bottom ? picture.Height - 1 : 0;
  return picture.Pixels[static_cast<std::size_t>(y * picture.Width + x)];
}

bool HasClearCorners(const ArtPicture &picture) {
  return (Corner(picture, false, false) | Corner(picture, true, false) |
          Corner(picture, false, true) | Corner(picture, true, true)) == 0;
}

TEST(Artwork, HasASoundImageForEachNumberOfTheTable) {
  for (int number = 1; number <= ImageCount; ++number) {
    SCOPED_TRACE(number);
    EXPECT_EQ(ImageOf(number).Width, 16);
    EXPECT_EQ(ImageOf(number).Height, 16);
    ExpectSound(ImageOf(number));
  }
}

TEST(Artwork, HasNoImageTwice) {
  std::set<std::vector<std::uint32_t>> images;
  for (int number = 1; number <= ImageCount; ++number) {
    EXPECT_TRUE(images.insert(PixelsOf(number)).second) << number;
  }
}

TEST(Artwork, LosesNoPixelToTheMask) {
  for (int number = 1; number <= ImageCount; ++number) {
    EXPECT_THAT(PixelsOf(number), testing::Not(testing::Contains(AlphaMask | MaskColour)))
        << number;
  }
}

TEST(Artwork, LightsALampByChangingItsColoursAlone) {
  const std::vector<std::uint32_t> dark = PixelsOf(LampDarkImage);
  const std::vector<std::uint32_t> lit = PixelsOf(LampLitImage);
  std::map<std::uint32_t, std::uint32_t> lit_for;
  for (std::size_t at = 0; at < dark.size(); ++at) {
    EXPECT_EQ(lit_for.emplace(dark[at], lit[at]).first->second, lit[at]) << at;
    EXPECT_EQ(dark[at] == 0, lit[at] == 0) << at;
  }
}

TEST(Artwork, LightsALampInGreen) {
  const auto green_excess = [](int number) {
    std::int64_t excess = 0;
    for (const std::uint32_t pixel : PixelsOf(number)) {
      const std::int64_t red = pixel >> 16 & 0xFF;
      const std::int64_t green = pixel >> 8 & 0xFF;
      excess += green - red;
    }
    return excess / 256;
  };
  EXPECT_LT(green_excess(LampDarkImage), 20);
  EXPECT_GT(green_excess(LampLitImage), 60);
}

TEST(Artwork, KeepsTheCornersOfRoundPicturesClear) {
  for (const int number : {1, 2, 3, 4, 5, 6, 7, 8, LampDarkImage, LampLitImage}) {
    EXPECT_TRUE(HasClearCorners(ImageOf(number))) << number;
  }
  EXPECT_TRUE(HasClearCorners(Logo()));
}

TEST(Artwork, HasALogoOf56Pixels) {
  EXPECT_EQ(Logo().Width, 56);
  EXPECT_EQ(Logo().Height, 56);
  ExpectSound(Logo());
}

TEST(Artwork, HasTheIconInThreeSizesWithClearCorners) {
  std::vector<int> sides;
  for (const ArtPicture &icon : WindowIcons()) {
    sides.push_back(icon.Width);
    EXPECT_EQ(icon.Height, icon.Width);
    ExpectSound(icon);
    EXPECT_TRUE(HasClearCorners(icon)) << icon.Width;
  }
  EXPECT_THAT(sides, testing::ElementsAre(16, 32, 48));
}

#ifndef NDEBUG
TEST(ArtworkDeathTest, RefusesNumbersOutsideOfTheTable) {
  EXPECT_DEATH(ImageOf(0), "number >= 1");
  EXPECT_DEATH(ImageOf(ImageCount + 1), "number >= 1");
}
#endif

}  // namespace
}  // namespace cvl
