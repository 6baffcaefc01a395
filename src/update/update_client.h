// The update client: a small HTTP/1.1 client for one web server, the maker's.
//
// One exchange fetches the version file. When it tells of a server file that differs from
// ours, or ours is missing, a second exchange fetches that; when it tells of a newer program
// the user is asked, and an updater of its own is started. The client writes one request,
// looks for one header and knows the end of the body by counting: an answer in chunks, or
// without that header, never ends, and an error page for the server file becomes the server
// file. All of this is intentional. Of a server file, at most 16 MiB are saved; the exchange
// ends there as by a lost connection.
//
// The state of an exchange is the socket's alone. Starting one cuts off one under way.

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "controls/control.h"
#include "net/tcp_socket.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/program_starter.h"
#include "settings/settings_store.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "update/version_file.h"

namespace cvl {

class UpdateClient {
 public:
  struct Parts {
    RunState &State;
    MainWindow &Window;
    Files &ProgramFiles;
    MessageBoxes &Boxes;
    ProgramStarter &Programs;
    SettingsStore &Settings;
    SocketLayer &Layer;
  };

  /// The window has the title that it keeps until an update.
  explicit UpdateClient(const Parts &parts);

  /// Gives the button CheckUpdate of the configuration window. Asking for it brings that
  /// window into being, unseen, when there is none.
  std::function<Control &()> CheckUpdate;

  /// Starts an exchange: for the server file when FileRequested of the settings is set, for
  /// the version file otherwise. Failures: continue; an exchange ends in the socket's events.
  void QRBUpdate();

  /// A click on CheckUpdate: the button is disabled until the check ends.
  void ClickCheckUpdate();

  // The socket's events.

  /// Sends the request. Failures: continue.
  void OnConnect();
  /// Takes COUNT bytes of the answer. Failures: continue.
  void OnDataArrival(std::int32_t count);
  /// Gives the exchange up without a word. FileRequested stays as it is.
  void OnError();

  /// Takes the answer to a request for the version file: offers what is new, and says that
  /// nothing is when nothing has been offered in this run. Of fewer than six fields nobody
  /// hears, and CheckUpdate stays as it is. Failures: neither trap nor continue.
  void saveIT(std::string_view data);

  /// The user pressed CheckUpdate, and the check hasn't ended. Nobody asks.
  bool ManualCheck = false;

  /// The socket of the exchange.
  TcpSocket &qrb() { return Socket_; }

 private:
  std::string Request() const;
  /// Writes BODY to the server file. False when that has reached 16 MiB and the rest is lost.
  bool SaveServerFile(std::string_view body);
  void LoadServerFile();
  bool WantsProgram(const VersionFile &latest);
  void StartUpdater(const VersionFile &latest);
  void CompareServerFile(const VersionFile &latest);
  void EndCheck();

  Parts Parts_;
  std::string TitleAtStart_;
  TcpEvents Events_;
  TcpSocket Socket_;
  // Of the last header seen, whichever exchange it belonged to.
  std::int32_t ContentLength_ = 0;
  // Of the body in this exchange.
  std::int32_t BytesIn_ = 0;
  // Never lowered: a second download of a run goes to a file that is closed, which nobody
  // notices, and the list is read from the first one again.
  bool FileIsOpen_ = false;
  std::unique_ptr<OutputFile> File_;
  // Of the file that is open; without one, of this exchange.
  std::size_t SavedBytes_ = 0;
  // Never lowered: a run that has offered something says no more that there is nothing.
  bool UpdateOffered_ = false;
};

}  // namespace cvl
