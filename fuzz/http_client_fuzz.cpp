// The update client: whatever the maker's server sends, in whatever pieces, the program goes
// on, writes nothing but bodies to the server file, and starts nothing unasked.
//
// The first byte chooses the run: 1 the server file is asked for, 2 there is a window, 4
// every question is answered with Yes, 8 there is a server file already. Then come the
// pieces, with a byte of 255 between each two.

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/server_parts.h"
#include "services/listeners.h"
#include "services/service_table.h"
#include "settings/registry.h"
#include "settings/settings_store.h"
#include "status/tray_entry.h"
#include "tests/support/fake_message_boxes.h"
#include "tests/support/fake_program_starter.h"
#include "tests/support/fake_registry.h"
#include "update/update_client.h"

namespace {

using cvl::fuzz::Require;

/// Most pieces of a run: a version file, and a server file in three pieces.
constexpr int MostPieces = 4;
constexpr const char *ServerFilePath = "/program/QRB_CVLS4.CVL";
constexpr std::string_view OldServerFile =
    "1\r\n2\r\n3\r\n4\r\n5\r\n"
    "10.9.9.9:::Server 10.9.9.9 NA:::2:::\r\n10.9.9.8:::Server 10.9.9.8 NA:::2:::\r\n";

class Run final : cvl::fuzz::Parts {
 public:
  Run() {
    State.Flags.TimeSynced = true;
    State.Start.ProgramVersion = "5.1.1";
    State.Start.MakerHost = "10.0.0.80";
    Values_.Put(cvl::FakeRegistry::SettingsKey, "Settings", "NO:59:Minute/s:NA:36");
    Keep();
  }

  /// Makes what has a state of its own again, and resets the rest.
  void Begin() {
    const bool read_servers = Files.BinaryOpens > 0;
    Update_.reset();
    DropConnections();
    Require(Net.OpenCount() == 0 && Files.OpenOutputs == 0 && Values_.Writes.empty());
    Reset();
    if (read_servers) ForgetServers();
    Files.BinaryOpens = 0;
    Values_.Opened.clear();
    Dialogs_.Boxes.clear();
    Programs_.Programs.clear();
    Written_.clear();
    MakeClient();
  }

  void Choose(std::uint8_t choice) {
    Settings_->FileRequested = (choice & 1) != 0;
    State.Flags.Interactive = (choice & 2) != 0;
    Dialogs_.Answer = (choice & 4) != 0 ? cvl::BoxAnswer::Yes : cvl::BoxAnswer::No;
    if ((choice & 8) != 0) Files.Contents[ServerFilePath] = OldServerFile;
  }

  void Take(std::string_view piece) {
    if (Update_->qrb().State() == cvl::SocketState::Closed) Update_->QRBUpdate();
    if (Update_->qrb().State() == cvl::SocketState::Connecting) {
      Net.Connections.back().Establish();
      Loop.Drain();
    }
    const bool writes =
        Settings_->FileRequested && (Files.BinaryOpens == 0 || Files.OpenOutputs > 0);
    Net.Connections.back().Send(piece);
    Loop.Drain();
    if (writes) Written_ += BodyOf(piece);
    CheckFile();
    CheckPrograms();
  }

 private:
  void MakeClient() {
    Button_ = {};
    Button_.Enabled = false;
    Settings_.emplace(cvl::SettingsStore::Parts{State, Window, Files, Store_, Services_, Listening_,
                                                Servers, Draw, Schedule, Entry_, StandardZoneName_,
                                                DaylightZoneName_});
    Update_.emplace(
        cvl::UpdateClient::Parts{State, Window, Files, Dialogs_, Programs_, *Settings_, Layer});
    Update_->CheckUpdate = [this]() -> cvl::Control & { return Button_; };
    Settings_->QRBUpdate = [this] { Update_->QRBUpdate(); };
  }

  static std::string_view BodyOf(std::string_view piece) {
    constexpr std::string_view EmptyLine = "\r\n\r\n";
    const std::size_t end = piece.find(EmptyLine);
    const bool has_header =
        piece.find("Content-Length: ") != std::string_view::npos && end != std::string_view::npos;
    return has_header ? piece.substr(end + EmptyLine.size()) : piece;
  }

  void CheckFile() const {
    if (Files.BinaryOpens == 0) {
      Require(Written_.empty());
      return;
    }
    Require(Files.BinaryOpens == 1);
    const std::string_view present = Files.Contents.at(ServerFilePath);
    Require(present.starts_with(Written_));
    const std::string_view tail = present.substr(Written_.size());
    Require(tail.empty() ||
            (present.size() == OldServerFile.size() && OldServerFile.ends_with(tail)));
  }

  void CheckPrograms() const {
    const bool may = State.Flags.Interactive && Dialogs_.Answer == cvl::BoxAnswer::Yes;
    Require(may || Programs_.Programs.empty());
    for (const auto &started : Programs_.Programs) {
      Require(started.Program == "/program/QRBUpdate.exe" && started.Arguments.size() == 2);
    }
  }

  cvl::FakeRegistry Values_;
  cvl::FakeMessageBoxes Dialogs_;
  cvl::FakeProgramStarter Programs_;
  cvl::Registry Store_{Values_, Dialogs_};
  cvl::ServiceTable Services_{Window, Sockets};
  cvl::Listeners Listening_{Services_, State, Window};
  cvl::TrayEntry Entry_{Window, State, Panel, Texts, Tray};
  std::string StandardZoneName_;
  std::string DaylightZoneName_;
  std::optional<cvl::SettingsStore> Settings_;
  std::optional<cvl::UpdateClient> Update_;
  cvl::Control Button_;
  std::string Written_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  Run &run = cvl::fuzz::SharedRun<Run>();
  run.Choose(data[0]);
  std::string_view rest(reinterpret_cast<const char *>(data) + 1, size - 1);
  for (int pieces = 0; pieces < MostPieces && !rest.empty(); ++pieces) {
    const std::size_t end = std::min(rest.find('\xFF'), rest.size());
    if (end > 0) run.Take(rest.substr(0, end));
    rest = rest.substr(std::min(end + 1, rest.size()));
  }
  return 0;
}
