#include "base/number_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "tests/support/expect_error.h"

namespace cvl {
namespace {

using namespace std::string_view_literals;

/// TEXT and behind it COUNT times C.
std::string Extended(std::string text, std::size_t count, char c) {
  return text.append(count, c);
}

TEST(Val, ReadsTheNumberAtTheStart) {
  const std::pair<std::string_view, double> cases[]{
      {"59", 59},       {"+59", 59},
      {"-59", -59},     {"0059", 59},
      {"1.5", 1.5},     {".5", 0.5},
      {"-.5", -0.5},    {"+.5", 0.5},
      {"5.", 5},        {"1e3", 1000},
      {"1E+3", 1000},   {"1e-3", 0.001},
      {"1d3", 1000},    {"1D-3", 0.001},
      {"+1.5d+2", 150}, {"5.e2", 500},
      {"0.1", 0.1},     {"2147483648", 2147483648.0},
      {"0", 0},         {"9007199254740993", 9007199254740992.0},
  };
  for (const auto &[text, value] : cases) {
    EXPECT_EQ(Val(text), value) << text;
  }
}

TEST(Val, StopsWhereTheTextNoLongerReadsAsANumber) {
  const std::pair<std::string_view, double> cases[]{
      {"59 Minutes", 59},
      {"1 2", 1},
      {"1.2.3", 1.2},
      {"1,000", 1},
      {"12-5", 12},
      {"1e", 1},
      {"1e+", 1},
      {"1e+x", 1},
      {"1ee5", 1},
      {"1e1.5", 10},
      {"0x10", 0},
      {"7\t8", 7},
      {"7\0"
       "8"sv,
       7},
      {"1f5", 1},
      {"1..5", 1},
      {"3\xB2", 3},
  };
  for (const auto &[text, value] : cases) {
    EXPECT_EQ(Val(text), value) << text;
  }
}

TEST(Val, IsZeroWhereNoNumberBegins) {
  for (const std::string_view text : {""sv,
                                      " "sv,
                                      "\t"sv,
                                      "x1"sv,
                                      "-"sv,
                                      "+"sv,
                                      "."sv,
                                      "-."sv,
                                      "e5"sv,
                                      "d5"sv,
                                      ".e5"sv,
                                      "--5"sv,
                                      "+-5"sv,
                                      "- 5"sv,
                                      "&H10"sv,
                                      "$5"sv,
                                      "inf"sv,
                                      "-inf"sv,
                                      "nan"sv,
                                      "infinity"sv,
                                      "\0"
                                      "5"sv,
                                      "\n5"sv,
                                      "\xA0"
                                      "5"sv}) {
    EXPECT_EQ(Val(text), 0) << text;
  }
}

TEST(Val, PassesOverLeadingBlanksAndTabs) {
  EXPECT_EQ(Val("  5"), 5);
  EXPECT_EQ(Val("\t \t-5 "), -5);
}

TEST(Val, FailsWithOverflowBeyondTheLargestFloat) {
  EXPECT_EQ(Val("1.7976931348623157e308"), std::numeric_limits<double>::max());
  EXPECT_EQ(Val("-1.7976931348623157e308"), std::numeric_limits<double>::lowest());
  ExpectRuntimeError(6, [] { return Val("1.7976931348623159e308"); });
  ExpectRuntimeError(6, [] { return Val("1e309"); });
  ExpectRuntimeError(6, [] { return Val("-1e309"); });
  ExpectRuntimeError(6, [] { return Val("1d999999999999999999999999"); });
  ExpectRuntimeError(6, [] { return Val(std::string(400, '9')); });
  for (const char mark : {'e', 'E', 'd', 'D'}) {
    const testing::ScopedTrace trace(__FILE__, __LINE__, std::string(1, mark));
    EXPECT_EQ(Val(Extended("1", 1, mark) + "308"), 1e308);
    ExpectRuntimeError(6, [=] { return Val(Extended(".5", 1, mark) + "999"); });
    ExpectRuntimeError(6, [=] { return Val(Extended("-0.0005", 1, mark) + "+999"); });
  }
}

TEST(Val, TakesWhatIsTooSmallAsZero) {
  EXPECT_EQ(Val("5e-324"), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(Val("1e-400"), 0);
  EXPECT_EQ(Val("-1.5e-400"), 0);
  EXPECT_EQ(Val("1e-999999999999999999999999"), 0);
  EXPECT_EQ(Val("0e999999999999999999999999"), 0);
  for (const char mark : {'e', 'E', 'd', 'D'}) {
    EXPECT_EQ(Val(Extended("1", 1, mark) + "-307"), 1e-307) << mark;
    EXPECT_EQ(Val(Extended("1", 1, mark) + "-400"), 0) << mark;
    EXPECT_EQ(Val(Extended("-12345", 1, mark) + "-400"), 0) << mark;
    EXPECT_EQ(Val(Extended(".0", 1, mark) + "999"), 0) << mark;
  }
}

TEST(Val, ReadsHugeTextsOfDigits) {
  EXPECT_EQ(Val(std::string(100000, '0') + "7"), 7);
  EXPECT_EQ(Val(Extended("0.", 100000, '0') + "7"), 0);
  EXPECT_EQ(Val(Extended("1e", 100000, '0') + "2"), 100);
  EXPECT_EQ(Val(std::string(100000, '+') + "7"), 0);
}

TEST(Val, WeighsALongMantissaAgainstItsExponent) {
  const std::string tiny = Extended(".", 1100000, '0') + "1";
  EXPECT_EQ(Val(tiny + "e1100001"), 1);
  ExpectRuntimeError(6, [&] { return Val(tiny + "e1100500"); });
  const std::string huge = Extended("1", 1100000, '0');
  EXPECT_EQ(Val(huge + "e-1100000"), 1);
  EXPECT_EQ(Val(huge + "e-1100500"), 0);
}

TEST(IsNumeric, TakesWhatIsOneNumberFromEndToEnd) {
  for (const std::string_view text :
       {"0"sv, "59"sv, "+59"sv, "-59"sv, " 59"sv, "59 "sv, "  -1.5e3  "sv, "5."sv, ".5"sv, "1d5"sv,
        "1E-5"sv, "1e-400"sv, "00"sv}) {
    EXPECT_TRUE(IsNumeric(text)) << text;
  }
}

TEST(IsNumeric, RefusesWhatHasAnythingElseInIt) {
  for (const std::string_view text : {""sv,
                                      " "sv,
                                      "."sv,
                                      "-"sv,
                                      "+ 5"sv,
                                      "5 5"sv,
                                      "5x"sv,
                                      "x5"sv,
                                      "1,000"sv,
                                      "1.2.3"sv,
                                      "1e"sv,
                                      "1e+"sv,
                                      "1e5.5"sv,
                                      "--5"sv,
                                      "5-"sv,
                                      "0x10"sv,
                                      "&H10"sv,
                                      "$5"sv,
                                      "(5)"sv,
                                      "5%"sv,
                                      "inf"sv,
                                      "-inf"sv,
                                      "nan"sv,
                                      "\t5"sv,
                                      "5\t"sv,
                                      "5\n"sv,
                                      "\n5"sv,
                                      "\xA0"
                                      "5"sv,
                                      "\0"sv,
                                      "5\0"sv,
                                      "5\0 "sv,
                                      "\xB2"sv,
                                      "e5"sv,
                                      "1e5e5"sv,
                                      "1e 5"sv,
                                      "Yes"sv}) {
    EXPECT_FALSE(IsNumeric(text)) << text;
  }
}

TEST(IsNumeric, RefusesWhatNoFloatHolds) {
  EXPECT_TRUE(IsNumeric("1.7976931348623157e308"));
  EXPECT_FALSE(IsNumeric("1e309"));
  EXPECT_FALSE(IsNumeric("-1d309"));
  EXPECT_FALSE(IsNumeric(std::string(400, '9')));
  for (const char mark : {'e', 'E', 'd', 'D'}) {
    EXPECT_TRUE(IsNumeric(Extended("1", 1, mark) + "-400")) << mark;
    EXPECT_TRUE(IsNumeric(Extended("1", 1, mark) + "308")) << mark;
    EXPECT_FALSE(IsNumeric(Extended(".5", 1, mark) + "999")) << mark;
    EXPECT_FALSE(IsNumeric(Extended("1", 1, mark) + "309")) << mark;
  }
}

TEST(IsNumeric, SurvivesHugeTexts) {
  EXPECT_TRUE(IsNumeric(std::string(100000, ' ') + Extended("1", 100000, ' ')));
  EXPECT_TRUE(IsNumeric(std::string(100000, '0')));
  EXPECT_FALSE(IsNumeric(std::string(100000, '.')));
  EXPECT_FALSE(IsNumeric(std::string(100000, '-')));
  EXPECT_FALSE(IsNumeric(Extended("1", 100000, 'e')));
}

TEST(NumberText, WritesWholeNumbersWithoutAPoint) {
  EXPECT_EQ(NumberText(0), "0");
  EXPECT_EQ(NumberText(59), "59");
  EXPECT_EQ(NumberText(-32768), "-32768");
  EXPECT_EQ(NumberText(100), "100");
  EXPECT_EQ(NumberText(2147483648.0), "2147483648");
  EXPECT_EQ(NumberText(123456789012345.0), "123456789012345");
}

TEST(NumberText, HasNoSignOnZero) {
  EXPECT_EQ(NumberText(-0.0), "0");
}

TEST(NumberText, KeepsFifteenSignificantDigits) {
  EXPECT_EQ(NumberText(0.1), "0.1");
  EXPECT_EQ(NumberText(0.1 + 0.2), "0.3");
  EXPECT_EQ(NumberText(1.0 / 3), "0.333333333333333");
  EXPECT_EQ(NumberText(2.0 / 3), "0.666666666666667");
  EXPECT_EQ(NumberText(-2.0 / 3), "-0.666666666666667");
  EXPECT_EQ(NumberText(10.140683174133301), "10.1406831741333");
  EXPECT_EQ(NumberText(1234.5), "1234.5");
  EXPECT_EQ(NumberText(123456789.123456789), "123456789.123457");
}

TEST(NumberText, RoundsUpThroughNines) {
  EXPECT_EQ(NumberText(0.9999999999999999), "1");
  EXPECT_EQ(NumberText(999999999999999.9), "1000000000000000");
  EXPECT_EQ(NumberText(9.999999999999999), "10");
}

TEST(NumberText, HasNoExponentHoweverLargeOrSmall) {
  EXPECT_EQ(NumberText(1e15), "1000000000000000");
  EXPECT_EQ(NumberText(1234567890123456789.0), "1234567890123460000");
  EXPECT_EQ(NumberText(1e300), Extended("1", 300, '0'));
  EXPECT_EQ(NumberText(-1.5e300), Extended("-15", 299, '0'));
  EXPECT_EQ(NumberText(0.001), "0.001");
  EXPECT_EQ(NumberText(-1.25e-7), "-0.000000125");
  EXPECT_EQ(NumberText(1e-300), Extended("0.", 299, '0') + "1");
  EXPECT_EQ(NumberText(5e-324), Extended("0.", 323, '0') + "494065645841247");
}

TEST(NumberText, ReadsBackAsTheSameNumber) {
  for (const double value : {0.0, 1.0, -1.0, 0.1, 59.0, 1e15, 1e-15, 123456.789, -32768.5, 1e300}) {
    EXPECT_TRUE(IsNumeric(NumberText(value))) << value;
    EXPECT_EQ(Val(NumberText(value)), value);
  }
}

}  // namespace
}  // namespace cvl
