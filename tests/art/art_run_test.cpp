#include "tools/art/art_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

#include "scratch_art.h"
#include "tools/art/art_output.h"

namespace cvl::tools {
namespace {

class ArtRunTest : public testing::Test {
 protected:
  int Run(const std::vector<std::string> &arguments) {
    Errors.str("");
    return RunArt(arguments, Errors);
  }

  std::string Written() const {
    std::ifstream file(Output, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  ScratchArt Art;
  std::string Folder = Art.Path().string();
  std::string Output = Folder + "/output";
  std::ostringstream Errors;
};

TEST_F(ArtRunTest, WritesTheSource) {
  EXPECT_EQ(Run({"--source", Output, Folder}), 0);
  EXPECT_EQ(Written(), ArtSource(LoadArtFolder(Art.Path())));
  EXPECT_EQ(Errors.str(), "");
}

TEST_F(ArtRunTest, WritesTheSheetInTheSizeAskedFor) {
  EXPECT_EQ(Run({"--sheet", Output, Folder}), 0);
  EXPECT_EQ(Written(), ArtSheet(LoadArtFolder(Art.Path()), 1));
  EXPECT_EQ(Run({"--sheet", Output, "--scale", "2", Folder}), 0);
  EXPECT_EQ(Written(), ArtSheet(LoadArtFolder(Art.Path()), 2));
}

TEST_F(ArtRunTest, FailsOnABrokenPictureAndWritesNothing) {
  Art.Write("iml/07_x.xpm", "");
  EXPECT_EQ(Run({"--source", Output, Folder}), 1);
  EXPECT_EQ(Errors.str(), Folder + "/iml/07_x.xpm:1: doesn't begin with /* XPM */\n");
  EXPECT_FALSE(std::filesystem::exists(Output));
}

TEST_F(ArtRunTest, FailsWhenTheResultCannotBeWritten) {
  EXPECT_EQ(Run({"--source", Folder, Folder}), 1);
  EXPECT_EQ(Errors.str(), Folder + ": can't be written\n");
}

TEST_F(ArtRunTest, RefusesArgumentsThatMakeNoSense) {
  const std::vector<std::vector<std::string>> refused{
      {},
      {"--help"},
      {"--sources", Output, Folder},
      {"--source", Output},
      {"--source", Output, "--scale", "2", Folder},
      {"--sheet", Output, "--scales", "2", Folder},
      {"--sheet", Output, "--scale", "0", Folder},
      {"--sheet", Output, "--scale", "33", Folder},
      {"--sheet", Output, "--scale", "2x", Folder},
  };
  for (const std::vector<std::string> &arguments : refused) {
    EXPECT_EQ(Run(arguments), 2);
    EXPECT_THAT(Errors.str(), testing::StartsWith("usage: cvlart "));
  }
  EXPECT_FALSE(std::filesystem::exists(Output));
}

}  // namespace
}  // namespace cvl::tools
