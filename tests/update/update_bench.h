// The update client on a network without a kernel. The maker's server is 10.0.0.80; the
// program is 5.1.1; the button CheckUpdate is disabled, as a click leaves it; the program
// directory is empty.
//
//   class SaveItTest : public UpdateTest {};
//   ...
//   FakeConnection &maker = Begin();              // an exchange, and its connection stands
//   maker.Send(Answer(VersionText("5.2.0", 100)));
//   Loop.Drain();

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "settings/registry.h"
#include "settings/settings_store.h"
#include "tests/services/service_bench.h"
#include "tests/support/fake_message_boxes.h"
#include "tests/support/fake_program_starter.h"
#include "tests/support/fake_registry.h"
#include "update/update_client.h"

namespace cvl {

class UpdateTest : public ServiceTest {
 protected:
  using Shown = FakeMessageBoxes::Shown;

  UpdateTest() {
    State.Start.MakerHost = "10.0.0.80";
    RegistryValues.Put(FakeRegistry::SettingsKey, "Settings", "NO:59:Minute/s:NA:36");
    Button.Enabled = false;
    Update.CheckUpdate = [this]() -> Control & {
      ++WindowTouches;
      return Button;
    };
    Settings.QRBUpdate = [this] { Update.QRBUpdate(); };
    Settings.SyncTimeNow = [this] { ++Syncs; };
  }

  // What the maker's server sends.

  /// An answer with BODY, and the header that tells its length.
  static std::string Answer(std::string_view body) {
    return Header(body.size()) + std::string(body);
  }
  static std::string Header(std::size_t length) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) +
           "\r\nServer: maker\r\n\r\n";
  }

  static std::string VersionText(std::string_view latest, std::size_t size) {
    return VersionText(latest, std::to_string(size));
  }
  static std::string VersionText(std::string_view latest, const std::string &size) {
    return "zero-:-" + std::string(latest) + "-:-two-:-three-:-" + size + "-:-five\r\n";
  }

  /// A server file with one line for each host.
  static std::string ServerFile(const std::vector<std::string> &hosts) {
    std::string file = "1\r\n2\r\n3\r\n4\r\n5\r\n";
    for (const std::string &host : hosts) {
      file += host + ":::Server " + host + " NA:::2:::\r\n";
    }
    return file;
  }

  // What the test does.

  /// Starts an exchange; its connection stands and the request has been sent.
  FakeConnection &Begin() {
    Update.QRBUpdate();
    return Established();
  }
  FakeConnection &Established() {
    FakeConnection &maker = Net.Connections.back();
    maker.Establish();
    Loop.Drain();
    return maker;
  }

  /// Sends TEXT as one piece and lets the program come to rest.
  void Send(FakeConnection &maker, std::string_view text) {
    maker.Send(text);
    Loop.Drain();
  }

  /// A whole exchange for the version file.
  void Check(const std::string &version_text) { Send(Begin(), Answer(version_text)); }

  void PutServerFile(const std::string &contents) { Files.Contents[ServerFilePath] = contents; }

  // What the test sees.

  std::string ServerFileNow() const {
    const auto file = Files.Contents.find(ServerFilePath);
    return file == Files.Contents.end() ? "(none)" : file->second;
  }

  /// What the program has asked the connection for, the first line of the request alone.
  static std::string RequestLine(const FakeConnection &maker) {
    const std::string request = TextOf(maker.Received);
    return request.substr(0, request.find("\r\n"));
  }

  static Shown NothingNew() {
    return {BoxOwner::ConfigurationWindow, BoxStyle::OkExclamation, "Chronvale Server Updater",
            "No Updates Available."};
  }
  static Shown NewServerFile() {
    return {BoxOwner::MainWindow, BoxStyle::YesNoInformation, "Chronvale Update Available!",
            "Would you like to update your CVL Server File?"};
  }
  static Shown NewProgram(const std::string &version) {
    return {
        BoxOwner::MainWindow, BoxStyle::YesNoInformation, "Chronvale Server AUTO Update Available!",
        "Would you like to update your CVL Server Edition?\r\nThe latest version is: " + version};
  }

  static constexpr const char *ServerFilePath = "/program/QRB_CVLS4.CVL";
  static constexpr const char *GetVersionFile = "GET /Chronvale/CVLVCS4.IPF HTTP/1.1";
  static constexpr const char *GetServerFile = "GET /Chronvale/QRB_CVLS4.CVL HTTP/1.1";

  FakeRegistry RegistryValues;
  FakeMessageBoxes Dialogs;
  FakeProgramStarter Programs;
  Registry Store{RegistryValues, Dialogs};
  std::string StandardZoneName;
  std::string DaylightZoneName;
  TrayEntry Entry{Window, State, Panel, Texts, Tray};
  SettingsStore Settings{{State, Window, Files, Store, Services, Listening, Servers, Draw, Schedule,
                          Entry, StandardZoneName, DaylightZoneName}};
  UpdateClient Update{{State, Window, Files, Dialogs, Programs, Settings, Layer}};

  /// The button CheckUpdate, and how often its window was asked for.
  Control Button;
  int WindowTouches = 0;
  /// How often a sync was started.
  int Syncs = 0;
};

}  // namespace cvl
