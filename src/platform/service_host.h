// The system's service manager and event log, as the control CVLService shows them.

#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace cvl {

/// What the service manager is told about a service.
struct ServiceDefinition {
  std::string Name;
  std::string DisplayName;
  bool StartsAutomatically = true;
  bool AcceptsPause = true;
  /// Whether it may touch the desktop.
  bool Interactive = false;
  /// Runs the service logic without a service manager.
  bool Debug = false;
};

class ServiceHost {
 public:
  virtual ~ServiceHost() = default;

  /// The properties of the control, set before the operations below.
  ServiceDefinition Definition;

  /// Events, each on the loop's thread between other events. The first three set their
  /// success flag.
  std::function<void(bool &success)> OnStart;
  std::function<void(bool &success)> OnPause;
  std::function<void(bool &success)> OnContinue;
  std::function<void()> OnStop;

  /// Stores a parameter of the service for Install.
  virtual void SaveSetting(std::string_view section, std::string_view key,
                           std::string_view value) = 0;
  /// Enters the service into the service manager, or removes it; true if all went well.
  [[nodiscard]] virtual bool Install() = 0;
  [[nodiscard]] virtual bool Uninstall() = 0;

  /// Writes a record to the system's event log.
  virtual void LogEvent(int type, int id, std::string_view text) = 0;

  /// Connects the process to the service manager; the events come from here on.
  virtual void StartService() = 0;

  /// Says in one line what the service is at, for whoever asks its manager. Where there is
  /// no manager that would listen, nothing happens.
  virtual void ReportStatus(std::string_view text) { static_cast<void>(text); }
};

}  // namespace cvl
