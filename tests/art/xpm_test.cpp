#include "tools/art/xpm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace cvl::tools {
namespace {

using testing::ElementsAre;
using testing::Eq;

/// A file of these strings, the first of them on line 3.
std::string Xpm(const std::vector<std::string> &strings) {
  std::string text = "/* XPM */\nstatic const char *const x[] = {\n";
  for (const std::string &string : strings)
    text += "\"" + string + "\",\n";
  return text + "};\n";
}

/// What the reader says of a text, "" when it takes it.
std::string Complaint(const std::string &text) {
  try {
    ReadXpm(text, "x.xpm");
    return "";
  } catch (const ArtError &error) {
    return error.what();
  }
}

TEST(Xpm, ReadsRowsFromTopToBottom) {
  const XpmPicture picture =
      ReadXpm(Xpm({"3 2 3 1", "  c None", "# c #102030", "o c #FFfe0a", "#o ", "o##"}), "x.xpm");
  EXPECT_EQ(picture.Width, 3);
  EXPECT_EQ(picture.Height, 2);
  EXPECT_THAT(picture.Pixels,
              ElementsAre(0xFF102030, 0xFFFFFE0A, 0, 0xFFFFFE0A, 0xFF102030, 0xFF102030));
}

TEST(Xpm, ReadsTwoCharactersAPixel) {
  const XpmPicture picture =
      ReadXpm(Xpm({"2 1 2 2", "ab c #000001", "ba c #000002", "baab"}), "x.xpm");
  EXPECT_THAT(picture.Pixels, ElementsAre(0xFF000002, 0xFF000001));
}

TEST(Xpm, TakesBlackForOpaque) {
  EXPECT_THAT(ReadXpm(Xpm({"1 1 1 1", "k c #000000", "k"}), "x.xpm").Pixels,
              ElementsAre(0xFF000000));
}

TEST(Xpm, PassesOverCommentsAndTakesTheirSignsInStringsForColours) {
  const XpmPicture picture = ReadXpm(
      "/* XPM */\r\n/* \"no string\" */ x = {\"2 1 2 1\", /* \" */\n"
      "\"/ c #000001\", \"* c #000002\", \"/*\"}",
      "x.xpm");
  EXPECT_THAT(picture.Pixels, ElementsAre(0xFF000001, 0xFF000002));
}

TEST(Xpm, RefusesWhatIsNoXpm) {
  EXPECT_EQ(Complaint(""), "x.xpm:1: doesn't begin with /* XPM */");
  EXPECT_EQ(Complaint("/* XPM2 */"), "x.xpm:1: doesn't begin with /* XPM */");
  EXPECT_EQ(Complaint("/* XPM */\n"), "x.xpm:1: has no strings");
}

TEST(Xpm, RefusesWhatIsNotClosed) {
  EXPECT_EQ(Complaint("/* XPM */\n\"1 1 1 1\",\n\"k c #000000\n"),
            "x.xpm:3: a string isn't closed, or has a backslash in it");
  EXPECT_EQ(Complaint("/* XPM */\n\"1 1 1 1"),
            "x.xpm:2: a string isn't closed, or has a backslash in it");
  EXPECT_EQ(Complaint(Xpm({"1 1 1 1", "\\ c #000000", "\\"})),
            "x.xpm:4: a string isn't closed, or has a backslash in it");
  EXPECT_EQ(Complaint("/* XPM */\n\n/* and"), "x.xpm:3: a comment isn't closed");
}

TEST(Xpm, RefusesAHeaderThatIsNotFourNumbers) {
  const char *const four =
      "x.xpm:3: wants four numbers: width, height, colours, characters a pixel";
  EXPECT_EQ(Complaint(Xpm({"1 1 1", "k c #000000", "k"})), four);
  EXPECT_EQ(Complaint(Xpm({"1 1 1 1 0 0", "k c #000000", "k"})), four);
  EXPECT_EQ(Complaint(Xpm({"1 1x 1 1"})), "x.xpm:3: \"1x\" isn't a number from 1 to 256");
  EXPECT_EQ(Complaint(Xpm({"0 1 1 1"})), "x.xpm:3: \"0\" isn't a number from 1 to 256");
  EXPECT_EQ(Complaint(Xpm({"1 257 1 1"})), "x.xpm:3: \"257\" isn't a number from 1 to 256");
  EXPECT_EQ(Complaint(Xpm({"1 1 1 3"})), "x.xpm:3: \"3\" isn't a number from 1 to 2");
  EXPECT_EQ(Complaint(Xpm({"1 1 99999999999 1"})),
            "x.xpm:3: \"99999999999\" isn't a number from 1 to 4096");
}

TEST(Xpm, RefusesMissingAndSurplusRows) {
  EXPECT_EQ(Complaint(Xpm({"1 2 1 1", "k c #000000", "k"})),
            "x.xpm:3: promises 3 colours and rows, and 2 follow");
  EXPECT_EQ(Complaint(Xpm({"1 1 1 1", "k c #000000", "k", "k"})),
            "x.xpm:3: promises 2 colours and rows, and 3 follow");
}

TEST(Xpm, RefusesARowOfAnotherWidth) {
  EXPECT_EQ(Complaint(Xpm({"2 2 1 1", "k c #000000", "kk", "kkk"})),
            "x.xpm:6: a row of 3 characters in place of 2");
  EXPECT_EQ(Complaint(Xpm({"2 1 1 2", "kk c #000000", "kkk"})),
            "x.xpm:5: a row of 3 characters in place of 4");
}

TEST(Xpm, RefusesACharacterWithoutAColour) {
  EXPECT_EQ(Complaint(Xpm({"2 1 1 1", "k c #000000", "kK"})),
            "x.xpm:5: \"K\" is none of the colours");
}

TEST(Xpm, RefusesAColourThatItCannotRead) {
  for (const std::string colour : {"k c #00000", "k c #0000000", "k c #00000g", "k c #+00000",
                                   "k c none", "k s #000000", "k c", "k", "k c #000000 s x"}) {
    EXPECT_THAT(Complaint(Xpm({"1 1 1 1", colour, "k"})),
                Eq("x.xpm:4: colour \"k\" is neither \"c None\" nor \"c #RRGGBB\""))
        << colour;
  }
  EXPECT_EQ(Complaint(Xpm({"1 1 1 1", "", "k"})), "x.xpm:4: a colour without its character");
}

TEST(Xpm, RefusesACharacterWithTwoColours) {
  EXPECT_EQ(Complaint(Xpm({"1 1 2 1", "k c #000000", "k c None", "k"})),
            "x.xpm:5: colour \"k\" stands here twice");
}

}  // namespace
}  // namespace cvl::tools
