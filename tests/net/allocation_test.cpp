// The road from a datagram to its answer takes no memory from the heap.

#include <cstdlib>
#include <new>

#include "tests/net/live_test.h"

namespace {

bool Counting = false;
int Allocations = 0;

void *Allocate(std::size_t size) {
  if (Counting) ++Allocations;
  void *memory = std::malloc(size > 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

// The array forms and those without exceptions end in this one.
void *operator new(std::size_t size) {
  return Allocate(size);
}
void operator delete(void *memory) noexcept {
  std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept {
  std::free(memory);
}

namespace cvl {
namespace {

class Allocation : public LiveTest {
 protected:
  Allocation() {
    Socket.OnDataArrival = [this](std::int32_t) {
      std::array<std::uint8_t, 48> bytes;
      const std::size_t length = Socket.GetData(bytes);
      Socket.SetRemoteHost(Socket.RemoteHostIP());
      // Both roads by turns: by itself, and together with others.
      if (Answered % 2 == 0) {
        Socket.SendData({bytes.data(), length});
      } else {
        Socket.SendAnswer({bytes.data(), length});
      }
      ++Answered;
    };
    Socket.Bind();
  }

  /// Has REQUESTS answered and returns how many allocations that took.
  int CountAnswering(std::vector<UdpPeer> &clients) {
    const int expected = Answered + static_cast<int>(clients.size());
    for (UdpPeer &client : clients) {
      client.Send({Loopback, static_cast<std::uint16_t>(Socket.LocalPort())}, Request);
    }
    Allocations = 0;
    while (Answered < expected && IsReady()) {
      Counting = true;
      Loop.RunOnePass();
      Counting = false;
    }
    EXPECT_EQ(Answered, expected);
    return Allocations;
  }

  const std::string Request = std::string(48, 'x');
  UdpSocket Socket{Layer};
  int Answered = 0;
};

TEST_F(Allocation, IsCounted) {
  Allocations = 0;
  Counting = true;
  const std::vector<std::string> one(1, Request);
  Counting = false;
  EXPECT_EQ(one.size(), 1U);
  EXPECT_GT(Allocations, 0);
}

TEST_F(Allocation, IsNotNeededFromADatagramToItsAnswer) {
  // The longest text of an address, and others, so that none is in place from before.
  std::vector<UdpPeer> clients;
  clients.emplace_back(0x7FFFFFFE);  // 127.255.255.254
  CountAnswering(clients);
  EXPECT_EQ(CountAnswering(clients), 0);
  clients.emplace_back(Loopback);
  clients.emplace_back(SecondLoopback);
  clients.emplace_back(0x7FFEFEFE);
  EXPECT_EQ(CountAnswering(clients), 0);
  for (UdpPeer &client : clients) {
    ASSERT_TRUE(Until([&] { return client.Read().has_value(); }));
  }
}

}  // namespace
}  // namespace cvl
