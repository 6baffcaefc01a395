// Something to be done in a pass that begins later than now.

#pragma once

#include <functional>
#include <utility>

#include "platform/event_loop.h"

namespace cvl {

class PostedWork final : public PostedEvent {
 public:
  PostedWork(EventLoop &loop, std::function<void()> work) : Work_(std::move(work)) {
    loop.Post(*this);
  }

  bool HasRun = false;

  void OnPosted() override {
    HasRun = true;
    Work_();
  }

 private:
  std::function<void()> Work_;
};

}  // namespace cvl
