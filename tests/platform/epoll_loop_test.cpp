#include "platform/linux/epoll_loop.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "tests/platform/loop_parts.h"
#include "tests/platform/standing_clock.h"

namespace cvl {
namespace {

class EpollLoopTest : public testing::Test {
 protected:
  std::string OnePass() {
    Trail.clear();
    Loop.RunOnePass();
    return Trail;
  }

  EpollLoop Loop;
  std::string Trail;
};

TEST_F(EpollLoopTest, FiresTimersThenHandsOutSocketsThenRunsWhatWasPosted) {
  PostedOf posted([this] { Trail += 'p'; });
  Bell bell;
  HandlerOf socket([this](Readiness) { Trail += 's'; });
  LoopTimer timer(Loop, [this] { Trail += 't'; });
  Loop.Post(posted);
  bell.Ring();
  Loop.Watch(bell.Handle(), {.Read = true}, socket);
  timer.Start(0, LoopTimer::Repeat::No);
  EXPECT_EQ(OnePass(), "tsp");
}

TEST_F(EpollLoopTest, HandsOutASocketForAsLongAsItIsReady) {
  Bell bell;
  HandlerOf socket([this](Readiness readiness) {
    Trail += 's';
    EXPECT_TRUE(readiness.Read);
    EXPECT_FALSE(readiness.Write);
  });
  Loop.Watch(bell.Handle(), {.Read = true}, socket);
  EXPECT_EQ(OnePass(), "");
  bell.Ring();
  EXPECT_EQ(OnePass(), "s");
  EXPECT_EQ(OnePass(), "s");
  bell.Hush();
  EXPECT_EQ(OnePass(), "");
}

TEST_F(EpollLoopTest, HandsOutOnlyWhatASocketIsWatchedFor) {
  Bell bell;
  Readiness seen;
  HandlerOf socket([&](Readiness readiness) {
    Trail += 's';
    seen = readiness;
  });
  bell.Ring();
  Loop.Watch(bell.Handle(), {}, socket);
  EXPECT_EQ(OnePass(), "");
  Loop.Watch(bell.Handle(), {.Write = true}, socket);
  EXPECT_EQ(OnePass(), "s");
  EXPECT_TRUE(seen.Write);
  EXPECT_FALSE(seen.Read);
  Loop.Watch(bell.Handle(), {.Read = true, .Write = true}, socket);
  EXPECT_EQ(OnePass(), "s");
  EXPECT_TRUE(seen.Write);
  EXPECT_TRUE(seen.Read);
}

TEST_F(EpollLoopTest, PassesASocketOnToANewHandler) {
  Bell bell;
  HandlerOf old_one([this](Readiness) { Trail += 'o'; });
  HandlerOf new_one([this](Readiness) { Trail += 'n'; });
  bell.Ring();
  Loop.Watch(bell.Handle(), {.Read = true}, old_one);
  Loop.Watch(bell.Handle(), {.Read = true}, new_one);
  EXPECT_EQ(OnePass(), "n");
}

TEST_F(EpollLoopTest, IsQuietAboutASocketThatIsNoLongerWatched) {
  Bell bell;
  HandlerOf socket([this](Readiness) { Trail += 's'; });
  bell.Ring();
  Loop.Watch(bell.Handle(), {.Read = true}, socket);
  Loop.Unwatch(bell.Handle());
  EXPECT_EQ(OnePass(), "");
  Loop.Unwatch(bell.Handle());  // a second time is harmless, and so is a stranger
  Loop.Unwatch(SocketHandle{100000});
  Loop.Watch(bell.Handle(), {.Read = true}, socket);
  EXPECT_EQ(OnePass(), "s");
}

TEST_F(EpollLoopTest, TellsHangUpAndErrorApart) {
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends), 0);
  Readiness seen;
  HandlerOf socket([&](Readiness readiness) { seen = readiness; });
  Loop.Watch(SocketHandle{ends[0]}, {.Read = true, .HangUp = true}, socket);
  Loop.RunOnePass();
  EXPECT_FALSE(seen.HangUp);

  shutdown(ends[1], SHUT_WR);
  Loop.RunOnePass();
  EXPECT_TRUE(seen.HangUp);
  EXPECT_FALSE(seen.Error);

  // Unread bytes on the far side break the connection; nobody has to ask for that.
  ASSERT_EQ(send(ends[0], "x", 1, 0), 1);
  close(ends[1]);
  Loop.Watch(SocketHandle{ends[0]}, {}, socket);
  Loop.RunOnePass();
  EXPECT_TRUE(seen.Error);
  Loop.Unwatch(SocketHandle{ends[0]});
  close(ends[0]);
}

/// Two bells that ring together. The handler of whichever is handed out first deals with
/// the other one.
class TwoBells : public EpollLoopTest {
 protected:
  TwoBells() {
    First.Ring();
    Second.Ring();
    Loop.Watch(First.Handle(), {.Read = true}, OnFirst);
    Loop.Watch(Second.Handle(), {.Read = true}, OnSecond);
  }

  Bell First;
  Bell Second;
  std::function<void(Bell &)> DealWith;
  HandlerOf OnFirst{[this](Readiness) {
    Trail += '1';
    DealWith(Second);
  }};
  HandlerOf OnSecond{[this](Readiness) {
    Trail += '2';
    DealWith(First);
  }};
};

TEST_F(TwoBells, AreHandedOutInOnePass) {
  DealWith = [](Bell &) {};
  EXPECT_EQ(OnePass().size(), 2U);
}

TEST_F(TwoBells, AreStruckOutByTheFirstHandlerThatClosesTheOther) {
  DealWith = [this](Bell &other) {
    Loop.Unwatch(other.Handle());
    other.Close();
  };
  EXPECT_EQ(OnePass().size(), 1U);
}

TEST_F(TwoBells, DoNotRingForANewSocketThatHasGotTheOldNumber) {
  std::optional<Bell> heir;
  HandlerOf on_heir([this](Readiness) { Trail += 'h'; });
  DealWith = [&](Bell &other) {
    if (heir) return;
    const SocketHandle number = other.Handle();
    Loop.Unwatch(number);
    other.Close();
    heir.emplace();
    ASSERT_EQ(heir->Handle(), number);
    Loop.Watch(heir->Handle(), {.Read = true}, on_heir);
  };
  EXPECT_EQ(OnePass().size(), 1U);
  First.Hush();
  Second.Hush();
  EXPECT_EQ(OnePass(), "");
  heir->Ring();
  EXPECT_EQ(OnePass(), "h");
}

TEST_F(TwoBells, DoNotRingForASocketThatIsWatchedAnewInTheSamePass) {
  HandlerOf again([this](Readiness) { Trail += 'a'; });
  bool dealt = false;
  DealWith = [&](Bell &other) {
    if (dealt) return;
    dealt = true;
    Loop.Unwatch(other.Handle());
    Loop.Watch(other.Handle(), {.Read = true}, again);
  };
  EXPECT_EQ(OnePass().size(), 1U);
  const std::string later = OnePass();
  EXPECT_EQ(std::count(later.begin(), later.end(), 'a'), 1) << later;
}

TEST_F(EpollLoopTest, LetsTimersHaveTheirTurnInAFlood) {
  constexpr int Flood = 300;
  StandingClock clock;
  std::deque<Bell> bells(Flood);
  std::deque<HandlerOf> handlers;
  int answered = 0;
  for (Bell &bell : bells) {
    handlers.emplace_back([&](Readiness) {
      ++answered;
      clock.PassMonotonic(1);
      bell.Hush();
    });
    bell.Ring();
    Loop.Watch(bell.Handle(), {.Read = true}, handlers.back());
  }
  int answered_at_tick = -1;
  LoopTimer timer(Loop, [&] { answered_at_tick = answered; });
  timer.Start(1, LoopTimer::Repeat::No);
  for (int pass = 0; pass < Flood && answered < Flood; ++pass) {
    Loop.RunOnePass();
  }
  EXPECT_EQ(answered, Flood);
  EXPECT_GT(answered_at_tick, 0);
  EXPECT_LT(answered_at_tick, Flood);
}

TEST_F(EpollLoopTest, RunsAPostedEventOnceHoweverOftenItWasPosted) {
  PostedOf event([this] { Trail += 'p'; });
  Loop.Post(event);
  Loop.Post(event);
  EXPECT_EQ(OnePass(), "p");
  EXPECT_EQ(OnePass(), "");
}

TEST_F(EpollLoopTest, RunsInALaterPassWhatAHandlerPosts) {
  PostedOf second([this] { Trail += '2'; });
  PostedOf first([&] {
    Trail += '1';
    Loop.Post(second);
    Loop.Post(first);
  });
  Loop.Post(first);
  EXPECT_EQ(OnePass(), "1");
  EXPECT_EQ(OnePass(), "21");
  second.Unlink();
}

TEST_F(EpollLoopTest, RunsInALaterPassWhatTimersAndSocketsPost) {
  PostedOf event([this] { Trail += 'p'; });
  Bell bell;
  HandlerOf socket([&](Readiness) {
    Trail += 's';
    bell.Hush();
    Loop.Post(event);
  });
  LoopTimer timer(Loop, [&] {
    Trail += 't';
    Loop.Post(event);
  });
  bell.Ring();
  Loop.Watch(bell.Handle(), {.Read = true}, socket);
  EXPECT_EQ(OnePass(), "s");
  EXPECT_EQ(OnePass(), "p");
  timer.Start(0, LoopTimer::Repeat::No);
  EXPECT_EQ(OnePass(), "t");
  EXPECT_EQ(OnePass(), "p");
}

TEST_F(EpollLoopTest, DoesNotRunAPostedEventThatWasTakenBack) {
  PostedOf unlinked([this] { Trail += 'u'; });
  std::optional<PostedOf> destroyed;
  destroyed.emplace([this] { Trail += 'd'; });
  PostedOf kept([this] { Trail += 'k'; });
  Loop.Post(unlinked);
  Loop.Post(*destroyed);
  Loop.Post(kept);
  unlinked.Unlink();
  destroyed.reset();
  EXPECT_EQ(OnePass(), "k");
}

TEST_F(EpollLoopTest, DoesNotRunAPostedEventThatAnotherOfTheSamePassTookBack) {
  std::optional<PostedOf> third;
  PostedOf second([this] { Trail += '2'; });
  PostedOf first([&] {
    Trail += '1';
    second.Unlink();
    third.reset();
  });
  third.emplace([this] { Trail += '3'; });
  Loop.Post(first);
  Loop.Post(second);
  Loop.Post(*third);
  EXPECT_EQ(OnePass(), "1");
}

TEST_F(EpollLoopTest, SettlesBehindEachEvent) {
  UnsettledOf answers([this](SettlePoint point) {
    Trail += point == SettlePoint::EndOfEvent ? 'e' : 'n';
    return true;
  });
  PostedOf first([&] {
    Trail += '1';
    Loop.SettleLater(answers);
    Loop.SettleLater(answers);
    Trail += '1';
  });
  PostedOf second([this] { Trail += '2'; });
  Loop.Post(first);
  Loop.Post(second);
  EXPECT_EQ(OnePass(), "11e2");
}

TEST_F(EpollLoopTest, AsksAgainAtTheNextPointWhileSomethingIsLeftToSettle) {
  int rounds = 0;
  UnsettledOf answers([&](SettlePoint) {
    Trail += 's';
    return ++rounds == 2;
  });
  PostedOf first([&] {
    Trail += '1';
    Loop.SettleLater(answers);
  });
  PostedOf second([this] { Trail += '2'; });
  PostedOf third([this] { Trail += '3'; });
  Loop.Post(first);
  Loop.Post(second);
  Loop.Post(third);
  EXPECT_EQ(OnePass(), "1s2s3");
}

TEST_F(EpollLoopTest, RunsUntilItIsToldToQuit) {
  int ticks = 0;
  LoopTimer timer(Loop, [&] {
    if (++ticks == 3) Loop.Quit();
  });
  timer.Start(1, LoopTimer::Repeat::Yes);
  Loop.Run();
  EXPECT_EQ(ticks, 3);
  EXPECT_TRUE(Loop.IsQuitting());
}

TEST_F(EpollLoopTest, DoesNotWaitWhileSomethingIsPosted) {
  int rounds = 0;
  std::optional<PostedOf> event;
  event.emplace([&] {
    if (++rounds == 3) return Loop.Quit();
    Loop.Post(*event);
  });
  Loop.Post(*event);
  Loop.Run();
  EXPECT_EQ(rounds, 3);
}

TEST_F(EpollLoopTest, HandsOutNothingMoreOnceItQuits) {
  PostedOf posted([this] { Trail += 'p'; });
  Bell bell;
  HandlerOf socket([this](Readiness) { Trail += 's'; });
  LoopTimer quitter(Loop, [this] {
    Trail += 'q';
    Loop.Quit();
  });
  LoopTimer other(Loop, [this] { Trail += 't'; });
  Loop.Post(posted);
  bell.Ring();
  Loop.Watch(bell.Handle(), {.Read = true}, socket);
  quitter.Start(0, LoopTimer::Repeat::No);
  other.Start(1000000, LoopTimer::Repeat::No);
  EXPECT_EQ(OnePass(), "q");
  EXPECT_EQ(OnePass(), "");
  Loop.Run();
  EXPECT_EQ(Trail, "");
}

TEST_F(EpollLoopTest, HandsAFailureAtTheTopOfAnEventToOnFatal) {
  Loop.OnFatal = [](const RuntimeError &error) { throw FatalReached{error.Number()}; };
  PostedOf failing([] { throw RuntimeError(9); });
  Loop.Post(failing);
  int number = 0;
  try {
    Loop.RunOnePass();
  } catch (const FatalReached &fatal) {
    number = fatal.Number;
  }
  EXPECT_EQ(number, 9);
}

TEST(EpollLoopDeathTest, EndsTheProcessWhenOnFatalComesBack) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EpollLoop loop;
  EXPECT_EXIT(loop.Dispatch([] { throw RuntimeError(9); }), testing::KilledBySignal(SIGABRT), "");
  loop.OnFatal = [](const RuntimeError &) {};
  EXPECT_EXIT(loop.Dispatch([] { throw RuntimeError(9); }), testing::KilledBySignal(SIGABRT), "");
}

}  // namespace
}  // namespace cvl
