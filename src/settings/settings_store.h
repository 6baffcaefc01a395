// The persistent settings and the main window's boxes, which are the live ones: read into
// them once, written from them once. What happens in between reaches the store at the unload
// and not before.
//
// All values are texts below HKEY_LOCAL_MACHINE\Software\Chronvale Server. Where a value has
// several fields there is a colon between each two; "YES", letter by letter, is true and
// anything else false.
//
//   Settings       RandomCheck:SyncN:SyncIntC:RegionCode:ReplyHeaderByte
//   NTP37, ...     Enable:TCP:UDP:port, one value for each of the five services
//   EnableLogging, UseJulian, OpenMinimized

#pragma once

#include <functional>
#include <string>

#include "platform/files.h"
#include "services/listeners.h"
#include "services/service_table.h"
#include "settings/registry.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "status/tray_entry.h"
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
    Registry &Store;
    ServiceTable &Services;
    Listeners &Listening;
    ServerList &Servers;
    ServerDraw &Draw;
    SyncSchedule &Schedule;
    TrayEntry &Tray;
    std::string &StandardZoneName;
    std::string &DaylightZoneName;
  };

  explicit SettingsStore(const Parts &parts) : Parts_(parts) {}

  /// Starts the update client, when the server file is missing.
  std::function<void()> QRBUpdate;

  /// Starts an exchange with a time server, when a new server file has come.
  std::function<void()> SyncTimeNow;

  /// A server file is being fetched. The update client raises it; ReadCVLFile lowers it once
  /// it has read that file.
  bool FileRequested = false;

  /// The system starts a program of this name with its own start. Nobody asks.
  bool StartsWithSystem = false;

  /// Reads the server file and the settings, ticks the boxes and so opens the listeners.
  /// Called at the start and after each download. Without a server file it starts the update
  /// client and does nothing else.
  ///
  /// Where there are no settings yet it writes the usual ones, but ticks the Enable boxes
  /// alone: a first run opens no listener, and its unload stores that. It is meant so; ready
  /// settings come with the program for whoever wants to serve from the first run on.
  ///
  /// Failures: neither trap nor continue. Whatever the store can't do goes unheard.
  void ReadCVLFile();

  /// Writes the settings from the boxes. UseJulian and OpenMinimized are changed from outside
  /// alone. Failures: none; a write that fails goes unheard.
  void WriteSettings();

 private:
  void ReadServerFile(const std::string &path);
  void ReadForeignValues();
  void ReadSettings();
  void ReadService(const Service &service);
  void OpenSocket(CheckBox &box, std::string_view code);
  void FirstRun();
  void CloseReading();
  std::string Read(std::string_view value_name);
  void Write(std::string_view value_name, std::string_view value);

  Parts Parts_;
};

}  // namespace cvl
