#include "controls/timer.h"

#include <gtest/gtest.h>

#include "platform/linux/epoll_loop.h"
#include "tests/platform/standing_clock.h"

namespace cvl {
namespace {

/// A loop whose monotonic clock stands, and a timer of 100 ms on it that counts its ticks.
class TimerControl : public testing::Test {
 protected:
  void SetUp() override {
    Ticker.OnTimer = [this] { ++Ticks; };
  }

  void Pass(std::int64_t milliseconds) {
    Clock.PassMonotonic(milliseconds);
    Loop.RunOnePass();
  }

  StandingClock Clock;
  EpollLoop Loop;
  Timer Ticker{Loop, 100};
  int Ticks = 0;
};

TEST_F(TimerControl, IsEnabledFromTheBeginning) {
  EXPECT_TRUE(Ticker.IsEnabled());
  EXPECT_EQ(Ticker.Interval(), 100);
}

TEST_F(TimerControl, TicksFirstAfterAnInterval) {
  Pass(99);
  EXPECT_EQ(Ticks, 0);
  Pass(1);
  EXPECT_EQ(Ticks, 1);
  Pass(99);
  EXPECT_EQ(Ticks, 1);
  Pass(1);
  EXPECT_EQ(Ticks, 2);
}

TEST_F(TimerControl, DoesNotTickWhileItIsOff) {
  Ticker.SetEnabled(false);
  EXPECT_FALSE(Ticker.IsEnabled());
  Pass(1000);
  EXPECT_EQ(Ticks, 0);
}

TEST_F(TimerControl, StartsItsIntervalAnewWhenItIsSwitchedOffAndOn) {
  Pass(60);
  Ticker.SetEnabled(false);
  Ticker.SetEnabled(true);
  Pass(60);
  EXPECT_EQ(Ticks, 0);
  Pass(40);
  EXPECT_EQ(Ticks, 1);
}

TEST_F(TimerControl, GoesOnUndisturbedWhenItIsSwitchedOnTwice) {
  Pass(60);
  Ticker.SetEnabled(true);
  Pass(40);
  EXPECT_EQ(Ticks, 1);
}

TEST_F(TimerControl, MayBeSwitchedOffByItsOwnTick) {
  Ticker.OnTimer = [this] {
    ++Ticks;
    Ticker.SetEnabled(false);
  };
  Pass(100);
  Pass(100);
  EXPECT_EQ(Ticks, 1);
  EXPECT_FALSE(Ticker.IsEnabled());
}

TEST_F(TimerControl, TicksWithoutAListener) {
  Ticker.OnTimer = nullptr;
  Pass(100);
  Ticker.OnTimer = [this] { ++Ticks; };
  Pass(100);
  EXPECT_EQ(Ticks, 1);
}

}  // namespace
}  // namespace cvl
