// The loop guard on a socket; the guard by itself is in loop_guard_test.cpp.

#include "tests/net/udp_socket_test.h"

namespace cvl {
namespace {

class UdpSocketLoopGuard : public UdpSocketTest {
 protected:
  /// How many of that many datagrams are seen.
  std::size_t SeenOf(int datagrams, Endpoint sender, std::uint16_t port) {
    Sizes.clear();
    for (int count = 0; count < datagrams; ++count) {
      Net.Arrive(port, sender, "hello");
    }
    Loop.Drain();
    return Sizes.size();
  }
};

TEST_F(UdpSocketLoopGuard, OfALowPortFiftyInASecondGetThrough) {
  Bind(3777);
  const Endpoint server = At("10.0.0.1", 123);
  EXPECT_EQ(SeenOf(50, server, 3777), 50U);
  EXPECT_EQ(SeenOf(1, server, 3777), 0U);
  Loop.Advance(1000);
  EXPECT_EQ(SeenOf(51, server, 3777), 50U);
}

TEST_F(UdpSocketLoopGuard, OfTheSocketsOwnNumberFiftyInASecondGetThrough) {
  Bind(3777);
  EXPECT_EQ(SeenOf(51, At("10.0.0.1", 3777), 3777), 50U);
  EXPECT_EQ(SeenOf(51, At("10.0.0.1", 3778), 3777), 51U);
}

TEST_F(UdpSocketLoopGuard, OtherPortsAreNeverLimited) {
  Bind(123);
  EXPECT_EQ(SeenOf(51, At("10.0.0.1", 1023), 123), 50U);
  EXPECT_EQ(SeenOf(5000, At("10.0.0.1", 1024), 123), 5000U);
}

TEST_F(UdpSocketLoopGuard, EachSocketCountsForItself) {
  Bind(123);
  UdpSocket other(Layer);
  int seen = 0;
  other.OnDataArrival = [&](std::int32_t) { ++seen; };
  other.SetLocalPort(37);
  other.Bind();
  EXPECT_EQ(SeenOf(51, At("10.0.0.1", 123), 123), 50U);
  Net.Arrive(37, At("10.0.0.1", 123), "hello");
  Loop.Drain();
  EXPECT_EQ(seen, 1);
}

TEST_F(UdpSocketLoopGuard, WhatIsDroppedIsDroppedUnseen) {
  Bind(123);
  const Endpoint server = At("10.0.0.1", 123);
  EXPECT_EQ(SeenOf(50, server, 123), 50U);
  Net.Arrive(123, Bob, "hello");
  Loop.Drain();
  EXPECT_EQ(SeenOf(1, server, 123), 0U);
  EXPECT_EQ(Socket.RemoteHostIP(), "10.0.0.2");
  EXPECT_EQ(Socket.RemotePort(), Bob.Port);
}

TEST_F(UdpSocketLoopGuard, AnAwaitedReplyGetsThroughAndIsNotCounted) {
  Bind(123);
  Socket.IsAwaitedReply = [](std::span<const std::uint8_t> datagram) {
    return TextOf(datagram) == "reply";
  };
  const Endpoint upstream = At("10.0.0.1", 123);
  for (int count = 0; count < 60; ++count) {
    Net.Arrive(123, upstream, "reply");
  }
  EXPECT_EQ(SeenOf(51, upstream, 123), 60U + 50U);
  Net.Arrive(123, upstream, "reply");
  Loop.Drain();
  EXPECT_EQ(Texts.back(), "reply");
}

TEST_F(UdpSocketLoopGuard, WhatIsAwaitedIsAskedOnlyAboutSuspiciousPorts) {
  Bind(123);
  int asked = 0;
  Socket.IsAwaitedReply = [&](std::span<const std::uint8_t>) {
    ++asked;
    return false;
  };
  EXPECT_EQ(SeenOf(60, At("10.0.0.1", 4000), 123), 60U);
  EXPECT_EQ(asked, 0);
  EXPECT_EQ(SeenOf(60, At("10.0.0.1", 123), 123), 50U);
  EXPECT_EQ(asked, 60);
}

}  // namespace
}  // namespace cvl
