// The persistent settings and the main window's boxes, which are the live ones: read into
// them once, written from them once.

#pragma once

#include <functional>

#include "platform/files.h"
#include "services/listeners.h"
#include "services/service_table.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "sync/server_draw.h"
#include "sync/server_list.h"
#include "sync/sync_schedule.h"

namespace cvl {

class SettingsStore {
 public:
  struct Parts {
    RunState &State;
    MainWindow &Window;
    Files &ProgramFiles;
    ServiceTable &Services;
    Listeners &Listening;
    ServerList &Servers;
    ServerDraw &Draw;
    SyncSchedule &Schedule;
  };

  explicit SettingsStore(const Parts &parts) : Parts_(parts) {}

  /// Starts the update client, when the server file is missing.
  std::function<void()> QRBUpdate;

  /// Reads the server file and the settings, ticks the boxes and so opens the listeners.
  /// Without a server file it starts the update client and does nothing else.
  /// Failures: neither trap nor continue.
  void ReadCVLFile();

  /// Writes the settings from the boxes.
  void WriteSettings();

 private:
  void ReadServerFile(const std::string &path);
  void TickServices();

  Parts Parts_;
};

}  // namespace cvl
