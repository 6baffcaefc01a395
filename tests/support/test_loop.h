// An event loop without a kernel, on which time stands still until a test moves it.
//
//   TestLoop loop;
//   FakeNetwork network(loop);   // marks its sockets ready on the loop
//   ...
//   loop.Drain();                // runs passes until nothing is left to be done
//   loop.Advance(2000);          // lets two seconds pass, firing timers at their moments
//
// A failure that reaches the top of an event comes out of the loop as ProcessEnded:
//
//   ExpectProcessEnds(6, [&] { loop.Drain(); });

#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <exception>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/event_loop.h"

namespace cvl {

/// The process would have ended with this failure. No RuntimeError, so that no trap of the
/// program catches it on its way to the test.
class ProcessEnded : public std::exception {
 public:
  explicit ProcessEnded(const RuntimeError &error)
      : Number(error.Number()), Text_("the process ended with failure " + std::to_string(Number)) {}

  const char *what() const noexcept override { return Text_.c_str(); }

  const int Number;

 private:
  std::string Text_;
};

/// Runs WORK and expects it to end the process with failure NUMBER.
template <class Work>
void ExpectProcessEnds(int number, Work &&work, const char *file = __builtin_FILE(),
                       int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "ExpectProcessEnds");
  try {
    std::forward<Work>(work)();
  } catch (const ProcessEnded &ended) {
    EXPECT_EQ(ended.Number, number);
    return;
  }
  ADD_FAILURE() << "expected the process to end with " << number << ", but it goes on";
}

class TestLoop final : public EventLoop {
 public:
  /// Its OnFatal throws ProcessEnded.
  TestLoop();

  /// Lets a span pass. Each timer that falls due meanwhile fires at its own moment, in a
  /// pass of its own, and at the end one more pass runs.
  void Advance(std::int64_t milliseconds);

  /// Runs passes until nothing is ready and nothing posted. Time doesn't move. A loop that
  /// doesn't come to rest, one that would spin, turns the test red.
  void Drain();

  /// Where time stands, in the milliseconds of MonotonicMs.
  std::int64_t NowMs() const { return NowMs_; }

  // What a fake of the system says.

  /// What holds on a socket from now on. It is handed out in each pass, as far as it is
  /// watched for, until it holds no more.
  void SetReady(SocketHandle socket, Readiness readiness);

  /// A socket has been closed. One that is still watched turns the test red, and so does
  /// watching it later on.
  void Forget(SocketHandle socket);

  /// The failure that each new watch raises from now on; 0 for none.
  int RefusesWatches = 0;

  /// What another loop is told to watch in place of this one.
  SocketHandle Wakes = SocketHandle::None;

  // What the program did.

  struct WatchCall {
    enum class Kind { Watch, Unwatch } What;
    SocketHandle Socket;
    Readiness Interest;  ///< of a Watch
  };

  /// Every Watch and Unwatch, in order.
  std::vector<WatchCall> Calls;
  /// How many socket events were handed out.
  int EventsHandedOut = 0;
  /// How often another loop would have been woken for this one.
  int Kicks = 0;

  bool IsWatched(SocketHandle socket) const { return Watches_.contains(socket); }
  std::size_t WatchCount() const { return Watches_.size(); }

  // EventLoop.

  void Watch(SocketHandle socket, Readiness interest, ReadyHandler &handler) override;
  void Unwatch(SocketHandle socket) override;
  SocketHandle Descriptor() const override { return Wakes; }
  std::int64_t MonotonicMs() override { return NowMs_; }

 protected:
  /// Hands out by rising handles. Run with nothing to wait for throws std::logic_error,
  /// for time stands still and nothing would ever come.
  void HandOut(Waiting waiting) override;
  void ArmTimer(std::int64_t due_ms) override { DueMs_ = due_ms; }
  void Kick() override { ++Kicks; }

 private:
  struct Watched {
    Readiness Interest;
    ReadyHandler *Handler = nullptr;
    int Generation = 0;  // tells an event of a former watch from one of this
  };
  struct Event {
    SocketHandle Socket;
    Readiness What;
    int Generation;
  };

  std::vector<Event> Pending() const;

  std::int64_t NowMs_ = 1000000;
  std::int64_t DueMs_ = -1;
  int Generations_ = 0;
  std::map<SocketHandle, Watched> Watches_;
  std::map<SocketHandle, Readiness> Ready_;
  std::set<SocketHandle> Forgotten_;
};

}  // namespace cvl
