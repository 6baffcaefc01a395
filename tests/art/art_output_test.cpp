#include "tools/art/art_output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "scratch_art.h"

namespace cvl::tools {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(ArtSource, DefinesAllTables) {
  const ScratchArt art;
  const std::string source = ArtSource(LoadArtFolder(art.Path()));
  EXPECT_THAT(source, HasSubstr("std::array<std::uint32_t, 256> ImagePixels1{\n"
                                "    0x00000000, 0xFF102031, 0xFF102031,"));
  EXPECT_THAT(source, HasSubstr("const std::array<ArtPicture, 35> Images{{\n"
                                "    {16, 16, ImagePixels1},\n"));
  EXPECT_THAT(source, HasSubstr("    {16, 16, ImagePixels35},\n}};\n"));
  EXPECT_THAT(source, HasSubstr("    {48, 48, IconPixels3},\n}};\n"));
  EXPECT_THAT(source, HasSubstr("const ArtPicture Logo{56, 56, LogoPixels};\n"));
}

TEST(ArtSheet, LaysTheImagesOutFromLeftToRight) {
  const ScratchArt art;
  const std::string sheet = ArtSheet(LoadArtFolder(art.Path()), 1);
  const std::string header = "P6\n560 16\n255\n";
  ASSERT_THAT(sheet, StartsWith(header));
  ASSERT_EQ(sheet.size(), header.size() + 560 * 16 * 3);
  const auto pixel = [&](std::size_t x, std::size_t y) {
    return sheet.substr(header.size() + (y * 560 + x) * 3, 3);
  };
  EXPECT_EQ(pixel(0, 0), "\xC0\xC0\xC0");
  EXPECT_EQ(pixel(1, 0), "\x10\x20\x31");
  EXPECT_EQ(pixel(0, 1), "\x10\x20\x31");
  EXPECT_EQ(pixel(15, 15), "\x10\x20\x31");
  EXPECT_EQ(pixel(16, 0), "\xC0\xC0\xC0");
  EXPECT_EQ(pixel(16, 1), "\x10\x20\x32");
  EXPECT_EQ(pixel(559, 15), "\x10\x20\x53");
}

TEST(ArtSheet, ScalesPixelsToSquares) {
  const ScratchArt art;
  const std::string sheet = ArtSheet(LoadArtFolder(art.Path()), 3);
  const std::string header = "P6\n1680 48\n255\n";
  ASSERT_THAT(sheet, StartsWith(header));
  ASSERT_EQ(sheet.size(), header.size() + 1680 * 48 * 3);
  const auto pixel = [&](std::size_t x, std::size_t y) {
    return sheet.substr(header.size() + (y * 1680 + x) * 3, 3);
  };
  EXPECT_EQ(pixel(2, 2), "\xC0\xC0\xC0");
  EXPECT_EQ(pixel(3, 2), "\x10\x20\x31");
  EXPECT_EQ(pixel(2, 3), "\x10\x20\x31");
  EXPECT_EQ(pixel(50, 2), "\xC0\xC0\xC0");
}

}  // namespace
}  // namespace cvl::tools
