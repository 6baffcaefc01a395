// Addresses of host names, kept for a while, and the waits for those that aren't known.

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/event_loop.h"
#include "platform/resolver.h"

namespace cvl {

class NameCache {
 public:
  /// An answer is fresh for this long.
  static constexpr std::int64_t FreshMs = 60000;
  /// More names than this are never kept; the oldest go.
  static constexpr std::size_t MostNames = 512;

  NameCache(EventLoop &loop, Resolver &resolver) : Loop_(loop), Resolver_(resolver) {}

  /// The address of a numeric text, or of a name whose last answer is fresh.
  std::optional<Ipv4Address> Find(const std::string &host);

  /// Has a name looked up; its answer is then there to Find, unless it has none.
  void LookUp(const std::string &host, Resolver::Answer answer);

 private:
  struct Known {
    Ipv4Address Address = 0;
    std::int64_t LearntMs = 0;
  };

  void Keep(const std::string &host, Ipv4Address address);

  EventLoop &Loop_;
  Resolver &Resolver_;
  std::map<std::string, Known> Known_;
  // Gone with us: an answer that comes later finds nobody to tell.
  std::shared_ptr<char> Alive_ = std::make_shared<char>();
};

/// One wait for a name, with an end. Starting anew, cancelling or destroying it drops the
/// wait before.
class NameWait {
 public:
  NameWait(EventLoop &loop, NameCache &names);

  /// Calls DONE, as an event of its own, when HOST has been looked up, found or not, or
  /// after TIMEOUT_MS (0: no end).
  void Start(const std::string &host, std::int64_t timeout_ms, std::function<void()> done);
  void Cancel();
  bool IsWaiting() const { return static_cast<bool>(Done_); }

 private:
  void Finish();

  NameCache &Names_;
  LoopTimer Timeout_;
  std::function<void()> Done_;
  // Replaced by each wait, so that the answer to a former one is recognised as such.
  std::shared_ptr<char> Ticket_;
};

}  // namespace cvl
