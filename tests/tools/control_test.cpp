#include "tools/upstream/control.h"

#include <gtest/gtest.h>

#include <vector>

namespace cvl::tools {
namespace {

TEST(ObeyControlLine, TakesTheWordsOfABehaviour) {
  Behaviour behaviour;
  EXPECT_EQ(ObeyControlLine("silent", behaviour).Reply, "ok");
  EXPECT_EQ(ObeyControlLine(" delay \t 500 \r", behaviour).Reply, "ok");
  EXPECT_TRUE(behaviour.Silent);
  EXPECT_EQ(behaviour.DelayMs, 500);
}

TEST(ObeyControlLine, NormalForgetsEverything) {
  Behaviour behaviour;
  behaviour.Silent = true;
  behaviour.Count = 3;
  EXPECT_EQ(ObeyControlLine("normal", behaviour).Reply, "ok");
  EXPECT_FALSE(behaviour.Silent);
  EXPECT_FALSE(behaviour.Count);
}

TEST(ObeyControlLine, QuitIsAcknowledged) {
  Behaviour behaviour;
  EXPECT_FALSE(ObeyControlLine("normal", behaviour).Quit);
  const ControlOutcome outcome = ObeyControlLine("quit", behaviour);
  EXPECT_EQ(outcome.Reply, "ok");
  EXPECT_TRUE(outcome.Quit);
}

TEST(ObeyControlLine, TellsWhatIsWrongAndChangesNothing) {
  Behaviour behaviour;
  behaviour.DelayMs = 7;
  EXPECT_EQ(ObeyControlLine("", behaviour).Reply, "error: unknown word");
  EXPECT_EQ(ObeyControlLine("sleep", behaviour).Reply, "error: unknown word");
  EXPECT_EQ(ObeyControlLine("--silent", behaviour).Reply, "error: unknown word");
  EXPECT_EQ(ObeyControlLine("delay", behaviour).Reply, "error: delay needs a value");
  EXPECT_EQ(ObeyControlLine("delay soon", behaviour).Reply,
            "error: delay needs a whole number from 0 to 86400000");
  EXPECT_EQ(ObeyControlLine("silent 1", behaviour).Reply, "error: silent takes no value");
  EXPECT_EQ(ObeyControlLine("normal now", behaviour).Reply, "error: normal takes no value");
  const ControlOutcome outcome = ObeyControlLine("quit now", behaviour);
  EXPECT_EQ(outcome.Reply, "error: quit takes no value");
  EXPECT_FALSE(outcome.Quit);
  EXPECT_EQ(behaviour.DelayMs, 7);
}

TEST(ObeyControlLine, RefusesALineThatIsTooLong) {
  Behaviour behaviour;
  EXPECT_EQ(ObeyControlLine(std::string(1001, 'x'), behaviour).Reply,
            "error: the line is too long");
}

TEST(LineCutter, PutsPiecesTogether) {
  LineCutter cutter;
  std::vector<std::string> lines;
  const auto take = [&lines](std::string_view line) { lines.emplace_back(line); };
  cutter.Add("sil", take);
  EXPECT_TRUE(lines.empty());
  cutter.Add("ent\n\nno", take);
  cutter.Add("rmal\n", take);
  EXPECT_EQ(lines, (std::vector<std::string>{"silent", "", "normal"}));
}

TEST(LineCutter, KeepsNoEndlessLine) {
  LineCutter cutter;
  std::vector<std::string> lines;
  const auto take = [&lines](std::string_view line) { lines.emplace_back(line); };
  cutter.Add(std::string(5000, 'x') + "\nok\n", take);
  EXPECT_EQ(lines, (std::vector<std::string>{std::string(1001, 'x'), "ok"}));
}

}  // namespace
}  // namespace cvl::tools
