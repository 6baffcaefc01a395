// Ports below 1024 on the kernel, in a network of the test's own where they are free to take.

#include "tests/net/live_test.h"
#include "tests/support/net_namespace.h"

namespace cvl {
namespace {

/// A socket that counts what it sees, with its own loop: it is made inside the namespace.
class Counter : public LiveTest {
 public:
  Counter() {
    Socket.OnDataArrival = [this](std::int32_t) { ++Seen; };
  }

  void Open(std::int16_t port) {
    Socket.SetLocalPort(port);
    Socket.Bind();
  }

  /// How many of that many datagrams are seen, counted within one second from the first.
  int SeenOf(int datagrams, UdpPeer &sender) {
    for (;;) {
      const std::int64_t began = Loop.MonotonicMs();
      Seen = 0;
      for (int count = 0; count < datagrams; ++count) {
        sender.Send({Loopback, static_cast<std::uint16_t>(Socket.LocalPort())}, "hello");
      }
      EXPECT_TRUE(ComesToRest());
      // On a machine that stood still meanwhile, a new second has begun for the guard.
      if (Loop.MonotonicMs() - began < 1000) return Seen;
    }
  }

  int Seen = 0;

 private:
  void TestBody() override {}

  UdpSocket Socket{Layer};
};

TEST(LiveLowPorts, AnotherTimeServerGetsFiftyDatagramsThroughAndAClientAll) {
  ExpectInNetworkNamespace([] {
    Counter counter;
    counter.Open(123);
    UdpPeer server(Loopback, 37);
    UdpPeer client(Loopback, 1024);
    EXPECT_EQ(counter.SeenOf(51, server), 50);
    EXPECT_EQ(counter.SeenOf(100, client), 100);
  });
}

}  // namespace
}  // namespace cvl
