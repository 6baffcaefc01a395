// The service host of Linux: signals, the system log, and systemd where it started us.

#pragma once

#include <string>

#include "platform/event_loop.h"
#include "platform/linux/systemd_notify.h"
#include "platform/service_host.h"

namespace cvl {

/// SIGTERM, SIGINT and SIGHUP stop the service, SIGUSR1 pauses it, SIGUSR2 continues it.
/// The signals only wake the loop; the events come from there.
class LinuxServiceHost final : public ServiceHost, private ReadyHandler {
 public:
  /// Blocks the signals, in every thread that is started from here on. What Install enters
  /// takes over the server file of PROGRAM_DIRECTORY and the settings of SETTINGS_FILE.
  LinuxServiceHost(EventLoop &loop, std::string program_directory, std::string settings_file);
  ~LinuxServiceHost() override;
  LinuxServiceHost(const LinuxServiceHost &) = delete;
  LinuxServiceHost &operator=(const LinuxServiceHost &) = delete;

  /// Only a key "Description" means something here: it becomes the unit's description.
  void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  /// The unit of systemd; see platform/linux/systemd_unit.h.
  [[nodiscard]] bool Install() override;
  [[nodiscard]] bool Uninstall() override;
  /// The system log's record "TYPE ID TEXT", of facility daemon.
  void LogEvent(int type, int id, std::string_view text) override;
  /// Never fails: without a service manager there is nobody to be told.
  void StartService() override;
  void ReportStatus(std::string_view text) override;

 private:
  void OnReady(Readiness readiness) override;
  void OnSignal(int signal);

  EventLoop &Loop_;
  SystemdNotify Manager_;
  int Signals_ = -1;
  std::string ProgramDirectory_;
  std::string SettingsFile_;
  std::string UnitDirectory_;
  std::string Description_;
};

}  // namespace cvl
