// A whole server on a system without a kernel. The clock stands at 3 October 2002,
// 12:00:00.250, in a zone at UTC; the server file lists 10.0.0.1 and 10.0.0.2 in region NA,
// the store has settings that take the first of them and open the ports of NTP.
//
//   Load("-config");
//   System.Loop.Advance(1000);
//   EXPECT_EQ(Server->Window.Visible, true);

#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/cvl_server.h"
#include "sync/sync_exchange.h"
#include "tests/support/expect_error.h"
#include "tests/support/test_platform.h"

namespace cvl {

class HostTest : public testing::Test {
 protected:
  HostTest() {
    System.Files.Contents[ServerFile] =
        "1\n2\n3\n4\n5\n10.0.0.1:::One NA:::7:::0\n10.0.0.2:::Two NA:::8:::0\n";
    Store("Settings", "NO:59:Minutes/s:NA:36");
    Store("SNTP123", "YES:YES:YES:123");
  }

  // What the test does.

  void Store(const std::string &name, const std::string &value) {
    System.Store.Put(FakeRegistry::SettingsKey, name, value);
  }

  /// Opens the ports of all services.
  void StoreAllServices() {
    Store("NTP37", "YES:YES:YES:37");
    Store("UNIX519", "YES:YES:YES:519");
    Store("CVL3777", "YES:YES:YES:3777");
    Store("DTS13", "YES:YES:YES:13");
  }

  /// Makes a server and runs its load step.
  Loaded Load(const std::string &command_tail = "") {
    Server = std::make_unique<CVL_Server>(System.Interfaces(), command_tail);
    return Server->Load();
  }

  /// Has the server of the list answer the request that is out.
  void Synchronise() {
    NtpPacket reply{};
    const NtpTimestamp &stamp = Server->State.Sync.SyncStamp;
    std::copy(stamp.begin(), stamp.end(), reply.begin() + 24);
    const std::uint8_t noon[] = {0xC1, 0x46, 0xAF, 0xC0};
    std::copy(std::begin(noon), std::end(noon), reply.begin() + 40);
    ASSERT_TRUE(System.Net.Arrive(123, At("10.0.0.1", 123), reply));
    System.Loop.Drain();
    ASSERT_TRUE(Server->State.Flags.TimeSynced);
  }

  /// Calls LOOK when the server makes the call for the first time. What it raises comes out
  /// of the call.
  void When(const std::string &call, std::function<void()> look) {
    System.Journal.OnCall = [this, call, look](const std::string &made) {
      if (made != call || HasLooked) return;
      HasLooked = true;
      look();
    };
  }

  // What the test sees.

  bool HasCalled(const std::string &call) const {
    return std::find(Calls().begin(), Calls().end(), call) != Calls().end();
  }

  const std::vector<std::string> &Calls() const { return System.Journal.Calls; }

  static constexpr const char *ServerFile = "/program/QRB_CVLS4.CVL";
  static constexpr const char *NoonText = "10/3/2002 12:00:00 PM";

  TestPlatform System;
  bool HasLooked = false;
  std::unique_ptr<CVL_Server> Server;
};

}  // namespace cvl
