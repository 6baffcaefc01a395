// The event loop on epoll, with one timerfd for its timers.

#pragma once

#include <vector>

#include "platform/event_loop.h"

namespace cvl {

class EpollLoop final : public EventLoop {
 public:
  /// Raises 10024 when the kernel gives no descriptor.
  EpollLoop();
  ~EpollLoop() override;
  EpollLoop(const EpollLoop &) = delete;
  EpollLoop &operator=(const EpollLoop &) = delete;

  void Watch(SocketHandle socket, Readiness interest, ReadyHandler &handler) override;
  void Unwatch(SocketHandle socket) override;
  SocketHandle Descriptor() const override { return SocketHandle{Epoll_}; }
  std::int64_t MonotonicMs() override;

 protected:
  void HandOut(Waiting waiting) override;
  void ArmTimer(std::int64_t due_ms) override;
  void Kick() override;

 private:
  // By descriptor. The generation tells an event of a former watch from one of this.
  struct Watched {
    ReadyHandler *Handler = nullptr;
    std::uint32_t Generation = 0;
    std::uint32_t Events = 0;
  };

  void AddOwn(int descriptor);

  int Epoll_ = -1;
  int Timer_ = -1;
  int Kick_ = -1;
  std::vector<Watched> Watched_;
};

}  // namespace cvl
