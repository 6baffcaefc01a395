#include "platform/linux/epoll_loop.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <array>
#include <cassert>
#include <cerrno>
#include <ctime>

#include "platform/linux/error_table.h"

namespace cvl {

namespace {

// At most this many events in a pass, so that timers get their turn in a flood.
constexpr int MostEvents = 128;

// In place of a generation, for the loop's own two descriptors.
constexpr std::uint32_t OwnDescriptor = 0xFFFFFFFF;

std::uint64_t KeyOf(int descriptor, std::uint32_t generation) {
  return static_cast<std::uint64_t>(generation) << 32 | static_cast<std::uint32_t>(descriptor);
}

std::uint32_t EventsOf(Readiness interest) {
  std::uint32_t events = 0;
  if (interest.Read) events |= EPOLLIN;
  if (interest.Write) events |= EPOLLOUT;
  if (interest.HangUp) events |= EPOLLRDHUP;
  return events;
}

Readiness ReadinessOf(std::uint32_t events) {
  Readiness readiness;
  readiness.Read = (events & EPOLLIN) != 0;
  readiness.Write = (events & EPOLLOUT) != 0;
  readiness.HangUp = (events & EPOLLRDHUP) != 0;
  readiness.Error = (events & (EPOLLERR | EPOLLHUP)) != 0;
  return readiness;
}

}  // namespace

EpollLoop::EpollLoop()
    : Epoll_(epoll_create1(EPOLL_CLOEXEC)),
      Timer_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)),
      Kick_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (Epoll_ < 0 || Timer_ < 0 || Kick_ < 0) throw RuntimeError(error_number::TooManyDescriptors);
  AddOwn(Timer_);
  AddOwn(Kick_);
}

EpollLoop::~EpollLoop() {
  close(Kick_);
  close(Timer_);
  close(Epoll_);
}

void EpollLoop::AddOwn(int descriptor) {
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.u64 = KeyOf(descriptor, OwnDescriptor);
  if (epoll_ctl(Epoll_, EPOLL_CTL_ADD, descriptor, &event) != 0) {
    throw RuntimeError(error_number::TooManyDescriptors);
  }
}

void EpollLoop::Watch(SocketHandle socket, Readiness interest, ReadyHandler &handler) {
  const int descriptor = static_cast<int>(socket);
  assert(descriptor >= 0);
  const auto place = static_cast<std::size_t>(descriptor);
  if (place >= Watched_.size()) Watched_.resize(place + 64);
  Watched &watched = Watched_[place];
  const bool is_new = watched.Handler == nullptr;
  const std::uint32_t events = EventsOf(interest);
  if (!is_new && watched.Events == events) {
    watched.Handler = &handler;
    return;
  }
  epoll_event event{};
  event.events = events;
  event.data.u64 = KeyOf(descriptor, watched.Generation);
  if (epoll_ctl(Epoll_, is_new ? EPOLL_CTL_ADD : EPOLL_CTL_MOD, descriptor, &event) != 0) {
    const int error = errno;
    TraceFailure("epoll_ctl", error);
    Unwatch(socket);
    throw RuntimeError(SocketErrorOf(error));
  }
  watched.Handler = &handler;
  watched.Events = events;
}

void EpollLoop::Unwatch(SocketHandle socket) {
  const auto place = static_cast<std::size_t>(socket);
  if (place >= Watched_.size() || Watched_[place].Handler == nullptr) return;
  Watched_[place].Handler = nullptr;
  // The old generation's events still lie in the batch of some pass.
  if (++Watched_[place].Generation == OwnDescriptor) Watched_[place].Generation = 0;
  epoll_event event{};
  if (epoll_ctl(Epoll_, EPOLL_CTL_DEL, static_cast<int>(socket), &event) != 0) {
    TraceFailure("epoll_ctl", errno);
  }
}

std::int64_t EpollLoop::MonotonicMs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

void EpollLoop::HandOut(Waiting waiting) {
  std::array<epoll_event, MostEvents> events;
  const int count = epoll_wait(Epoll_, events.data(), MostEvents, waiting == Waiting::Yes ? -1 : 0);
  for (int at = 0; at < count; ++at) {
    const std::uint64_t key = events[static_cast<std::size_t>(at)].data.u64;
    const auto descriptor = static_cast<std::size_t>(key & 0xFFFFFFFF);
    const auto generation = static_cast<std::uint32_t>(key >> 32);
    if (generation == OwnDescriptor) {
      std::uint64_t kicks = 0;
      if (static_cast<int>(descriptor) == Kick_ && read(Kick_, &kicks, sizeof kicks) < 0) {
        TraceFailure("eventfd", errno);
      }
      continue;  // timers are fired by the clock when the next pass begins
    }
    const Watched watched = Watched_[descriptor];
    if (watched.Handler == nullptr || watched.Generation != generation) continue;
    const Readiness readiness = ReadinessOf(events[static_cast<std::size_t>(at)].events);
    Dispatch([&watched, readiness] { watched.Handler->OnReady(readiness); });
  }
}

void EpollLoop::ArmTimer(std::int64_t due_ms) {
  itimerspec due{};  // all zero disarms
  if (due_ms >= 0) {
    due.it_value.tv_sec = due_ms / 1000;
    due.it_value.tv_nsec = due_ms % 1000 * 1000000;
    if (due_ms == 0) due.it_value.tv_nsec = 1;
  }
  // Setting the time also takes back a readiness that nobody has read.
  if (timerfd_settime(Timer_, TFD_TIMER_ABSTIME, &due, nullptr) != 0) {
    TraceFailure("timerfd_settime", errno);
  }
}

void EpollLoop::Kick() {
  const std::uint64_t one = 1;
  if (write(Kick_, &one, sizeof one) < 0) TraceFailure("eventfd", errno);
}

}  // namespace cvl
