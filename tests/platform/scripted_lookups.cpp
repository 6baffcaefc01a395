#include "tests/platform/scripted_lookups.h"

#include <dlfcn.h>
#include <netdb.h>

#include <condition_variable>
#include <mutex>
#include <string_view>

namespace cvl {

namespace {

// Lookups run on threads of their own; all of this is under the lock.
struct Script {
  std::mutex Lock;
  std::condition_variable Changed;
  int Begun = 0;
  int UnderWay = 0;
  bool Released = false;
};

// A thread may still be leaving its lookup when the program ends.
Script &TheScript() {
  static Script &script = *new Script;
  return script;
}

/// Counts a lookup for as long as it is under way.
class UnderWay {
 public:
  explicit UnderWay(bool slow) {
    Script &script = TheScript();
    std::unique_lock lock(script.Lock);
    ++script.Begun;
    ++script.UnderWay;
    script.Changed.notify_all();
    if (slow) script.Changed.wait(lock, [&] { return script.Released; });
  }
  ~UnderWay() {
    Script &script = TheScript();
    const std::lock_guard lock(script.Lock);
    --script.UnderWay;
    script.Changed.notify_all();
  }
  UnderWay(const UnderWay &) = delete;
  UnderWay &operator=(const UnderWay &) = delete;
};

}  // namespace

ScriptedLookups::ScriptedLookups() {
  Script &script = TheScript();
  const std::lock_guard lock(script.Lock);
  script.Begun = 0;
  script.Released = false;
}

ScriptedLookups::~ScriptedLookups() {
  Release();
  Script &script = TheScript();
  std::unique_lock lock(script.Lock);
  script.Changed.wait(lock, [&] { return script.UnderWay == 0; });
}

int ScriptedLookups::Begun() const {
  Script &script = TheScript();
  const std::lock_guard lock(script.Lock);
  return script.Begun;
}

void ScriptedLookups::AwaitBegun(int count) const {
  Script &script = TheScript();
  std::unique_lock lock(script.Lock);
  script.Changed.wait(lock, [&] { return script.Begun >= count; });
}

void ScriptedLookups::Release() {
  Script &script = TheScript();
  const std::lock_guard lock(script.Lock);
  script.Released = true;
  script.Changed.notify_all();
}

}  // namespace cvl

extern "C" int getaddrinfo(const char *name, const char *service, const addrinfo *hints,
                           addrinfo **found) {
  static const auto system =
      reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
  const std::string_view text(name);
  const cvl::UnderWay under_way(text.starts_with("slow"));
  if (text == "localhost") return system(name, service, hints, found);
  if (text.starts_with("host") || text.starts_with("slow")) {
    return system("192.0.2.7", service, hints, found);
  }
  return EAI_NONAME;
}
