#include "update/update_client.h"

#include "base/failure_modes.h"
#include "base/number_text.h"
#include "base/numbers.h"
#include "base/text.h"
#include "update/http_answer.h"

namespace cvl {

namespace {

constexpr std::uint16_t HttpPort = 80;
constexpr const char *VersionPath = "/Chronvale/CVLVCS4.IPF";
constexpr const char *ServerFilePath = "/Chronvale/QRB_CVLS4.CVL";
constexpr const char *UpdaterName = "QRBUpdate.exe";
constexpr std::int32_t BeyondHeaderEnd = 3;  // the rest of its CR LF CR LF
/// A list of 300 servers takes some 20 kB, and no Content-Length of seven digits is as large.
constexpr std::size_t MostSavedBytes = std::size_t{16} << 20;

}  // namespace

UpdateClient::UpdateClient(const Parts &parts)
    : Parts_(parts), TitleAtStart_(parts.Window.Caption), Socket_(parts.Layer, Events_) {
  Events_.Connect = [this](std::int16_t) { OnConnect(); };
  Events_.DataArrival = [this](std::int16_t, std::int32_t count) { OnDataArrival(count); };
  Events_.Error = [this](std::int16_t, const Failure &) { OnError(); };
}

void UpdateClient::QRBUpdate() {
  ContinueOnFailure mode;
  BytesIn_ = 0;
  if (!File_) SavedBytes_ = 0;
  Socket_.Close();
  mode.Step([&] { Socket_.SetLocalPort(0); });
  Socket_.SetRemotePort(HttpPort);
  Socket_.SetRemoteHost(Parts_.State.Start.MakerHost);
  mode.Step([&] { Socket_.Connect(); });
}

void UpdateClient::ClickCheckUpdate() {
  ManualCheck = true;
  CheckUpdate().Enabled = false;
  QRBUpdate();
}

void UpdateClient::OnConnect() {
  // What breaks the sending comes as an Error event as well.
  ContinueOnFailure mode;
  mode.Step([&] { Socket_.SendText(Request()); });
}

std::string UpdateClient::Request() const {
  const StartTexts &start = Parts_.State.Start;
  const char *path = Parts_.Settings.FileRequested ? ServerFilePath : VersionPath;
  return Joined({"GET ", path, " HTTP/1.1\r\n",                               //
                 "Accept: */*\r\n",                                           //
                 "Host: ", start.MakerHost, "\r\n",                           //
                 "Referer: Chronvale SS v", start.ProgramVersion, "\r\n",     //
                 "User-Agent: Chronvale SS v", start.ProgramVersion, "\r\n",  //
                 "\r\n"});
}

void UpdateClient::OnDataArrival(std::int32_t count) {
  ContinueOnFailure mode;
  mode.Step([&] { BytesIn_ = AddLong(BytesIn_, count); });
  std::string data;
  if (!mode.Step([&] { data = Socket_.GetText(); })) {
    Socket_.Close();
    return;
  }
  const std::size_t length_at = LengthPosition(data);
  std::size_t header_end = 0;
  if (length_at != 0) {
    mode.Step([&] { ContentLength_ = ContentLengthAt(data, length_at); });
    header_end = HeaderEnd(data);
    // Where the empty line is still to come, all of this piece but three bytes counts as
    // body. It is meant so, and such an answer never ends.
    mode.Step([&] {
      BytesIn_ = SubtractLong(BytesIn_, static_cast<std::int32_t>(header_end) + BeyondHeaderEnd);
    });
  }
  const bool is_complete = BytesIn_ == ContentLength_;
  if (Parts_.Settings.FileRequested) {
    const std::string_view body = data;
    if (!SaveServerFile(header_end == 0 ? body : BehindHeader(body, header_end))) {
      OnError();
    } else if (is_complete) {
      LoadServerFile();
    }
  } else if (is_complete) {
    Socket_.Close();
    mode.Step([&] { Parts_.Layer.Loop.RunOnePass(); });
    mode.Step([&] { saveIT(data); });
  }
}

bool UpdateClient::SaveServerFile(std::string_view body) {
  ContinueOnFailure mode;
  if (!FileIsOpen_) {
    mode.Step([&] {
      File_ = Parts_.ProgramFiles.OpenForBinary(
          Parts_.ProgramFiles.InProgramDirectory(ServerList::FileName));
    });
    FileIsOpen_ = true;
  }
  const std::string_view saved = body.substr(0, MostSavedBytes - SavedBytes_);
  SavedBytes_ += saved.size();
  // Without a file, or on a full disk, the body is lost and the list is read from what the
  // file then holds.
  if (File_) static_cast<void>(File_->Write(saved));
  return saved.size() == body.size();
}

void UpdateClient::LoadServerFile() {
  ContinueOnFailure mode;
  File_.reset();
  Socket_.Close();
  EndCheck();
  Parts_.Window.Servers.Clear();
  mode.Step([&] { Parts_.Settings.ReadCVLFile(); });
}

void UpdateClient::OnError() {
  Socket_.Close();
  CheckUpdate().Enabled = true;
}

void UpdateClient::saveIT(std::string_view data) {
  const std::optional<VersionFile> latest = ReadVersionFile(data);
  if (!latest) return;
  // Compared as texts: 5.1.9 is later than 5.1.10, and the maker numbers accordingly.
  if (Parts_.State.Start.ProgramVersion < latest->LatestVersion) {
    UpdateOffered_ = true;
    if (Parts_.State.Flags.Interactive && WantsProgram(*latest)) {
      StartUpdater(*latest);
      return;
    }
  }
  CompareServerFile(*latest);
  if (Parts_.Settings.FileRequested) {
    QRBUpdate();
  } else {
    EndCheck();
  }
  // Said of a first run without a server file too, while that file is on its way.
  if (UpdateOffered_) return;
  static_cast<void>(CheckUpdate());  // the box belongs to its window
  Parts_.Boxes.Show(BoxOwner::ConfigurationWindow, BoxStyle::OkExclamation,
                    "Chronvale Server Updater", "No Updates Available.");
}

bool UpdateClient::WantsProgram(const VersionFile &latest) {
  return Parts_.Boxes.Show(BoxOwner::MainWindow, BoxStyle::YesNoInformation,
                           "Chronvale Server AUTO Update Available!",
                           Joined({"Would you like to update your CVL Server Edition?\r\n",
                                   "The latest version is: ", latest.LatestVersion})) ==
         BoxAnswer::Yes;
}

void UpdateClient::StartUpdater(const VersionFile &latest) {
  // The updater finds the program that it is to stop by this title.
  Parts_.Window.Caption = "UPDATEING " + TitleAtStart_;
  static_cast<void>(
      Parts_.Programs.Start(Parts_.ProgramFiles.InProgramDirectory(UpdaterName),
                            {"/v" + latest.LatestVersion, "/t" + Parts_.Window.Caption}));
}

void UpdateClient::CompareServerFile(const VersionFile &latest) {
  const std::optional<std::int64_t> length =
      Parts_.ProgramFiles.Length(Parts_.ProgramFiles.InProgramDirectory(ServerList::FileName));
  if (!length) {
    Parts_.Settings.FileRequested = true;
    return;
  }
  if (static_cast<double>(*length) == Val(latest.ServerFileSize)) return;
  UpdateOffered_ = true;
  const BoxAnswer answer = Parts_.Boxes.Show(BoxOwner::MainWindow, BoxStyle::YesNoInformation,
                                             "Chronvale Update Available!",
                                             "Would you like to update your CVL Server File?");
  if (answer == BoxAnswer::Yes) Parts_.Settings.FileRequested = true;
}

void UpdateClient::EndCheck() {
  CheckUpdate().Enabled = true;
  ManualCheck = false;
}

}  // namespace cvl
