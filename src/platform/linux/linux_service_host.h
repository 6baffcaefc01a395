// The service host of Linux: signals, the system log, and systemd where it started us.

#pragma once

#include "platform/event_loop.h"
#include "platform/service_host.h"

namespace cvl {

/// SIGTERM, SIGINT and SIGHUP stop the service, SIGUSR1 pauses it, SIGUSR2 continues it.
/// The signals only wake the loop; the events come from there.
class LinuxServiceHost final : public ServiceHost, private ReadyHandler {
 public:
  /// Blocks the signals, in every thread that is started from here on.
  explicit LinuxServiceHost(EventLoop &loop);
  ~LinuxServiceHost() override;
  LinuxServiceHost(const LinuxServiceHost &) = delete;
  LinuxServiceHost &operator=(const LinuxServiceHost &) = delete;

  void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  [[nodiscard]] bool Install() override;
  [[nodiscard]] bool Uninstall() override;
  void LogEvent(int type, int id, std::string_view text) override;
  void StartService() override;

 private:
  void OnReady(Readiness readiness) override;
  void OnSignal(int signal);

  EventLoop &Loop_;
  int Signals_ = -1;
  std::string Description_;
};

}  // namespace cvl
