#include "update/http_answer.h"

#include "tests/support/expect_error.h"

namespace cvl {
namespace {

std::int32_t LengthIn(const std::string &answer) {
  return ContentLengthAt(answer, LengthPosition(answer));
}

TEST(LengthPosition, CountsFromOne) {
  EXPECT_EQ(LengthPosition("Content-Length: 5"), 1U);
  EXPECT_EQ(LengthPosition("\r\nContent-Length: 5"), 3U);
}

TEST(LengthPosition, IsZeroWithoutTheHeader) {
  EXPECT_EQ(LengthPosition(""), 0U);
  EXPECT_EQ(LengthPosition("Transfer-Encoding: chunked\r\n\r\n"), 0U);
}

TEST(LengthPosition, WantsTheVeryCaseAndTheBlank) {
  EXPECT_EQ(LengthPosition("content-length: 5"), 0U);
  EXPECT_EQ(LengthPosition("CONTENT-LENGTH: 5"), 0U);
  EXPECT_EQ(LengthPosition("Content-Length:5"), 0U);
}

TEST(HeaderEnd, IsTheFirstEmptyLine) {
  EXPECT_EQ(HeaderEnd("ab\r\n\r\ncd\r\n\r\n"), 3U);
  EXPECT_EQ(HeaderEnd("\r\n\r\n"), 1U);
  EXPECT_EQ(HeaderEnd("ab\r\n\r"), 0U);
  EXPECT_EQ(HeaderEnd("ab\n\ncd"), 0U);
}

TEST(ContentLength, IsTheNumberBehindTheName) {
  EXPECT_EQ(LengthIn("Content-Length: 4711\r\nServer: x\r\n\r\n"), 4711);
  EXPECT_EQ(LengthIn("Content-Length: 5"), 5);
  EXPECT_EQ(LengthIn("Content-Length:   12\r\n\r\n"), 12);
}

TEST(ContentLength, IsCutBehindSevenCharacters) {
  EXPECT_EQ(LengthIn("Content-Length: 1234567\r\n"), 1234567);
  EXPECT_EQ(LengthIn("Content-Length: 12345678\r\n"), 1234567);
}

TEST(ContentLength, StopsAtALineEndThatTheSevenCutInHalf) {
  EXPECT_EQ(LengthIn("Content-Length: 123456\r\n789"), 123456);
}

TEST(ContentLength, TakesDigitsAlongThatFollowInTheSeven) {
  EXPECT_EQ(LengthIn("Content-Length: 12\r\nServer: x"), 12);
  EXPECT_EQ(LengthIn("Content-Length: 12\r\n3x"), 123);
  EXPECT_EQ(LengthIn("Content-Length: 12\r\n\r\n3"), 123);
  EXPECT_EQ(LengthIn("Content-Length: 123\r\n\r\n4"), 123);
}

TEST(ContentLength, IsZeroWithoutANumber) {
  EXPECT_EQ(LengthIn("Content-Length: many\r\n"), 0);
  EXPECT_EQ(LengthIn("Content-Length: "), 0);
}

TEST(ContentLength, RoundsToTheNearestEvenNumber) {
  EXPECT_EQ(LengthIn("Content-Length: 2.5\r\nServer"), 2);
  EXPECT_EQ(LengthIn("Content-Length: 3.5\r\nServer"), 4);
}

TEST(ContentLength, FailsWhenTheNumberDoesNotFit) {
  EXPECT_EQ(LengthIn("Content-Length: 2E9\r\nServer"), 2000000000);
  ExpectRuntimeError(6, [] { return LengthIn("Content-Length: 3E9\r\nServer"); });
  ExpectRuntimeError(6, [] { return LengthIn("Content-Length: 9E9999\r\n"); });
}

TEST(BehindHeader, IsWhatFollowsTheEmptyLine) {
  EXPECT_EQ(BehindHeader("ab\r\n\r\ncd", 3), "cd");
  EXPECT_EQ(BehindHeader("ab\r\n\r\n", 3), "");
}

TEST(BehindHeader, OfAPositionOfZeroStartsAtTheFourthCharacter) {
  EXPECT_EQ(BehindHeader("abcdef", 0), "def");
  EXPECT_EQ(BehindHeader("abc", 0), "");
  EXPECT_EQ(BehindHeader("a", 0), "");
}

TEST(WithoutLineEnds, TakesPairsAwayAndNothingElse) {
  EXPECT_EQ(WithoutLineEnds("a\r\nb\r\n\r\nc\r\n"), "abc");
  EXPECT_EQ(WithoutLineEnds("a\rb\nc\n\rd"), "a\rb\nc\n\rd");
  EXPECT_EQ(WithoutLineEnds(""), "");
}

TEST(WithoutLineEnds, LeavesAPairThatOnlyComesTogetherByIt) {
  EXPECT_EQ(WithoutLineEnds("\r\r\n\n"), "\r\n");
}

}  // namespace
}  // namespace cvl
