#include "sync/line_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace cvl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> LinesOf(const std::string &bytes) {
  std::istringstream file(bytes);
  LineReader reader(file);
  std::vector<std::string> lines;
  std::string line;
  while (reader.Read(line)) {
    lines.push_back(line);
  }
  return lines;
}

TEST(LineReader, EndsLinesAtCrLfAtLfAndAtCr) {
  EXPECT_THAT(LinesOf("a\r\nb\nc\rd"), ElementsAre("a", "b", "c", "d"));
}

TEST(LineReader, ReadsALastLineWithoutAnEnd) {
  EXPECT_THAT(LinesOf("a\nb"), ElementsAre("a", "b"));
}

TEST(LineReader, MakesNoLineBehindTheLastEnd) {
  EXPECT_THAT(LinesOf("a\n"), ElementsAre("a"));
  EXPECT_THAT(LinesOf("a\r\n"), ElementsAre("a"));
  EXPECT_THAT(LinesOf("a\r"), ElementsAre("a"));
}

TEST(LineReader, YieldsEmptyLines) {
  EXPECT_THAT(LinesOf("a\n\nb"), ElementsAre("a", "", "b"));
  EXPECT_THAT(LinesOf("a\r\rb"), ElementsAre("a", "", "b"));
  EXPECT_THAT(LinesOf("a\n\rb"), ElementsAre("a", "", "b"));
}

TEST(LineReader, FindsNothingInAnEmptyFile) {
  EXPECT_THAT(LinesOf(""), IsEmpty());
}

TEST(LineReader, PassesOverAByteOrderMarkAtTheStartAlone) {
  EXPECT_THAT(LinesOf("\xEF\xBB\xBF"
                      "a\n\xEF\xBB\xBF"
                      "b"),
              ElementsAre("a",
                          "\xEF\xBB\xBF"
                          "b"));
  EXPECT_THAT(LinesOf("\xEF\xBB\xBF"), IsEmpty());
}

TEST(LineReader, KeepsAFileThatOnlyBeginsLikeAMark) {
  EXPECT_THAT(LinesOf("\xEF\xBB"), ElementsAre("\xEF\xBB"));
  EXPECT_THAT(LinesOf("\xEF\xBB"
                      "a"),
              ElementsAre("\xEF\xBB"
                          "a"));
}

TEST(LineReader, KeepsEveryOtherByteAsItIs) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    if (byte != '\r' && byte != '\n') bytes += static_cast<char>(byte);
  }
  EXPECT_THAT(LinesOf(bytes), ElementsAre(bytes));
}

TEST(LineReader, CutsALineBeyondItsLimitAndGoesOnBehindIt) {
  const std::string most(LineReader::MostLength, 'a');
  EXPECT_THAT(LinesOf(most + "\nb"), ElementsAre(most, "b"));
  EXPECT_THAT(LinesOf(most + "tail\nb"), ElementsAre(most, "b"));
}

}  // namespace
}  // namespace cvl
