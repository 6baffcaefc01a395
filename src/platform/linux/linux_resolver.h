// Host names through the system's resolver, each lookup on a thread of its own.

#pragma once

#include <map>
#include <memory>
#include <vector>

#include "platform/event_loop.h"
#include "platform/resolver.h"

namespace cvl {

/// The system's resolver blocks for as long as its servers don't answer, so a lookup gets
/// a thread that does nothing else, and the loop hears of its end. A name that is asked
/// for again while it is looked up joins the lookup under way.
class LinuxResolver final : public Resolver, private ReadyHandler {
 public:
  /// More names than this at a time have no answer: only a resolver that never answers
  /// leads there.
  static constexpr std::size_t MostLookups = 8;

  explicit LinuxResolver(EventLoop &loop);
  ~LinuxResolver() override;
  LinuxResolver(const LinuxResolver &) = delete;
  LinuxResolver &operator=(const LinuxResolver &) = delete;

  void LookUp(const std::string &name, Answer answer) override;

 private:
  struct Mailbox;

  void OnReady(Readiness readiness) override;

  EventLoop &Loop_;
  // Shared with the threads: one that outlives us finds its mailbox still there.
  std::shared_ptr<Mailbox> Mailbox_;
  std::map<std::string, std::vector<Answer>> Waiting_;
};

}  // namespace cvl
