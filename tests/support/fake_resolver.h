// A resolver that answers when the test says so.
//
//   FakeResolver resolver(loop);
//   ...                                    // something asks for time.example
//   resolver.Tell("time.example", 0x0A000001);
//   resolver.Tell("gone.example", std::nullopt);

#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/event_loop.h"
#include "platform/resolver.h"

namespace cvl {

class FakeResolver final : public Resolver {
 public:
  explicit FakeResolver(EventLoop &loop) : Loop_(loop) {}

  /// Every name that was asked for, in order.
  std::vector<std::string> Asked;

  /// Gives all who wait for NAME their answer, each as an event of its own. Returns how
  /// many that were.
  int Tell(const std::string &name, std::optional<Ipv4Address> address) {
    const auto waiting = Waiting_.find(name);
    if (waiting == Waiting_.end()) return 0;
    const std::vector<Answer> answers = std::move(waiting->second);
    Waiting_.erase(waiting);
    for (const Answer &answer : answers) {
      Loop_.Dispatch([&] { answer(address); });
    }
    return static_cast<int>(answers.size());
  }

  bool IsWaitingFor(const std::string &name) const { return Waiting_.contains(name); }

  void LookUp(const std::string &name, Answer answer) override {
    Asked.push_back(name);
    Waiting_[name].push_back(std::move(answer));
  }

 private:
  EventLoop &Loop_;
  std::map<std::string, std::vector<Answer>> Waiting_;
};

}  // namespace cvl
