// The settings store between a registry in memory and the boxes of a window, with the
// services' sockets on a network without a kernel. The server file has one server.

#pragma once

#include <string>
#include <vector>

#include "settings/registry.h"
#include "settings/settings_store.h"
#include "tests/services/service_bench.h"
#include "tests/support/fake_message_boxes.h"
#include "tests/support/fake_registry.h"

namespace cvl {

class SettingsTest : public ServiceTest {
 protected:
  SettingsTest() {
    State.Sync.ReplyHeaderByte = 0;
    State.RegionCode = "NA";
    WriteServerFile("10.77.0.2:::Some server NA:::7:::0\r\n");
    Settings.QRBUpdate = [this] { ++UpdatesStarted; };
    Settings.SyncTimeNow = [this] { ++SyncsStarted; };
  }

  static constexpr const char *ServerFile = "/program/QRB_CVLS4.CVL";

  void WriteServerFile(const std::string &lines) {
    Files.Contents[ServerFile] = "1\r\n2\r\n3\r\n4\r\n5\r\n" + lines;
  }

  void Store(const std::string &name, const std::string &text) {
    Registered.Put(FakeRegistry::SettingsKey, name, text);
  }
  std::string Stored(const std::string &name) {
    return Registered.Text(FakeRegistry::SettingsKey, name);
  }

  FakeRegistry Registered;
  FakeMessageBoxes MessageBox;
  Registry Reg{Registered, MessageBox};
  std::string StandardZoneName;
  std::string DaylightZoneName;
  TrayEntry Entry{Window, State, Panel, Texts, Tray};
  SettingsStore Settings{{State, Window, Files, Reg, Services, Listening, Servers, Draw, Schedule,
                          Entry, StandardZoneName, DaylightZoneName}};
  int UpdatesStarted = 0;
  int SyncsStarted = 0;
};

}  // namespace cvl
