#include "base/failure_modes.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

namespace cvl {
namespace {

TEST(Trap, IsQuietWhenAllGoesWell) {
  bool ran = false;
  const Failure failure = Trap([&] { ran = true; });
  EXPECT_TRUE(ran);
  EXPECT_FALSE(failure);
  EXPECT_EQ(failure.Number, 0);
  EXPECT_EQ(failure.Description, "");
}

TEST(Trap, LandsBehindTheBodyWithNumberAndDescription) {
  std::string trail;
  const Failure failure = Trap([&] {
    trail += "a";
    throw RuntimeError(53);
    trail += "b";
  });
  EXPECT_EQ(trail, "a");
  EXPECT_TRUE(failure);
  EXPECT_EQ(failure.Number, 53);
  EXPECT_EQ(failure.Description, "File not found");
}

TEST(Trap, CatchesMemoryThatRunsOutAsFailure7) {
  const Failure failure = Trap([] { throw std::bad_alloc(); });
  EXPECT_EQ(failure.Number, error_number::OutOfMemory);
  EXPECT_EQ(failure.Description, "Out of memory");
}

TEST(ContinueOnFailure, SkipsAStepThatRunsOutOfMemory) {
  ContinueOnFailure mode;
  EXPECT_FALSE(mode.Step([] { throw std::bad_alloc(); }));
  EXPECT_EQ(mode.Number(), error_number::OutOfMemory);
  EXPECT_TRUE(mode.Step([] {}));
}

TEST(RunsOutOfMemory, ReportsThatAloneAndPropagatesFailures) {
  EXPECT_FALSE(RunsOutOfMemory([] {}));
  EXPECT_TRUE(RunsOutOfMemory([] { throw std::bad_alloc(); }));
  EXPECT_THROW(static_cast<void>(RunsOutOfMemory([] { throw RuntimeError(6); })), RuntimeError);
}

TEST(Trap, LetsOtherExceptionsThrough) {
  EXPECT_THROW(static_cast<void>(Trap([] { throw std::logic_error("mistake"); })),
               std::logic_error);
  EXPECT_THROW(static_cast<void>(Trap([] { throw std::runtime_error("no number"); })),
               std::runtime_error);
}

TEST(ContinueOnFailure, StartsWithoutAFailure) {
  const ContinueOnFailure mode;
  EXPECT_EQ(mode.Number(), 0);
}

TEST(ContinueOnFailure, SkipsTheRestOfAFailedStepAndGoesOn) {
  ContinueOnFailure mode;
  std::string trail;
  EXPECT_TRUE(mode.Step([&] { trail += "a"; }));
  EXPECT_FALSE(mode.Step([&] {
    trail += "b";
    throw RuntimeError(6);
    trail += "c";
  }));
  EXPECT_TRUE(mode.Step([&] { trail += "d"; }));
  EXPECT_EQ(trail, "abd");
}

TEST(ContinueOnFailure, TellsTheNumberInTheNextStep) {
  ContinueOnFailure mode;
  int seen = -1;
  mode.Step([] { throw RuntimeError(10054); });
  mode.Step([&] { seen = mode.Number(); });
  EXPECT_EQ(seen, 10054);
}

TEST(ContinueOnFailure, ForgetsTheNumberAfterAGoodStep) {
  ContinueOnFailure mode;
  mode.Step([] { throw RuntimeError(13); });
  EXPECT_EQ(mode.Number(), 13);
  mode.Step([] {});
  EXPECT_EQ(mode.Number(), 0);
}

TEST(ContinueOnFailure, KeepsTheLastOfSeveralFailures) {
  ContinueOnFailure mode;
  mode.Step([] { throw RuntimeError(6); });
  mode.Step([] { throw RuntimeError(9); });
  EXPECT_EQ(mode.Number(), 9);
}

TEST(ContinueOnFailure, LetsOtherExceptionsThrough) {
  ContinueOnFailure mode;
  EXPECT_THROW(mode.Step([] { throw std::logic_error("mistake"); }), std::logic_error);
  EXPECT_THROW(mode.Step([] { throw std::runtime_error("no number"); }), std::runtime_error);
}

TEST(ContinueOnFailure, IsNotLeftByAFailureWithinANestedTrap) {
  ContinueOnFailure mode;
  Failure inner;
  EXPECT_TRUE(mode.Step([&] { inner = Trap([] { throw RuntimeError(70); }); }));
  EXPECT_EQ(inner.Number, 70);
  EXPECT_EQ(mode.Number(), 0);
}

}  // namespace
}  // namespace cvl
