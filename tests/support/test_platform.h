// A whole system for a server to run on, without a kernel: every interface is a fake that
// stands still until a test moves it.
//
//   TestPlatform platform;
//   platform.Files.Contents["/program/QRB_CVLS4.CVL"] = "...";
//   CVL_Server server(platform.Interfaces(), "-config");
//   server.Load();
//   platform.Loop.Advance(1000);
//
// What the server asks of the system is written to Journal, from all interfaces in one
// order.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"
#include "tests/support/call_journal.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_files.h"
#include "tests/support/fake_message_boxes.h"
#include "tests/support/fake_network.h"
#include "tests/support/fake_program_starter.h"
#include "tests/support/fake_registry.h"
#include "tests/support/fake_resolver.h"
#include "tests/support/fake_shell.h"
#include "tests/support/test_loop.h"
#include "tests/support/watched_files.h"
#include "tests/support/watched_network.h"
#include "tests/support/watched_registry.h"

namespace cvl {

class FakeHost final : public Host {
 public:
  explicit FakeHost(CallJournal &journal) : Journal_(journal) {}

  bool IsAnotherInstance = false;
  std::string User = "SYSTEM";

  [[nodiscard]] bool ClaimSingleInstance() override;
  std::string ClaimObstacle() const override { return IsAnotherInstance ? "another one" : ""; }
  std::string UserName() override;

 private:
  CallJournal &Journal_;
};

class FakeDesktop final : public Desktop {
 public:
  explicit FakeDesktop(CallJournal &journal) : Journal_(journal) {}

  /// What stands in the way of a window.
  std::string InTheWay;
  /// Addresses that were opened.
  std::vector<std::string> Opened;

  std::string Obstacle() override;
  void OpenAddress(const std::string &address) override { Opened.push_back(address); }
  void OpenDateAndTime() override { Journal_.Add("date and time dialog"); }

 private:
  CallJournal &Journal_;
};

class FakeServiceHost final : public ServiceHost {
 public:
  struct Record {
    int Type;
    int Id;
    std::string Text;

    friend bool operator==(const Record &, const Record &) = default;
  };

  explicit FakeServiceHost(CallJournal &journal) : Journal_(journal) {}

  /// Whether Install and Uninstall go well.
  bool Obeys = true;
  /// The failure of StartService, 0 for none. Without one it raises Start.
  int StartError = 0;

  /// The event log.
  std::vector<Record> Log;
  /// What the manager was told about the service, line by line.
  std::vector<std::string> Statuses;

  // The service manager's controls; each returns the event's success flag.
  bool Pause();
  bool Continue();
  void Stop();

  void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  [[nodiscard]] bool Install() override;
  [[nodiscard]] bool Uninstall() override;
  void LogEvent(int type, int id, std::string_view text) override;
  void StartService() override;
  void ReportStatus(std::string_view text) override { Statuses.emplace_back(text); }

 private:
  CallJournal &Journal_;
};

class TestPlatform {
 public:
  /// The interfaces to hand to a server; this object outlives it.
  Platform Interfaces();

  CallJournal Journal;
  TestLoop Loop;
  FakeClock Clock;
  FakeNetwork Net{Loop};
  FakeResolver Resolver{Loop};
  FakeFiles Files;
  FakeHost Machine{Journal};
  FakeServiceHost Service{Journal};
  FakeShell Tray{&Journal};
  FakeDesktop Screen{Journal};
  FakeRegistry Store;
  FakeMessageBoxes Boxes;
  FakeProgramStarter Programs;

 private:
  WatchedNetwork WatchedNet_{Net, Journal};
  WatchedFiles WatchedFiles_{Files, Journal};
  WatchedRegistry WatchedStore_{Store, Journal};
};

}  // namespace cvl
