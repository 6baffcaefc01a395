// Passes that a routine lets the loop run in the middle of its work.

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "base/failure_modes.h"
#include "platform/linux/epoll_loop.h"
#include "tests/platform/loop_parts.h"
#include "tests/platform/standing_clock.h"

namespace cvl {
namespace {

class NestedPass : public testing::Test {
 protected:
  void SetUp() override {
    Loop.OnFatal = [](const RuntimeError &error) { throw FatalReached{error.Number()}; };
  }

  EpollLoop Loop;
  std::string Trail;
};

TEST_F(NestedPass, HandsOutWhatIsPendingAndComesBack) {
  Bell bell;
  HandlerOf socket([&](Readiness) {
    Trail += 's';
    bell.Hush();
  });
  PostedOf inner([this] { Trail += 'i'; });
  PostedOf outer([&] {
    Trail += '(';
    bell.Ring();
    Loop.Post(inner);
    Loop.RunOnePass();
    Trail += ')';
  });
  Loop.Watch(bell.Handle(), {.Read = true}, socket);
  Loop.Post(outer);
  Loop.RunOnePass();
  EXPECT_EQ(Trail, "(si)");
}

TEST_F(NestedPass, LeavesTheRestOfTheOuterPassToTheOuterPass) {
  PostedOf second([this] { Trail += '2'; });
  PostedOf first([this] {
    Trail += '(';
    Loop.RunOnePass();
    Trail += ')';
  });
  Loop.Post(first);
  Loop.Post(second);
  Loop.RunOnePass();
  EXPECT_EQ(Trail, "()2");
}

TEST_F(NestedPass, NestsEightDeepAndNoDeeper) {
  int depth = 0;
  int deepest = 0;
  std::optional<PostedOf> event;
  event.emplace([&] {
    deepest = std::max(deepest, ++depth);
    Loop.Post(*event);
    Loop.RunOnePass();
    --depth;
  });
  Loop.Post(*event);
  Loop.RunOnePass();
  EXPECT_EQ(deepest, 1 + EventLoop::MostNested);
  EXPECT_EQ(EventLoop::MostNested, 8);
}

TEST_F(NestedPass, SettlesAlsoWhereItIsTooDeepToRun) {
  int depth = 0;
  std::optional<SettlePoint> settled;
  UnsettledOf answers([&](SettlePoint point) {
    settled = point;
    return true;
  });
  bool settled_too_deep = false;
  std::optional<PostedOf> event;
  event.emplace([&] {
    Loop.Post(*event);
    if (++depth == 1 + EventLoop::MostNested) {
      Loop.SettleLater(answers);
      Loop.RunOnePass();
      settled_too_deep = settled == SettlePoint::NestedPass;
      event->Unlink();
    } else {
      Loop.RunOnePass();
    }
  });
  Loop.Post(*event);
  Loop.RunOnePass();
  EXPECT_EQ(depth, 9);
  EXPECT_TRUE(settled_too_deep);
}

TEST_F(NestedPass, SettlesFirstAndAgainAtTheEndOfTheEvent) {
  UnsettledOf answers([this](SettlePoint point) {
    Trail += point == SettlePoint::NestedPass ? 'n' : 'e';
    return point == SettlePoint::EndOfEvent;
  });
  PostedOf outer([&] {
    Loop.SettleLater(answers);
    Trail += '(';
    Loop.RunOnePass();
    Trail += ')';
  });
  Loop.Post(outer);
  Loop.RunOnePass();
  EXPECT_EQ(Trail, "(n)e");
}

TEST_F(NestedPass, SettlesWhatWaitsForAPassAndNotAtTheEndsOfEvents) {
  UnsettledOf answers([this](SettlePoint point) {
    Trail += point == SettlePoint::NestedPass ? 'n' : 'e';
    return false;
  });
  PostedOf first([&] { Loop.SettleBeforePass(answers); });
  PostedOf second([&] {
    Trail += '(';
    Loop.RunOnePass();
    Loop.RunOnePass();
    Trail += ')';
  });
  Loop.Post(first);
  Loop.Post(second);
  Loop.RunOnePass();
  Loop.RunOnePass();
  EXPECT_EQ(Trail, "(n)");
}

TEST_F(NestedPass, FiresARepeatingTimerOnceForItself) {
  StandingClock clock;
  LoopTimer timer(Loop, [&] {
    Trail += '(';
    if (Trail.size() < 10) Loop.RunOnePass();
    Trail += ')';
  });
  timer.Start(100, LoopTimer::Repeat::Yes);
  clock.PassMonotonic(100);
  Loop.RunOnePass();
  EXPECT_EQ(Trail, "()");
}

TEST_F(NestedPass, StrikesOutASocketThatItsHandlersClosedFromTheBatchOutside) {
  // Both ring; the handler of the first lets the loop run, and there the second's handler
  // closes the second. The outer batch still has its event.
  Bell first;
  Bell second;
  int seconds = 0;
  bool nested = false;
  const auto close_second = [&] {
    Loop.Unwatch(second.Handle());
    second.Close();
  };
  HandlerOf on_first([&](Readiness) {
    first.Hush();
    nested = true;
    Loop.RunOnePass();
  });
  HandlerOf on_second([&](Readiness) {
    ++seconds;
    close_second();
  });
  first.Ring();
  second.Ring();
  Loop.Watch(first.Handle(), {.Read = true}, on_first);
  Loop.Watch(second.Handle(), {.Read = true}, on_second);
  Loop.RunOnePass();
  EXPECT_TRUE(nested);
  EXPECT_EQ(seconds, 1);
}

TEST_F(NestedPass, KeepsTheFailureOfItsEventFromTheRoutineThatAskedForIt) {
  PostedOf failing([] { throw RuntimeError(9); });
  bool came_back = false;
  Failure seen_by_the_routine;
  PostedOf asking([&] {
    Loop.Post(failing);
    seen_by_the_routine = Trap([this] { Loop.RunOnePass(); });
    came_back = true;
  });
  Loop.Post(asking);
  int number = 0;
  try {
    Loop.RunOnePass();
  } catch (const FatalReached &fatal) {
    number = fatal.Number;
  }
  EXPECT_EQ(number, 9);
  EXPECT_FALSE(came_back);
  EXPECT_FALSE(seen_by_the_routine);
}

TEST_F(NestedPass, LetsAnEventCatchItsOwnFailure) {
  PostedOf careful([this] {
    const Failure failure = Trap([] { throw RuntimeError(9); });
    Trail += std::to_string(failure.Number);
  });
  PostedOf asking([&] {
    Loop.Post(careful);
    Loop.RunOnePass();
    Trail += '.';
  });
  Loop.Post(asking);
  Loop.RunOnePass();
  EXPECT_EQ(Trail, "9.");
}

TEST_F(NestedPass, HandsOutNothingMoreOnceAnEventInItQuits) {
  Bell bell;
  HandlerOf socket([this](Readiness) { Trail += 's'; });
  PostedOf quitter([this] {
    Trail += 'q';
    Loop.Quit();
  });
  PostedOf behind_quitter([this] { Trail += 'b'; });
  PostedOf rest([this] { Trail += 'r'; });
  PostedOf asking([&] {
    Trail += '(';
    Loop.Post(quitter);
    Loop.Post(behind_quitter);
    Loop.RunOnePass();
    bell.Ring();
    Loop.RunOnePass();
    Trail += ')';  // the routine that asked goes on to its end
  });
  Loop.Watch(bell.Handle(), {.Read = true}, socket);
  Loop.Post(asking);
  Loop.Post(rest);
  Loop.Run();
  EXPECT_EQ(Trail, "(q)");
}

}  // namespace
}  // namespace cvl
