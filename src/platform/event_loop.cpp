#include "platform/event_loop.h"

#include <algorithm>
#include <cstdlib>

namespace cvl {

namespace {

/// Counts a depth up for its own lifetime, whichever way the scope is left.
class Deeper {
 public:
  explicit Deeper(int &depth) : Depth_(depth) { ++Depth_; }
  ~Deeper() { --Depth_; }
  Deeper(const Deeper &) = delete;
  Deeper &operator=(const Deeper &) = delete;

 private:
  int &Depth_;
};

}  // namespace

LoopTimer::LoopTimer(EventLoop &loop, std::function<void()> on_due)
    : Loop_(loop), OnDue_(std::move(on_due)) {
  Loop_.Timers_.push_back(this);
}

LoopTimer::~LoopTimer() {
  Stop();
  std::erase(Loop_.Timers_, this);
}

void LoopTimer::Start(std::int64_t interval_ms, Repeat repeat) {
  IntervalMs_ = interval_ms;
  DueMs_ = Loop_.MonotonicMs() + interval_ms;
  Repeat_ = repeat;
  Running_ = true;
  Collected_ = false;
  Loop_.ArmNextTimer();
}

void LoopTimer::Stop() {
  Running_ = false;
  Collected_ = false;
}

void EventLoop::Run() {
  Running_ = true;
  while (!Quitting_) {
    Pass(Waiting::Yes);
  }
  Running_ = false;
}

void EventLoop::RunOnePass() {
  while (Unsettled *work = BeforePass_.PopFront()) {
    static_cast<void>(work->Settle(SettlePoint::NestedPass));
  }
  Settle(SettlePoint::NestedPass);
  if (Depth_ > MostNested || Quitting_) return;
  // What is left is settled behind its own event, not behind those of the pass.
  IntrusiveList<Unsettled, SettleTag> left;
  left.TakeAll(Unsettled_);
  Pass(Waiting::No);
  Unsettled_.TakeAll(left);
  // Under another loop nobody comes back by himself for what was posted meanwhile.
  if (Depth_ == 0 && !Running_ && !Posted_.IsEmpty()) Kick();
}

void EventLoop::Post(PostedEvent &event) {
  Posted_.PushBack(event);
  // Outside of all passes nobody comes back by himself.
  if (Depth_ == 0 && !Running_) Kick();
}

void EventLoop::Pass(Waiting waiting) {
  const Deeper deeper(Depth_);
  ++Passes_;
  IntrusiveList<PostedEvent, PostedTag> posted;
  posted.TakeAll(Posted_);
  FireTimers();
  const bool idle = posted.IsEmpty() && Posted_.IsEmpty() && !Quitting_;
  HandOut(waiting == Waiting::Yes && idle ? Waiting::Yes : Waiting::No);
  RunPosted(posted);
}

void EventLoop::FireTimers() {
  if (ArmedMs_ < 0) return;
  const std::int64_t now = MonotonicMs();
  if (now < ArmedMs_) return;
  for (LoopTimer *timer : Timers_) {
    if (!timer->Running_ || timer->DueMs_ > now) continue;
    timer->Collected_ = true;
    timer->Running_ = timer->Repeat_ == LoopTimer::Repeat::Yes;
    timer->DueMs_ = now + timer->IntervalMs_;
  }
  ArmNextTimer();
  const auto collected = [](const LoopTimer *timer) { return timer->Collected_; };
  // Searched anew each time: a handler may end or destroy any timer.
  for (auto due = std::find_if(Timers_.begin(), Timers_.end(), collected); due != Timers_.end();
       due = std::find_if(Timers_.begin(), Timers_.end(), collected)) {
    LoopTimer *timer = *due;
    timer->Collected_ = false;
    Dispatch([timer] { timer->OnDue_(); });
    if (Quitting_) return;
  }
}

void EventLoop::RunPosted(IntrusiveList<PostedEvent, PostedTag> &posted) {
  while (PostedEvent *event = posted.PopFront()) {
    Dispatch([event] { event->OnPosted(); });
  }
}

void EventLoop::SettleAll(SettlePoint point) {
  IntrusiveList<Unsettled, SettleTag> round;
  round.TakeAll(Unsettled_);
  while (Unsettled *work = round.PopFront()) {
    if (!work->Settle(point)) Unsettled_.PushBack(*work);
  }
}

void EventLoop::ArmNextTimer() {
  std::int64_t next = -1;
  for (const LoopTimer *timer : Timers_) {
    if (timer->Running_ && (next < 0 || timer->DueMs_ < next)) next = timer->DueMs_;
  }
  if (next == ArmedMs_) return;
  ArmedMs_ = next;
  ArmTimer(next);
}

void EventLoop::Fatal(const RuntimeError &error) {
  if (OnFatal) OnFatal(error);
  std::abort();
}

}  // namespace cvl
