#include "tools/upstream/behaviour.h"

#include <gtest/gtest.h>

#include "tools/system/arguments.h"

namespace cvl::tools {
namespace {

Behaviour With(std::string_view word, const std::string &value = "") {
  Behaviour behaviour;
  ApplyBehaviour(behaviour, word, value);
  return behaviour;
}

TEST(Behaviour, TakesEachWord) {
  EXPECT_EQ(With("delay", "500").DelayMs, 500);
  EXPECT_EQ(With("shift", "-1500").ShiftMs, -1500);
  EXPECT_TRUE(With("silent").Silent);
  EXPECT_EQ(With("one-byte").Length, 1U);
  EXPECT_EQ(With("repeat", "3").Repeat, 3);
  EXPECT_EQ(With("length", "0").Length, 0U);
  EXPECT_EQ(With("seconds", "4294967295").Seconds, 0xFFFFFFFFU);
  EXPECT_EQ(With("fraction", "ffDF3b64").Fraction, 0xFFDF3B64U);
  EXPECT_EQ(With("from", "127.0.0.2").From, 0x7F000002U);
  EXPECT_EQ(With("count", "2").Count, 2);
}

TEST(Behaviour, ZeroTransmitFixesSecondsAndFraction) {
  const Behaviour behaviour = With("zero-transmit");
  EXPECT_EQ(behaviour.Seconds, 0U);
  EXPECT_EQ(behaviour.Fraction, 0U);
}

TEST(Behaviour, EchoesTheNamedBytesOnly) {
  EXPECT_EQ(With("echo-bytes", "0,3,7").EchoBytes,
            (std::array<bool, 8>{true, false, false, true, false, false, false, true}));
  EXPECT_EQ(With("wrong-echo").EchoBytes, (std::array<bool, 8>{}));
}

TEST(Behaviour, ChangesOneTraitAndLeavesTheOthers) {
  Behaviour behaviour = With("delay", "500");
  ApplyBehaviour(behaviour, "silent", "");
  EXPECT_EQ(behaviour.DelayMs, 500);
  EXPECT_TRUE(behaviour.Silent);
}

TEST(Behaviour, RefusesBadValues) {
  const std::pair<const char *, const char *> cases[]{
      {"delay", "-1"},         {"delay", "86400001"},    {"shift", "x"},
      {"shift", "1.5"},        {"repeat", "0"},          {"repeat", "1001"},
      {"length", "65508"},     {"length", "-1"},         {"seconds", "4294967296"},
      {"seconds", "-1"},       {"fraction", "1234567"},  {"fraction", "123456789"},
      {"fraction", "0x12345"}, {"fraction", "1234567g"}, {"from", "localhost"},
      {"from", "192.0.2.1"},   {"from", "0.0.0.0"},      {"count", "0"},
      {"echo-bytes", "8"},     {"echo-bytes", "0,"},     {"echo-bytes", ",0"},
      {"echo-bytes", "0;3"}};
  for (const auto &[word, value] : cases) {
    EXPECT_THROW(With(word, value), UsageError) << word << ' ' << value;
  }
}

TEST(Behaviour, RefusesAMissingAndAnExtraValue) {
  EXPECT_THROW(With("delay"), UsageError);
  EXPECT_THROW(With("silent", "1"), UsageError);
  EXPECT_THROW(With("sleepy"), UsageError);
}

TEST(KindOfBehaviour, TellsWhetherAValueFollows) {
  EXPECT_EQ(KindOfBehaviour("silent"), BehaviourWord::Alone);
  EXPECT_EQ(KindOfBehaviour("delay"), BehaviourWord::WithValue);
  EXPECT_EQ(KindOfBehaviour("normal"), BehaviourWord::Unknown);
}

}  // namespace
}  // namespace cvl::tools
