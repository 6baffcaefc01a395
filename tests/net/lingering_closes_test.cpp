#include "net/lingering_closes.h"

#include <algorithm>

#include "tests/net/fake_net_test.h"

namespace cvl {
namespace {

using Operation = FakeNetwork::Operation;

class LingeringClosesTest : public FakeNetTest {
 protected:
  LingeringClosesTest() {
    Listener = Net.OpenStream(37, Rebind::Yes).Socket;
    EXPECT_EQ(Net.Listen(Listener), 0);
  }

  /// A connection that has been accepted and that nobody watches.
  FakeConnection &Connected() {
    FakeConnection &peer = Net.Dial(37, Alice);
    EXPECT_EQ(Net.Accept(Listener).Socket, peer.Handle());
    return peer;
  }

  void Close(FakeConnection &peer, std::string_view unsent = {}) {
    Closes.Add(peer.Handle(), BytesOf(unsent));
  }

  SocketHandle Listener = SocketHandle::None;
  LingeringCloses Closes{Loop, Net};
};

TEST_F(LingeringClosesTest, EndsOurStreamAtOnceAndWaitsForThePeers) {
  FakeConnection &peer = Connected();
  Close(peer);
  EXPECT_TRUE(peer.HasEnded);
  Loop.Advance(LingeringCloses::LookMs);
  EXPECT_FALSE(peer.IsClosed);
  peer.End();
  Loop.Drain();
  EXPECT_TRUE(peer.IsClosed);
  EXPECT_EQ(Closes.Count(), 0U);
}

TEST_F(LingeringClosesTest, APeerThatEndsAtOnceIsNeverWatched) {
  FakeConnection &peer = Connected();
  Loop.Calls.clear();
  Close(peer);
  peer.End();
  Loop.Advance(LingeringCloses::LookMs);
  EXPECT_TRUE(peer.IsClosed);
  EXPECT_EQ(Closes.Count(), 0U);
  EXPECT_TRUE(Loop.Calls.empty());
}

TEST_F(LingeringClosesTest, EachIsLookedAtInItsTime) {
  FakeConnection &early = Connected();
  Close(early);
  Loop.Advance(LingeringCloses::LookMs);
  early.End();
  Loop.Drain();
  FakeConnection &late = Connected();
  Close(late);
  late.End();
  Loop.Advance(LingeringCloses::LookMs);
  EXPECT_TRUE(early.IsClosed);
  EXPECT_TRUE(late.IsClosed);
}

TEST_F(LingeringClosesTest, SendsTheRestFirst) {
  FakeConnection &peer = Connected();
  peer.LeaveRoom(3);
  Close(peer, "answer");
  Loop.Drain();
  EXPECT_EQ(TextOf(peer.Received), "ans");
  EXPECT_FALSE(peer.HasEnded);
  peer.LeaveRoom(100);
  Loop.Drain();
  EXPECT_EQ(TextOf(peer.Received), "answer");
  EXPECT_TRUE(peer.HasEnded);
  EXPECT_FALSE(peer.IsClosed);
}

TEST_F(LingeringClosesTest, SendsTheRestToAPeerThatHasEndedItsStream) {
  FakeConnection &peer = Connected();
  peer.LeaveRoom(3);
  peer.End();
  Close(peer, "answer");
  Loop.Drain();
  EXPECT_FALSE(peer.IsClosed);
  peer.LeaveRoom(100);
  Loop.Drain();
  EXPECT_EQ(TextOf(peer.Received), "answer");
  EXPECT_TRUE(peer.IsClosed);
  EXPECT_FALSE(peer.WasReset);
}

TEST_F(LingeringClosesTest, ReadsInputThatNobodyWantedSoThatNothingIsReset) {
  FakeConnection &peer = Connected();
  peer.Send(std::string(100000, 'x'));
  Close(peer, "answer");
  Loop.Drain();
  peer.Send("and more");
  peer.End();
  Loop.Advance(LingeringCloses::LookMs);
  Loop.Drain();
  EXPECT_TRUE(peer.IsClosed);
  EXPECT_FALSE(peer.WasReset);
}

TEST_F(LingeringClosesTest, ReadsWhatLiesBeforeAnEndThatHasComeAlready) {
  FakeConnection &peer = Connected();
  peer.Send(std::string(100000, 'x'));
  peer.End();
  Close(peer, "answer");
  Loop.Advance(LingeringCloses::LookMs);
  Loop.Drain();
  EXPECT_TRUE(peer.IsClosed);
  EXPECT_FALSE(peer.WasReset);
  EXPECT_EQ(TextOf(peer.Received), "answer");
}

TEST_F(LingeringClosesTest, EndsAfterTwoSecondsWhateverThePeerDoes) {
  FakeConnection &silent = Connected();
  FakeConnection &chatty = Connected();
  FakeConnection &deaf = Connected();
  deaf.LeaveRoom(0);
  Close(silent);
  Close(chatty);
  Close(deaf, "answer");
  for (int count = 0; count < 199; ++count) {
    chatty.Send("more");
    Loop.Advance(10);
  }
  Loop.Advance(9);
  EXPECT_EQ(Closes.Count(), 3U);
  Loop.Advance(1);
  EXPECT_EQ(Closes.Count(), 0U);
  EXPECT_TRUE(silent.IsClosed);
  EXPECT_TRUE(chatty.IsClosed);
  EXPECT_FALSE(chatty.WasReset);
  EXPECT_TRUE(deaf.IsClosed);
}

TEST_F(LingeringClosesTest, EachHasItsOwnTwoSeconds) {
  FakeConnection &early = Connected();
  FakeConnection &late = Connected();
  Close(early);
  Loop.Advance(700);
  Close(late);
  Loop.Advance(1300);
  EXPECT_TRUE(early.IsClosed);
  EXPECT_FALSE(late.IsClosed);
  Loop.Advance(699);
  EXPECT_FALSE(late.IsClosed);
  Loop.Advance(1);
  EXPECT_TRUE(late.IsClosed);
}

TEST_F(LingeringClosesTest, OneThatBeginsLateInAnothersTimeHasItsTwoSecondsToo) {
  FakeConnection &early = Connected();
  Close(early);
  early.End();
  Loop.Advance(1900);
  FakeConnection &late = Connected();
  Close(late);
  Loop.Advance(1999);
  EXPECT_FALSE(late.IsClosed);
  Loop.Advance(1);
  EXPECT_TRUE(late.IsClosed);
}

TEST_F(LingeringClosesTest, BeyondThe1024thConnectionsAreClosedAtOnce) {
  std::vector<FakeConnection *> peers;
  for (int count = 0; count < 1024; ++count) {
    peers.push_back(&Connected());
    Close(*peers.back());
  }
  EXPECT_EQ(Closes.Count(), 1024U);
  FakeConnection &beyond = Connected();
  Close(beyond);
  EXPECT_TRUE(beyond.IsClosed);
  EXPECT_EQ(Closes.Count(), 1024U);
  EXPECT_FALSE(peers.front()->IsClosed);

  peers[500]->End();
  Loop.Drain();
  FakeConnection &next = Connected();
  Close(next);
  EXPECT_FALSE(next.IsClosed);
  EXPECT_EQ(Closes.Count(), 1024U);
}

TEST_F(LingeringClosesTest, WithoutRoomThoseWhosePeersHaveEndedGiveWayAtOnce) {
  FakeConnection *last = nullptr;
  while (Closes.Count() < LingeringCloses::MostLingering) {
    last = &Connected();
    Close(*last);
  }
  last->End();
  FakeConnection &next = Connected();
  Close(next);
  EXPECT_TRUE(last->IsClosed);
  EXPECT_FALSE(next.IsClosed);
}

TEST_F(LingeringClosesTest, InAFloodTheOldestAreLookedAtAFewAtATime) {
  std::vector<FakeConnection *> peers;
  const auto add = [&] {
    peers.push_back(&Connected());
    Close(*peers.back());
    peers.back()->End();
  };
  const auto closed = [&] {
    return std::count_if(peers.begin(), peers.end(),
                         [](const FakeConnection *peer) { return peer->IsClosed; });
  };
  while (Closes.Count() < LingeringCloses::MostUnseen) {
    add();
  }
  EXPECT_EQ(closed(), 0);
  for (int more = 0; more < 100; ++more) {
    const auto before = closed();
    add();
    EXPECT_LE(closed() - before, static_cast<std::ptrdiff_t>(LingeringCloses::LooksInARow));
    EXPECT_LE(Closes.Count(), LingeringCloses::MostUnseen);
  }
  EXPECT_TRUE(peers.front()->IsClosed);
  EXPECT_FALSE(peers.back()->IsClosed);

  Loop.Advance(LingeringCloses::LookMs);
  EXPECT_EQ(Closes.Count(), 0U);
}

TEST_F(LingeringClosesTest, ConnectionsThatBreakAtTheirEndBringNobodyHisTurn) {
  FakeConnection &waits = Connected();
  Loop.Calls.clear();
  Close(waits);
  for (std::size_t count = 0; count < 2 * LingeringCloses::MostUnseen; ++count) {
    FakeConnection &broken = Connected();
    broken.Break();
    Close(broken, "answer");
  }
  Close(Connected());
  EXPECT_EQ(Closes.Count(), 2U);
  EXPECT_TRUE(Loop.Calls.empty());  // neither is watched yet
}

TEST_F(LingeringClosesTest, ABrokenConnectionIsGivenUp) {
  FakeConnection &before = Connected();
  before.Break();
  Close(before, "answer");
  EXPECT_TRUE(before.IsClosed);

  FakeConnection &later = Connected();
  Close(later, "answer");
  Loop.Advance(LingeringCloses::LookMs);
  EXPECT_FALSE(later.IsClosed);
  later.Break();
  Loop.Drain();
  EXPECT_TRUE(later.IsClosed);
}

TEST_F(LingeringClosesTest, AConnectionThatBreaksWhileTheRestWaitsIsGivenUp) {
  FakeConnection &peer = Connected();
  peer.LeaveRoom(0);
  Close(peer, "answer");
  Loop.Drain();
  EXPECT_FALSE(peer.IsClosed);
  peer.Break();
  Loop.Drain();
  EXPECT_TRUE(peer.IsClosed);
}

TEST_F(LingeringClosesTest, GivesAllDescriptorsBackAtItsEnd) {
  FakeConnection &peer = Connected();
  {
    LingeringCloses closes(Loop, Net);
    closes.Add(peer.Handle(), {});
    Loop.Advance(LingeringCloses::LookMs);
    EXPECT_TRUE(Loop.IsWatched(peer.Handle()));
  }
  EXPECT_TRUE(peer.IsClosed);
  EXPECT_FALSE(Loop.IsWatched(peer.Handle()));
}

TEST_F(LingeringClosesTest, AConnectionThatTheLoopRefusesToWatchIsClosedAtOnce) {
  Loop.RefusesWatches = error_number::NoBuffers;
  FakeConnection &open = Connected();
  Close(open, "");
  EXPECT_TRUE(open.HasEnded);
  Loop.Advance(LingeringCloses::LookMs);
  EXPECT_TRUE(open.IsClosed);

  FakeConnection &unsent = Connected();
  unsent.LeaveRoom(0);
  Close(unsent, "answer");
  EXPECT_TRUE(unsent.IsClosed);
}

}  // namespace
}  // namespace cvl
