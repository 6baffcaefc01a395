// The one object that exists in every run: it owns the parts of the system, connects their
// events to routines, starts and ends. It holds order, not logic.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "controls/timer.h"
#include "host/service_status.h"
#include "net/socket_layer.h"
#include "platform/platform.h"
#include "services/client_protocol.h"
#include "services/daytime_service.h"
#include "services/listeners.h"
#include "services/ntp_service.h"
#include "services/service_boxes.h"
#include "services/service_sockets.h"
#include "services/service_table.h"
#include "services/time_service.h"
#include "services/unix_time_service.h"
#include "settings/registry.h"
#include "settings/settings_store.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "status/lamps.h"
#include "status/request_log.h"
#include "status/status_texts.h"
#include "status/status_tick.h"
#include "status/tray_entry.h"
#include "sync/server_draw.h"
#include "sync/server_list.h"
#include "sync/sync_exchange.h"
#include "sync/sync_schedule.h"
#include "sync/tcp_time.h"
#include "time/time_engine.h"
#include "ui/panels.h"
#include "ui/secondary_windows.h"
#include "update/update_client.h"

namespace cvl {

/// How the load step ended.
enum class Loaded {
  Running,          ///< the program lives on events from here on
  Ended,            ///< the command line asked for one thing, and it is done
  AnotherInstance,  ///< another instance has claimed the program directory; see Obstacle
  NoWindow,         ///< a window was asked for and there can be none; see Obstacle
};

/// Why the window is being unloaded.
enum class UnloadMode : std::int16_t { CloseButton = 0, FromCode = 1, SystemEnds = 2 };

class CVL_Server {
 public:
  /// COMMAND_TAIL is what stands behind the program's name on its command line. PLATFORM
  /// outlives the server.
  CVL_Server(const Platform &platform, std::string command_tail);
  ~CVL_Server();
  CVL_Server(const CVL_Server &) = delete;
  CVL_Server &operator=(const CVL_Server &) = delete;

  /// The load step. Failures: neither trap nor continue before the command line is looked
  /// at; from there on a trap whose failure nobody hears of.
  Loaded Load();

  /// Ends the program: timers off, sockets closed, settings written. The loop is told to
  /// quit; the object may be destroyed when its outermost handler has returned.
  void Unload(UnloadMode mode);

  /// The Exit entry of the tray menu.
  void MnuExit();

  /// Why the load step ended, after Loaded::AnotherInstance and Loaded::NoWindow.
  const std::string &Obstacle() const { return Obstacle_; }

  /// What runs, from where, and which ports are open: lines for a terminal.
  /// SETTINGS_OBSTACLE is what keeps the settings from being read, if anything does.
  std::string TerminalReport(const std::string &settings_obstacle) const;

  /// The way of the main window into the tray and back.
  TrayEntry &Tray() { return Tray_; }
  SecondaryWindows &Others() { return Others_; }

  RunState State;
  MainWindow Window;

 private:
  Platform Platform_;
  std::string CommandTail_;
  std::vector<std::string> CommandArgs_;
  std::string Obstacle_;
  bool ExitRequested_ = false;
  bool Unloading_ = false;
  UnloadMode LastUnloadMode_ = UnloadMode::CloseButton;

  SocketLayer Layer_;
  TimeEngine Time_;
  Panels Panels_;
  Lamps Lamps_;
  StatusTexts Texts_;
  TrayEntry Tray_;
  SecondaryWindows Others_;
  RequestLog Log_;
  StatusTick StatusTick_;
  Timer SvrTime_;
  Timer SyncNow_;
  ServiceSockets Sockets_;
  ServiceTable Services_;
  Listeners Listeners_;
  ServiceBoxes Boxes_;
  ServerList Servers_;
  ServerDraw Draw_;
  SyncSchedule Schedule_;
  SyncExchange Exchange_;
  TcpTime TcpTime_;
  ServiceContext Context_;
  DaytimeService DaytimeService_;
  TimeService TimeService_;
  NtpService NtpService_;
  UnixTimeService UnixTimeService_;
  ClientProtocol ClientProtocol_;
  Registry Registry_;
  SettingsStore Settings_;
  UpdateClient Update_;
  ServiceStatus ServiceStatus_;

  void ConnectControls();
  // In window_controls.cpp.
  void ConnectWindows();
  void Connect(ConfigurationWindow &window);
  void ConnectServiceEvents();

  // The load step, in load_step.cpp.
  void SetDates();
  void TakeSyncStamp();
  void BuildStaticContents();
  void TakeStart();
  void TakeReference();
  void HideWindow();
  Loaded RunFromCommandLine();
  void GetCommandLine();
  Loaded ActOnFirstWord();
  void InstallService();
  void UninstallService();
  void ShowWindow();
};

}  // namespace cvl
