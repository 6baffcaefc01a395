// The way of a hand's doings into the model: each is one event of the server's loop.

#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/event_loop.h"

namespace cvl {

class ViewEvents {
 public:
  ViewEvents(EventLoop &loop, std::function<void()> after)
      : Loop_(loop), After_(std::move(after)) {}

  /// Runs HANDLER as an event of the loop: a failure that nothing catches ends the program,
  /// as it does in a socket's event. What it changed is on the window when this returns.
  template <class Handler>
  void Raise(Handler &&handler) {
    ++Depth_;
    Loop_.Dispatch(std::forward<Handler>(handler));
    --Depth_;
    After_();
  }

  /// Lets the server's loop run one pass in the middle of an event.
  void RunPending() { Loop_.RunOnePass(); }

  /// Opens an address on the desktop.
  std::function<void(const std::string &)> OpenAddress;

  /// Whether no event is under way.
  bool IsIdle() const { return Depth_ == 0; }

 private:
  EventLoop &Loop_;
  std::function<void()> After_;
  int Depth_ = 0;
};

}  // namespace cvl
