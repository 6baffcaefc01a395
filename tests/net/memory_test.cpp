// Connections and lookups when memory runs out.

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

#include "platform/linux/linux_resolver.h"
#include "tests/net/live_test.h"

namespace {

constexpr int Never = std::numeric_limits<int>::max();

// How many allocations of this thread still succeed, and how large those that fail are at
// least.
thread_local int SucceedBefore = Never;
thread_local bool IsOneFailure = false;
thread_local std::size_t SmallestFailing = 0;
thread_local int Failed = 0;

thread_local bool IsTestThread = false;
std::atomic<bool> OthersFail = false;

void *Allocate(std::size_t size) {
  if (!IsTestThread && OthersFail) return nullptr;
  if (size >= SmallestFailing && SucceedBefore != Never && SucceedBefore-- <= 0) {
    ++Failed;
    SucceedBefore = IsOneFailure ? Never : 0;
    return nullptr;
  }
  return std::malloc(size > 0 ? size : 1);
}

}  // namespace

// The array forms end in these.
void *operator new(std::size_t size) {
  void *memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
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

using Stream = TcpPeer::Stream;

class Memory : public LiveTest {
 protected:
  Memory() : Port(Service.Listen()) {
    IsTestThread = true;
    Service.OnAccepted = [this](std::int16_t slot) {
      Service.Slots[slot].SendText(std::string(100, 'x'));
    };
  }
  ~Memory() override { Allow(); }

  void Allow() {
    OthersFail = false;
    SucceedBefore = Never;
    SmallestFailing = 0;
  }

  /// One connection, with the AT-th allocation from its beginning failing. Returns whether
  /// one failed.
  bool ConnectWithFailureAt(int at) {
    TcpPeer client(Port);
    Failed = 0;
    IsOneFailure = true;
    SucceedBefore = at;
    Loop.RunOnePass();
    Allow();
    EXPECT_TRUE(Until([&] { return client.Read() != Stream::Open || !client.Received.empty(); }));
    if (client.Read() == Stream::Open) {
      EXPECT_EQ(client.Received, std::string(100, 'x')) << at;
    }
    client.Reset();
    EXPECT_TRUE(Until([&] { return IsAtRest(); })) << at;
    CloseSlots();
    return Failed > 0;
  }

  /// Whether no slot has a connection.
  bool IsAtRest() {
    for (std::int16_t slot = 1; slot <= Service.Slots.Highest(); ++slot) {
      if (Service.Slots[slot].State() == SocketState::Connected) return false;
    }
    return true;
  }

  void CloseSlots() {
    for (std::int16_t slot = 1; slot <= Service.Slots.Highest(); ++slot) {
      Service.Slots[slot].Close();
    }
  }

  RecordingService Service{Layer};
  std::int32_t Port;
};

TEST_F(Memory, OneAllocationThatFailsWhileAConnectionIsTakenDropsItAtMost) {
  const int open = OpenDescriptors();
  int at = 0;
  while (ConnectWithFailureAt(at)) {
    ++at;
  }
  EXPECT_GE(at, 3);  // the request, the slot, the answer
  EXPECT_TRUE(Until([&] { return Layer.Lingering.Count() == 0; }));
  EXPECT_EQ(OpenDescriptors(), open);
}

TEST_F(Memory, WithoutAnyAConnectionIsDroppedAndLaterOnesWork) {
  TcpPeer client(Port);
  IsOneFailure = false;
  SucceedBefore = 0;
  for (int passes = 0; passes < 100 && IsReady(); ++passes) {
    Loop.RunOnePass();
  }
  Allow();
  EXPECT_TRUE(Until([&] { return client.Read() != Stream::Open; }));
  EXPECT_TRUE(Service.Log.empty());
  TcpPeer later(Port);
  EXPECT_TRUE(Until([&] { return later.Read() == Stream::Open && !later.Received.empty(); }));
}

TEST_F(Memory, ConnectionsLeaveSomeToTheRestOfTheProgram) {
  TcpPeer client(Port);
  IsOneFailure = false;
  SmallestFailing = SocketLayer::MemoryKeptBack;
  SucceedBefore = 0;
  EXPECT_TRUE(Until([&] { return client.Read() != Stream::Open; }));
  EXPECT_TRUE(Service.Log.empty());
  EXPECT_GT(Failed, 0);
  SmallestFailing = SocketLayer::MemoryKeptBack + 1;
  TcpPeer later(Port);
  EXPECT_TRUE(Until([&] { return !Service.Log.empty(); }));
}

TEST_F(Memory, AClosingConnectionThatItIsShortForIsClosedAtOnce) {
  TcpPeer client(Port);
  ASSERT_TRUE(Until([&] { return Service.Count("accepted 1") == 1; }));
  IsOneFailure = false;
  SucceedBefore = 0;
  Service.Slots[1].Close();
  Allow();
  EXPECT_EQ(Layer.Lingering.Count(), 0U);
  EXPECT_TRUE(Until([&] { return client.Read() == Stream::Ended; }));
  EXPECT_EQ(client.Received, std::string(100, 'x'));
}

TEST_F(Memory, ASocketThatItIsShortForStaysClosed) {
  UdpSocket datagrams(Layer);
  RecordingService other(Layer);
  IsOneFailure = false;
  SucceedBefore = 0;
  const int failure = Trap([&] { datagrams.Bind(); }).Number;
  Allow();
  EXPECT_EQ(failure, error_number::OutOfMemory);
  EXPECT_EQ(datagrams.State(), SocketState::Closed);
  datagrams.Bind();
  EXPECT_EQ(datagrams.State(), SocketState::Open);
}

class MemoryOfLookups : public Memory {
 protected:
  /// A lookup that ends at once, without asking anybody. False when it could not begin.
  bool LookUp() {
    return !Trap([this] {
      Lookups.LookUp(NoName, [this](std::optional<Ipv4Address> address) {
        EXPECT_FALSE(address);
        ++Answers;
      });
    });
  }

  const std::string NoName = std::string("no\0name", 7);
  LinuxResolver Lookups{Loop};
  int Answers = 0;
};

TEST_F(MemoryOfLookups, OneAllocationThatFailsLeavesNoLookupWithoutAnAnswer) {
  int expected = 0;
  bool has_failed = true;
  for (int at = 0; has_failed; ++at) {
    Failed = 0;
    IsOneFailure = true;
    SucceedBefore = at;
    if (LookUp()) ++expected;
    has_failed = Failed > 0;
    Allow();
    ASSERT_TRUE(Until([&] { return Answers == expected; })) << at;
    // The next of the same name neither waits for one that never began.
    ASSERT_TRUE(LookUp()) << at;
    ++expected;
    ASSERT_TRUE(Until([&] { return Answers == expected; })) << at;
  }
}

TEST_F(MemoryOfLookups, AThreadThatItIsShortForHasNoAnswer) {
  OthersFail = true;
  ASSERT_TRUE(LookUp());
  EXPECT_TRUE(Until([&] { return Answers == 1; }));
}

}  // namespace
}  // namespace cvl
