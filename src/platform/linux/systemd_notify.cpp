#include "platform/linux/systemd_notify.h"

#include <dlfcn.h>
#include <systemd/sd-daemon.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/text.h"
#include "platform/linux/error_table.h"

namespace cvl {

namespace {

/// libsystemd, loaded when the manager waits to hear from us. It brings more along than the
/// rest of the program takes, so a run without a manager does without.
struct LibSystemd {
  decltype(&sd_notify) Notify = nullptr;
  decltype(&sd_watchdog_enabled) WatchdogEnabled = nullptr;

  /// Null when no manager has started us, or its library can't be had.
  static const LibSystemd *Find() {
    if (std::getenv("NOTIFY_SOCKET") == nullptr) return nullptr;
    static const LibSystemd Library = Load();
    return Library.Notify != nullptr && Library.WatchdogEnabled != nullptr ? &Library : nullptr;
  }

 private:
  static LibSystemd Load() {
    void *handle = dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
      TraceFailure("libsystemd", ENOENT);
      return {};
    }
    return {reinterpret_cast<decltype(&sd_notify)>(dlsym(handle, "sd_notify")),
            reinterpret_cast<decltype(&sd_watchdog_enabled)>(dlsym(handle, "sd_watchdog_enabled"))};
  }
};

void Tell(const std::string &state) {
  const LibSystemd *library = LibSystemd::Find();
  if (library == nullptr) return;
  const int result = library->Notify(0, state.c_str());
  if (result < 0) TraceFailure("sd_notify", -result);
}

/// Milliseconds from one sign of life to the next; 0 when nobody waits for any.
std::int64_t WatchdogIntervalMs() {
  const LibSystemd *library = LibSystemd::Find();
  if (library == nullptr) return 0;
  std::uint64_t span_us = 0;
  const int result = library->WatchdogEnabled(0, &span_us);
  if (result < 0) TraceFailure("sd_watchdog_enabled", -result);
  if (result <= 0) return 0;
  return static_cast<std::int64_t>(std::max<std::uint64_t>(span_us / 2000, 1));
}

}  // namespace

SystemdNotify::SystemdNotify(EventLoop &loop) : Watchdog_(loop, [] { Tell("WATCHDOG=1"); }) {}

void SystemdNotify::Ready() {
  Tell("READY=1");
  const std::int64_t interval_ms = WatchdogIntervalMs();
  if (interval_ms > 0) Watchdog_.Start(interval_ms, LoopTimer::Repeat::Yes);
}

void SystemdNotify::Stopping() {
  Tell("STOPPING=1");
}

void SystemdNotify::Status(std::string_view text) {
  Tell(Joined({"STATUS=", text}));
}

}  // namespace cvl
