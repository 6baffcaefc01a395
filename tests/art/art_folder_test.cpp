#include "tools/art/art_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "scratch_art.h"

namespace cvl::tools {
namespace {

class ArtFolderTest : public testing::Test {
 protected:
  /// What is said of the folder, its path taken off the front; "" when it is sound.
  std::string Complaint() const {
    try {
      LoadArtFolder(Art.Path());
      return "";
    } catch (const ArtError &error) {
      const std::string text = error.what();
      const std::string front = Art.Path().string() + "/";
      EXPECT_THAT(text, testing::StartsWith(front));
      return text.substr(front.size());
    }
  }

  ScratchArt Art;
};

TEST_F(ArtFolderTest, HoldsTheImagesInTheOrderOfTheirNumbers) {
  const ArtFolder art = LoadArtFolder(Art.Path());
  for (int number = 1; number <= 35; ++number) {
    const XpmPicture &image = art.Images[static_cast<std::size_t>(number - 1)];
    ASSERT_EQ(image.Pixels.size(), 256U);
    EXPECT_EQ(image.Pixels[0], 0U);
    EXPECT_EQ(image.Pixels[255], 0xFF000000 | ScratchArt::ColourOf(number));
  }
  EXPECT_EQ(art.Logo.Pixels.size(), 56U * 56U);
  EXPECT_EQ(art.Icons[0].Width, 16);
  EXPECT_EQ(art.Icons[2].Width, 48);
}

TEST_F(ArtFolderTest, PassesOverWhatIsNoPicture) {
  Art.Write("iml/README", "hello");
  EXPECT_EQ(Complaint(), "");
}

TEST_F(ArtFolderTest, RefusesAGapInTheTable) {
  std::filesystem::remove(Art.Path() / "iml/35_x.xpm");
  EXPECT_EQ(Complaint(), "iml: has no image 35");
}

TEST_F(ArtFolderTest, RefusesANumberOutsideOfTheTable) {
  for (const std::string name : {"00_x.xpm", "36_x.xpm", "x.xpm", "1_x.xpm", "01x.xpm"}) {
    Art.Write("iml/" + name, ScratchArt::Xpm(16, 16, 1));
    EXPECT_EQ(Complaint(), "iml/" + name + ": its name doesn't begin with 01_ to 35_");
    std::filesystem::remove(Art.Path() / "iml" / name);
  }
}

TEST_F(ArtFolderTest, RefusesTwoImagesOfOneNumber) {
  Art.Write("iml/07_y.xpm", ScratchArt::Xpm(16, 16, 1));
  EXPECT_THAT(Complaint(),
              testing::MatchesRegex("iml/07_[xy].xpm: another picture has this number"));
}

TEST_F(ArtFolderTest, RefusesPicturesOfAnotherSize) {
  Art.Write("iml/07_x.xpm", ScratchArt::Xpm(16, 15, 1));
  EXPECT_EQ(Complaint(), "iml/07_x.xpm: isn't 16 by 16");
  Art.Write("iml/07_x.xpm", ScratchArt::Xpm(16, 16, 1));
  Art.Write("logo.xpm", ScratchArt::Xpm(55, 56, 1));
  EXPECT_EQ(Complaint(), "logo.xpm: isn't 56 by 56");
  Art.Write("logo.xpm", ScratchArt::Xpm(56, 56, 1));
  Art.Write("icon32.xpm", ScratchArt::Xpm(31, 31, 1));
  EXPECT_EQ(Complaint(), "icon32.xpm: isn't 32 by 32");
}

TEST_F(ArtFolderTest, RefusesTheMaskColourInTheTableAlone) {
  Art.Write("logo.xpm", ScratchArt::Xpm(56, 56, 0xC0C0C0));
  EXPECT_EQ(Complaint(), "");
  Art.Write("iml/07_x.xpm", ScratchArt::Xpm(16, 16, 0xC0C0C0));
  EXPECT_EQ(Complaint(), "iml/07_x.xpm: #C0C0C0 is the mask colour: take a grey beside it");
  Art.Write("iml/07_x.xpm", ScratchArt::Xpm(16, 16, 0xC0C0C1));
  EXPECT_EQ(Complaint(), "");
}

TEST_F(ArtFolderTest, SaysWhereABrokenPictureIsBroken) {
  std::string text = ScratchArt::Xpm(16, 16, 1);
  text.replace(text.find("####"), 4, "##?#");
  Art.Write("iml/07_x.xpm", text);
  EXPECT_EQ(Complaint(), "iml/07_x.xpm:6: \"?\" is none of the colours");
}

TEST_F(ArtFolderTest, RefusesAMissingPictureOrFolder) {
  std::filesystem::remove(Art.Path() / "icon48.xpm");
  EXPECT_EQ(Complaint(), "icon48.xpm: can't be read");
  std::filesystem::remove_all(Art.Path() / "iml");
  EXPECT_EQ(Complaint(), "iml: there is no such folder");
}

}  // namespace
}  // namespace cvl::tools
