// Passes of the loop inside the handlers of sockets.

#include "net/udp_socket.h"
#include "tests/net/fake_net_test.h"
#include "tests/net/recording_service.h"

namespace cvl {
namespace {

class Passes : public FakeNetTest {
 protected:
  Passes() {
    Service.Listen(37);
    Datagrams.SetLocalPort(37);
    Datagrams.Bind();
  }

  void Dial(int clients) {
    for (int count = 0; count < clients; ++count) {
      Net.Dial(37, At("10.0.0.7", static_cast<std::uint16_t>(40000 + count)));
    }
  }

  RecordingService Service{Layer};
  UdpSocket Datagrams{Layer};
};

TEST_F(Passes, APassInsideAHandlerHandlesWhatIsPending) {
  std::vector<std::string> story;
  Service.OnAccepted = [&](std::int16_t) {
    Loop.RunOnePass();
    story.push_back("accepted");
  };
  Datagrams.OnDataArrival = [&](std::int32_t) { story.push_back("datagram"); };
  Dial(1);
  Net.Arrive(37, Alice, "hello");
  Loop.Drain();
  EXPECT_EQ(story, (std::vector<std::string>{"datagram", "accepted"}));
}

TEST_F(Passes, NestAtMostEightDeepAndDeeperOnesReturn) {
  int depth = 0;
  int deepest = 0;
  Service.OnAccepted = [&](std::int16_t) {
    deepest = std::max(deepest, ++depth);
    Loop.RunOnePass();
    --depth;
  };
  Dial(50);
  Loop.Drain();
  // The handler of the outermost pass, and one in each pass inside.
  EXPECT_EQ(deepest, 1 + EventLoop::MostNested);
  EXPECT_EQ(Service.Log.size(), 50U);
  EXPECT_EQ(depth, 0);
}

TEST_F(Passes, AConnectionThatItsHandlerClosesBehindAPassIsNotWatchedByTheEventsOfThatPass) {
  Service.OnAccepted = [&](std::int16_t slot) {
    Loop.RunOnePass();
    EXPECT_FALSE(Loop.IsWatched(Net.Connections[static_cast<std::size_t>(slot - 1)].Handle()));
  };
  Dial(3);
  Loop.Drain();
  EXPECT_EQ(Service.Log.size(), 3U);
  for (const FakeConnection &client : Net.Connections) {
    EXPECT_TRUE(Loop.IsWatched(client.Handle()));
  }
}

TEST_F(Passes, AListenerAsksNoMoreWhereAPassInsideTheHandlerHasAskedAlready) {
  Service.OnAccepted = [&](std::int16_t) { Loop.RunOnePass(); };
  Dial(2);
  Loop.Drain();
  EXPECT_EQ(Service.Log.size(), 2U);
  EXPECT_EQ(Net.Accepts, 2);
}

TEST_F(Passes, ThatAreTooDeepStillFlushWhatWasSent) {
  int depth = 0;
  bool was_flushed_in_the_deepest = false;
  Service.OnAccepted = [&](std::int16_t slot) {
    ++depth;
    Service.Slots[slot].SendText("answer");
    Loop.RunOnePass();
    const FakeConnection &client = Net.Connections[static_cast<std::size_t>(slot - 1)];
    if (depth == 1 + EventLoop::MostNested) {
      was_flushed_in_the_deepest = TextOf(client.Received) == "answer";
    }
    --depth;
  };
  Dial(9);
  Loop.Drain();
  EXPECT_TRUE(was_flushed_in_the_deepest);
}

TEST_F(Passes, AFailureInsideANestedPassEndsTheProcessAndNeverReachesWhoAskedForThePass) {
  bool reached_the_asker = false;
  Service.OnAccepted = [&](std::int16_t) {
    const Failure failure = Trap([&] { Loop.RunOnePass(); });
    reached_the_asker = static_cast<bool>(failure);
  };
  Datagrams.OnDataArrival = [](std::int32_t) { throw RuntimeError(error_number::Overflow); };
  Dial(1);
  Net.Arrive(37, Alice, "hello");
  ExpectProcessEnds(error_number::Overflow, [&] { Loop.Drain(); });
  EXPECT_FALSE(reached_the_asker);
}

TEST_F(Passes, AFailureThatItsHandlerCatchesEndsNothing) {
  Datagrams.OnDataArrival = [](std::int32_t) {
    static_cast<void>(Trap([] { throw RuntimeError(error_number::Overflow); }));
  };
  Net.Arrive(37, Alice, "hello");
  Loop.Drain();
  EXPECT_FALSE(Loop.IsQuitting());
}

TEST_F(Passes, AnUnloadInsideANestedPassStopsTimersAndSocketsAtOnce) {
  int ticks = 0;
  LoopTimer timer(Loop, [&] { ++ticks; });
  timer.Start(10, LoopTimer::Repeat::Yes);
  int datagrams = 0;
  Datagrams.OnDataArrival = [&](std::int32_t) {
    ++datagrams;
    Dial(2);
    Loop.RunOnePass();
  };
  Service.OnAccepted = [&](std::int16_t) { Loop.Quit(); };
  Net.Arrive(37, Alice, "one");
  Net.Arrive(37, Alice, "two");
  Loop.Advance(10);
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(datagrams, 1);
  EXPECT_EQ(Service.Log, std::vector<std::string>{"accepted 1"});
  Loop.Advance(1000);
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(datagrams, 1);
}

TEST_F(Passes, AHandlerThatWaitsForTheEndOfItsSlotGetsThere) {
  // The way in which several routines close: a pass, a close, until the state is closed.
  Service.OnClose = [&](std::int16_t slot) {
    while (Service.Slots[slot].State() != SocketState::Closed) {
      Loop.RunOnePass();
      Service.Slots[slot].Close();
    }
  };
  Dial(1);
  Loop.Drain();
  Net.Connections[0].End();
  Loop.Drain();
  EXPECT_EQ(Service.Slots[1].State(), SocketState::Closed);
  EXPECT_EQ(Service.Count("close 1"), 1);
}

}  // namespace
}  // namespace cvl
