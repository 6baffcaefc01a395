#include "tests/support/test_loop.h"

#include <algorithm>
#include <stdexcept>

namespace cvl {

namespace {

// A program at rest needs a handful of passes; one that takes this many spins.
constexpr int MostPasses = 1000;

Readiness Masked(Readiness ready, Readiness interest) {
  return {.Read = ready.Read && interest.Read,
          .Write = ready.Write && interest.Write,
          .HangUp = ready.HangUp && interest.HangUp,
          .Error = ready.Error};
}

bool IsAnything(Readiness readiness) {
  return readiness.Read || readiness.Write || readiness.HangUp || readiness.Error;
}

int Number(SocketHandle socket) {
  return static_cast<int>(socket);
}

}  // namespace

TestLoop::TestLoop() {
  OnFatal = [](const RuntimeError &error) { throw ProcessEnded(error); };
}

void TestLoop::Advance(std::int64_t milliseconds) {
  const std::int64_t end = NowMs_ + milliseconds;
  int passes = 0;
  while (DueMs_ >= 0 && DueMs_ <= end && !IsQuitting()) {
    NowMs_ = std::max(NowMs_, DueMs_);
    RunOnePass();
    if (++passes == MostPasses * 100) throw std::logic_error("a timer fires for ever");
  }
  NowMs_ = end;
  RunOnePass();
}

void TestLoop::Drain() {
  for (int passes = 0; passes < MostPasses; ++passes) {
    const int kicks = Kicks;
    RunOnePass();
    // The loop kicks itself when a pass leaves something posted.
    if (IsQuitting() || (Kicks == kicks && Pending().empty())) return;
  }
  ADD_FAILURE() << "the loop spins";
}

void TestLoop::SetReady(SocketHandle socket, Readiness readiness) {
  Ready_[socket] = readiness;
}

void TestLoop::Forget(SocketHandle socket) {
  Ready_.erase(socket);
  Forgotten_.insert(socket);
  if (IsWatched(socket)) ADD_FAILURE() << "closed while watched: socket " << Number(socket);
}

void TestLoop::Watch(SocketHandle socket, Readiness interest, ReadyHandler &handler) {
  if (Forgotten_.contains(socket)) ADD_FAILURE() << "watched when closed: " << Number(socket);
  if (RefusesWatches != 0 && !IsWatched(socket)) throw RuntimeError(RefusesWatches);
  Calls.push_back({WatchCall::Kind::Watch, socket, interest});
  const auto [place, is_new] = Watches_.try_emplace(socket);
  if (is_new) place->second.Generation = ++Generations_;
  place->second.Interest = interest;
  place->second.Handler = &handler;
}

void TestLoop::Unwatch(SocketHandle socket) {
  Calls.push_back({WatchCall::Kind::Unwatch, socket, {}});
  Watches_.erase(socket);
}

std::vector<TestLoop::Event> TestLoop::Pending() const {
  std::vector<Event> events;
  for (const auto &[socket, watched] : Watches_) {
    const auto ready = Ready_.find(socket);
    if (ready == Ready_.end()) continue;
    const Readiness what = Masked(ready->second, watched.Interest);
    if (IsAnything(what)) events.push_back({socket, what, watched.Generation});
  }
  return events;
}

void TestLoop::HandOut(Waiting waiting) {
  const std::vector<Event> events = Pending();
  if (events.empty() && waiting == Waiting::Yes) {
    throw std::logic_error("the loop waits for something that never comes");
  }
  for (const Event &event : events) {
    const auto watched = Watches_.find(event.Socket);
    if (watched == Watches_.end() || watched->second.Generation != event.Generation) continue;
    ++EventsHandedOut;
    ReadyHandler *handler = watched->second.Handler;
    Dispatch([handler, &event] { handler->OnReady(event.What); });
  }
}

}  // namespace cvl
