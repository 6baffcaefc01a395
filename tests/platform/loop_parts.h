// Small parts that make events for a loop and tell what became of them.

#pragma once

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <functional>
#include <utility>

#include "platform/event_loop.h"

namespace cvl {

/// What OnFatal throws in tests. It is no RuntimeError, so that no trap on its way takes it
/// for the failure of a step.
struct FatalReached {
  int Number;
};

struct HandlerOf final : ReadyHandler {
  explicit HandlerOf(std::function<void(Readiness)> work) : Work(std::move(work)) {}
  void OnReady(Readiness readiness) override { Work(readiness); }

  std::function<void(Readiness)> Work;
};

struct PostedOf final : PostedEvent {
  explicit PostedOf(std::function<void()> work) : Work(std::move(work)) {}
  void OnPosted() override { Work(); }

  std::function<void()> Work;
};

struct UnsettledOf final : Unsettled {
  explicit UnsettledOf(std::function<bool(SettlePoint)> work) : Work(std::move(work)) {}
  bool Settle(SettlePoint point) override { return Work(point); }

  std::function<bool(SettlePoint)> Work;
};

/// A descriptor that is readable from Ring to Hush.
class Bell {
 public:
  Bell() : Descriptor_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}
  ~Bell() { Close(); }
  Bell(const Bell &) = delete;
  Bell &operator=(const Bell &) = delete;

  SocketHandle Handle() const { return SocketHandle{Descriptor_}; }
  void Ring() { eventfd_write(Descriptor_, 1); }
  void Hush() {
    eventfd_t rings = 0;
    eventfd_read(Descriptor_, &rings);
  }
  void Close() {
    if (Descriptor_ >= 0) close(Descriptor_);
    Descriptor_ = -1;
  }

 private:
  int Descriptor_;
};

}  // namespace cvl
