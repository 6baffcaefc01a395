#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "platform/linux/epoll_loop.h"
#include "tests/platform/standing_clock.h"

namespace cvl {
namespace {

/// Timers on a loop whose monotonic clock stands; each leaves its letter in Trail.
class LoopTimerTest : public testing::Test {
 protected:
  std::function<void()> Write(char letter) {
    return [this, letter] { Trail += letter; };
  }

  /// Lets time pass, runs one pass and tells what it wrote.
  std::string After(std::int64_t milliseconds) {
    Clock.PassMonotonic(milliseconds);
    Trail.clear();
    Loop.RunOnePass();
    return Trail;
  }

  static constexpr auto Once = LoopTimer::Repeat::No;
  static constexpr auto Repeating = LoopTimer::Repeat::Yes;

  StandingClock Clock;
  EpollLoop Loop;
  std::string Trail;
};

TEST_F(LoopTimerTest, DoesNotRunBeforeItIsStarted) {
  LoopTimer timer(Loop, Write('a'));
  EXPECT_FALSE(timer.IsRunning());
  EXPECT_EQ(After(1000), "");
}

TEST_F(LoopTimerTest, FiresWhenItIsDueAndNotBefore) {
  LoopTimer timer(Loop, Write('a'));
  timer.Start(100, Once);
  EXPECT_EQ(After(99), "");
  EXPECT_TRUE(timer.IsRunning());
  EXPECT_EQ(After(1), "a");
  EXPECT_FALSE(timer.IsRunning());
  EXPECT_EQ(After(1000), "");
}

TEST_F(LoopTimerTest, FiresAgainAndAgainWhenItRepeats) {
  LoopTimer timer(Loop, Write('a'));
  timer.Start(100, Repeating);
  for (int tick = 0; tick < 3; ++tick) {
    EXPECT_EQ(After(99), "");
    EXPECT_EQ(After(1), "a");
    EXPECT_TRUE(timer.IsRunning());
  }
}

TEST_F(LoopTimerTest, DoesNotMakeUpForLateTicksAndIsArmedAnewFromNow) {
  LoopTimer timer(Loop, Write('a'));
  timer.Start(100, Repeating);
  EXPECT_EQ(After(1050), "a");
  EXPECT_EQ(After(0), "");
  EXPECT_EQ(After(99), "");  // 1149: the old rhythm would have had a tick at 1100
  EXPECT_EQ(After(1), "a");
}

TEST_F(LoopTimerTest, StartsAnewWhenItIsStartedWhileItRuns) {
  LoopTimer timer(Loop, Write('a'));
  timer.Start(100, Once);
  EXPECT_EQ(After(60), "");
  timer.Start(100, Once);
  EXPECT_EQ(After(99), "");
  EXPECT_EQ(After(1), "a");
}

TEST_F(LoopTimerTest, IsFeltWhenItIsDueBeforeTheOthers) {
  LoopTimer late(Loop, Write('l'));
  late.Start(1000, Once);
  LoopTimer early(Loop, Write('e'));
  early.Start(10, Once);
  EXPECT_EQ(After(10), "e");
  EXPECT_EQ(After(990), "l");
}

TEST_F(LoopTimerTest, DoesNotFireOnceStopped) {
  LoopTimer stopped(Loop, Write('s'));
  LoopTimer other(Loop, Write('o'));
  stopped.Start(10, Repeating);
  other.Start(20, Once);
  stopped.Stop();
  EXPECT_EQ(After(15), "");
  EXPECT_EQ(After(5), "o");
}

TEST_F(LoopTimerTest, MayBeStoppedByTheHandlerOfAnotherThatIsDueWithIt) {
  std::optional<LoopTimer> first;
  std::optional<LoopTimer> second;
  first.emplace(Loop, [&] {
    Trail += '1';
    second->Stop();
  });
  second.emplace(Loop, [&] {
    Trail += '2';
    first->Stop();
  });
  first->Start(10, Repeating);
  second->Start(10, Repeating);
  EXPECT_EQ(After(10).size(), 1U);  // whichever came first stopped the other
  EXPECT_NE(first->IsRunning(), second->IsRunning());
}

TEST_F(LoopTimerTest, MayBeDestroyedByTheHandlerOfAnotherThatIsDueWithIt) {
  std::optional<LoopTimer> first;
  std::optional<LoopTimer> second;
  first.emplace(Loop, [&] {
    Trail += '1';
    second.reset();
  });
  second.emplace(Loop, [&] {
    Trail += '2';
    first.reset();
  });
  first->Start(10, Once);
  second->Start(10, Once);
  EXPECT_EQ(After(10).size(), 1U);
  EXPECT_NE(first.has_value(), second.has_value());
}

TEST_F(LoopTimerTest, WaitsForItsNewTimeWhenTheHandlerOfAnotherStartsItAnew) {
  std::optional<LoopTimer> second;
  LoopTimer first(Loop, [&] {
    Trail += '1';
    second->Start(10, Once);
  });
  second.emplace(Loop, Write('2'));
  first.Start(10, Once);
  second->Start(10, Once);
  EXPECT_EQ(After(10), "1");
  EXPECT_EQ(After(10), "2");
}

TEST_F(LoopTimerTest, DoesNotFireTwiceInAPassHoweverShortItsInterval) {
  LoopTimer busy(Loop, [this] {
    Trail += 'b';
    Clock.PassMonotonic(5);  // the handler takes longer than the interval
  });
  busy.Start(0, Repeating);
  EXPECT_EQ(After(0), "b");
  EXPECT_EQ(After(0), "b");
}

TEST_F(LoopTimerTest, WaitsForTheNextPassWhenItFallsDueDuringThisOne) {
  std::optional<LoopTimer> next;
  LoopTimer slow(Loop, [this] {
    Trail += 's';
    Clock.PassMonotonic(500);
  });
  next.emplace(Loop, Write('n'));
  slow.Start(10, Once);
  next->Start(100, Once);
  EXPECT_EQ(After(10), "s");
  EXPECT_EQ(After(0), "n");
}

TEST_F(LoopTimerTest, FiresInALaterPassWhenAHandlerStartsItForNow) {
  std::optional<LoopTimer> second;
  LoopTimer first(Loop, [&] {
    Trail += '1';
    second->Start(0, Once);
  });
  second.emplace(Loop, Write('2'));
  first.Start(10, Once);
  EXPECT_EQ(After(10), "1");
  EXPECT_EQ(After(0), "2");
}

TEST_F(LoopTimerTest, StartsItselfAnewFromItsOwnHandler) {
  std::optional<LoopTimer> timer;
  timer.emplace(Loop, [&] {
    Trail += 'a';
    timer->Start(30, Once);
  });
  timer->Start(10, Once);
  EXPECT_EQ(After(10), "a");
  EXPECT_EQ(After(29), "");
  EXPECT_EQ(After(1), "a");
}

TEST_F(LoopTimerTest, FiresOnceWhenANestedPassComesInBetween) {
  LoopTimer first(Loop, [this] {
    Trail += '1';
    Loop.RunOnePass();
    Trail += '1';
  });
  LoopTimer second(Loop, Write('2'));
  first.Start(10, Once);
  second.Start(10, Once);
  const std::string trail = After(10);
  EXPECT_EQ(std::count(trail.begin(), trail.end(), '1'), 2) << trail;
  EXPECT_EQ(std::count(trail.begin(), trail.end(), '2'), 1) << trail;
}

TEST_F(LoopTimerTest, DoesNotFeelAStepOfTheWallClock) {
  LoopTimer timer(Loop, Write('a'));
  timer.Start(100, Once);
  Clock.StandAt(2000000000);
  EXPECT_EQ(After(99), "");
  Clock.StandAt(0);
  EXPECT_EQ(After(1), "a");
}

}  // namespace
}  // namespace cvl
