// The event loop: one thread on which every handler of the system runs.
//
// One pass, in this order:
//   1. collect the timers that are due, arm the repeating ones anew from now, fire them
//   2. wait for sockets and signals (an outermost pass of Run waits as long as nothing
//      else is to be done; every other pass only looks)
//   3. hand out what came
//   4. run what was posted before this pass began
// After each event, what handlers left to be finished behind them is settled: answers
// are flushed and new connections watched.
//
// A routine may let the loop run one pass in the middle of its work. Such passes nest at
// most MostNested deep, so that a flood of connections can't exhaust the stack.
//
// A failure that reaches the top of an event ends the process, through OnFatal. It never
// comes out of RunOnePass: it is the failure of that event, not of the routine that let
// the loop run.

#pragma once

#include <cstdint>
#include <functional>
#include <new>
#include <vector>

#include "base/runtime_error.h"
#include "platform/intrusive_list.h"

namespace cvl {

/// A socket of the operating system, or whatever else the loop can watch.
enum class SocketHandle : std::intptr_t { None = -1 };

/// What a handler wants to hear of, or what has happened, on a socket.
struct Readiness {
  bool Read = false;    ///< something to read, which may be the end of the stream
  bool Write = false;   ///< room to write
  bool HangUp = false;  ///< the peer has ended its stream
  bool Error = false;   ///< the connection is broken; reported whether asked for or not
};

class ReadyHandler {
 public:
  /// Readiness is a hint: what it announces may be gone by now.
  virtual void OnReady(Readiness readiness) = 0;

 protected:
  ~ReadyHandler() = default;
};

struct PostedTag;
struct SettleTag;

/// Work that runs in a later pass. Destroying or unlinking it takes it back.
class PostedEvent : public ListLink<PostedTag> {
 public:
  virtual void OnPosted() = 0;

 protected:
  ~PostedEvent() = default;
};

/// Where handlers' loose ends are taken up.
enum class SettlePoint {
  NestedPass,  ///< a handler is about to let the loop run; it isn't done yet
  EndOfEvent,
};

/// Something with loose ends to take up behind the present event.
class Unsettled : public ListLink<SettleTag> {
 public:
  /// True when nothing is left to do; otherwise it is asked again at the next point.
  virtual bool Settle(SettlePoint point) = 0;

 protected:
  ~Unsettled() = default;
};

class EventLoop;

/// A timer on the monotonic clock. A late tick isn't made up for.
class LoopTimer {
 public:
  enum class Repeat { No, Yes };

  LoopTimer(EventLoop &loop, std::function<void()> on_due);
  ~LoopTimer();
  LoopTimer(const LoopTimer &) = delete;
  LoopTimer &operator=(const LoopTimer &) = delete;

  /// Due in INTERVAL_MS from now, and then again and again if it repeats. A running
  /// timer starts anew.
  void Start(std::int64_t interval_ms, Repeat repeat);
  void Stop();
  bool IsRunning() const { return Running_; }

 private:
  friend class EventLoop;

  EventLoop &Loop_;
  std::function<void()> OnDue_;
  std::int64_t IntervalMs_ = 0;
  std::int64_t DueMs_ = 0;
  Repeat Repeat_ = Repeat::No;
  bool Running_ = false;
  bool Collected_ = false;
};

class EventLoop {
 public:
  /// How deep passes may nest inside handlers; deeper ones settle and return.
  static constexpr int MostNested = 8;

  virtual ~EventLoop() = default;

  /// Watches a socket, or changes what is watched for. HANDLER stays valid until Unwatch.
  /// Raises the socket failure when the system refuses, or OutOfMemory (7); the socket is then
  /// not watched.
  virtual void Watch(SocketHandle socket, Readiness interest, ReadyHandler &handler) = 0;

  /// Ends the watch. Events of the present batch for this socket are struck out.
  virtual void Unwatch(SocketHandle socket) = 0;

  /// The one descriptor that another loop can watch in place of all of ours: when it is
  /// readable, RunOnePass has something to do.
  virtual SocketHandle Descriptor() const = 0;

  /// Milliseconds of the monotonic clock.
  virtual std::int64_t MonotonicMs() = 0;

  /// Runs passes until Quit.
  void Run();

  /// Handles what is pending and returns.
  void RunOnePass();

  /// How many passes have begun so far. A handler in which the number grew has let the loop
  /// look at all sockets.
  std::uint64_t Passes() const { return Passes_; }

  /// Ends Run, and hands out nothing more from here on.
  void Quit() { Quitting_ = true; }
  bool IsQuitting() const { return Quitting_; }

  /// Runs EVENT in a pass that begins later than now; once, however often it is posted.
  void Post(PostedEvent &event);

  /// Has WORK settled behind the present event, or when the next nested pass begins.
  void SettleLater(Unsettled &work) { Unsettled_.PushBack(work); }

  /// Has WORK settled, as at a nested pass, when a handler lets the loop run. It stays until
  /// then, or until it is unlinked, however many events end; its answer is not looked at.
  void SettleBeforePass(Unsettled &work) { BeforePass_.PushBack(work); }

  /// Runs one event's handler: failures that reach its top are fatal, and what it left
  /// behind is settled.
  template <class Handler>
  void Dispatch(Handler &&handler) {
    if (Quitting_) return;
    try {
      handler();
      Settle(SettlePoint::EndOfEvent);
    } catch (const RuntimeError &error) {
      Fatal(error);
    } catch (const std::bad_alloc &) {
      Fatal(OutOfMemory_);
    }
  }

  /// Takes up loose ends now. Whoever runs handlers outside of a pass calls it.
  void Settle(SettlePoint point) {
    if (!Unsettled_.IsEmpty()) SettleAll(point);
  }

  /// Called with the failure of an event that nothing caught; it doesn't return.
  std::function<void(const RuntimeError &)> OnFatal;

 protected:
  enum class Waiting { No, Yes };

  /// Hands out what has happened, each event through Dispatch; with Waiting::Yes waits
  /// for the first event or the next timer.
  virtual void HandOut(Waiting waiting) = 0;

  /// The moment of MonotonicMs at which the next timer is due, or -1 for none.
  virtual void ArmTimer(std::int64_t due_ms) = 0;

  /// Makes Descriptor readable, for another loop, until the next pass.
  virtual void Kick() = 0;

 private:
  friend class LoopTimer;

  void SettleAll(SettlePoint point);
  void Pass(Waiting waiting);
  void FireTimers();
  void RunPosted(IntrusiveList<PostedEvent, PostedTag> &posted);
  void ArmNextTimer();
  [[noreturn]] void Fatal(const RuntimeError &error);

  // Made beforehand: when it is needed, there is no memory to make it.
  const RuntimeError OutOfMemory_{error_number::OutOfMemory};
  std::vector<LoopTimer *> Timers_;
  std::int64_t ArmedMs_ = -1;
  IntrusiveList<PostedEvent, PostedTag> Posted_;
  IntrusiveList<Unsettled, SettleTag> Unsettled_;
  IntrusiveList<Unsettled, SettleTag> BeforePass_;
  std::uint64_t Passes_ = 0;
  int Depth_ = 0;
  bool Running_ = false;
  bool Quitting_ = false;
};

}  // namespace cvl
