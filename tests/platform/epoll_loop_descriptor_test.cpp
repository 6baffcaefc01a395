// The loop as a guest of another loop, which watches its one descriptor.

#include <gtest/gtest.h>
#include <poll.h>

#include <optional>

#include "platform/linux/epoll_loop.h"
#include "tests/platform/loop_parts.h"

namespace cvl {
namespace {

class GuestLoop : public testing::Test {
 protected:
  bool IsReadable() { return Poll(0); }

  /// Waits until the descriptor is readable, for as long as it takes.
  void AwaitReadable() { ASSERT_TRUE(Poll(-1)); }

  EpollLoop Loop;
  int Events = 0;

 private:
  bool Poll(int timeout_ms) {
    pollfd watched{static_cast<int>(Loop.Descriptor()), POLLIN, 0};
    return poll(&watched, 1, timeout_ms) == 1 && (watched.revents & POLLIN) != 0;
  }
};

TEST_F(GuestLoop, HasNothingToDoAtFirst) {
  EXPECT_FALSE(IsReadable());
  Loop.RunOnePass();
  EXPECT_FALSE(IsReadable());
}

TEST_F(GuestLoop, IsReadableWhileASocketIsReady) {
  Bell bell;
  HandlerOf socket([&](Readiness) {
    ++Events;
    bell.Hush();
  });
  Loop.Watch(bell.Handle(), {.Read = true}, socket);
  EXPECT_FALSE(IsReadable());
  bell.Ring();
  EXPECT_TRUE(IsReadable());
  Loop.RunOnePass();
  EXPECT_EQ(Events, 1);
  EXPECT_FALSE(IsReadable());
}

TEST_F(GuestLoop, BecomesReadableWhenATimerIsDue) {
  LoopTimer timer(Loop, [this] { ++Events; });
  timer.Start(1000000, LoopTimer::Repeat::No);
  EXPECT_FALSE(IsReadable());
  timer.Start(1, LoopTimer::Repeat::No);
  AwaitReadable();
  Loop.RunOnePass();
  EXPECT_EQ(Events, 1);
  EXPECT_FALSE(IsReadable());
}

TEST_F(GuestLoop, BecomesReadableAtEachTickOfARepeatingTimer) {
  LoopTimer timer(Loop, [this] { ++Events; });
  timer.Start(1, LoopTimer::Repeat::Yes);
  while (Events < 3) {
    AwaitReadable();
    Loop.RunOnePass();
  }
  timer.Start(1000000, LoopTimer::Repeat::Yes);
  EXPECT_FALSE(IsReadable());
}

TEST_F(GuestLoop, HasNothingLeftToDoWhereATimerIsStoppedInTime) {
  LoopTimer timer(Loop, [this] { ++Events; });
  timer.Start(0, LoopTimer::Repeat::No);
  AwaitReadable();
  timer.Stop();
  Loop.RunOnePass();
  EXPECT_EQ(Events, 0);
  EXPECT_FALSE(IsReadable());
}

TEST_F(GuestLoop, IsReadableWhileWorkIsLeftThatAPassPosted) {
  PostedOf second([this] { ++Events; });
  PostedOf first([&] {
    ++Events;
    Loop.Post(second);
  });
  Loop.Post(first);
  Loop.RunOnePass();
  EXPECT_EQ(Events, 1);
  EXPECT_TRUE(IsReadable());
  Loop.RunOnePass();
  EXPECT_EQ(Events, 2);
  EXPECT_FALSE(IsReadable());
}

TEST_F(GuestLoop, IsReadableWhenWorkIsPostedOutsideOfItsPasses) {
  PostedOf event([this] { ++Events; });
  Loop.Post(event);
  EXPECT_TRUE(IsReadable());
  Loop.RunOnePass();
  EXPECT_EQ(Events, 1);
  EXPECT_FALSE(IsReadable());
}

}  // namespace
}  // namespace cvl
