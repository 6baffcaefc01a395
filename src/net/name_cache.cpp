#include "net/name_cache.h"

#include <algorithm>
#include <utility>

namespace cvl {

std::optional<Ipv4Address> NameCache::Find(const std::string &host) {
  if (const auto numeric = ParseAddress(host)) return numeric;
  const auto found = Known_.find(host);
  if (found == Known_.end()) return std::nullopt;
  if (Loop_.MonotonicMs() - found->second.LearntMs >= FreshMs) {
    Known_.erase(found);
    return std::nullopt;
  }
  return found->second.Address;
}

void NameCache::LookUp(const std::string &host, Resolver::Answer answer) {
  Resolver_.LookUp(host, [this, alive = std::weak_ptr<char>(Alive_), host,
                          told = std::move(answer)](std::optional<Ipv4Address> address) {
    if (alive.expired()) return;
    if (address) Keep(host, *address);
    told(address);
  });
}

void NameCache::Keep(const std::string &host, Ipv4Address address) {
  if (Known_.size() >= MostNames && Known_.find(host) == Known_.end()) {
    Known_.erase(std::min_element(Known_.begin(), Known_.end(), [](const auto &a, const auto &b) {
      return a.second.LearntMs < b.second.LearntMs;
    }));
  }
  Known_[host] = {address, Loop_.MonotonicMs()};
}

NameWait::NameWait(EventLoop &loop, NameCache &names)
    : Names_(names), Timeout_(loop, [this] { Finish(); }) {}

void NameWait::Start(const std::string &host, std::int64_t timeout_ms, std::function<void()> done) {
  Cancel();
  Done_ = std::move(done);
  Ticket_ = std::make_shared<char>();
  if (timeout_ms > 0) Timeout_.Start(timeout_ms, LoopTimer::Repeat::No);
  Names_.LookUp(host, [this, ticket = std::weak_ptr<char>(Ticket_)](std::optional<Ipv4Address>) {
    if (!ticket.expired()) Finish();
  });
}

void NameWait::Cancel() {
  Timeout_.Stop();
  Done_ = nullptr;
  Ticket_.reset();
}

void NameWait::Finish() {
  const std::function<void()> done = std::move(Done_);
  Cancel();
  if (done) done();
}

}  // namespace cvl
