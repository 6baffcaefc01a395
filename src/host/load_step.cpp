// The load step of CVL_Server, in its order. No step may be moved: each depends on what
// those before it left behind.

#include "base/failure_modes.h"
#include "base/text.h"
#include "base/version.h"
#include "host/command_help.h"
#include "host/cvl_server.h"
#include "platform/maker_host.h"
#include "time/base_dates.h"

namespace cvl {

namespace {

constexpr const char *SupportAddress = "support@chronvale.example";

/// The record that tells how an installation went: date, dashes, and what happened.
constexpr int InstallEventType = 4;
constexpr int InstallEventId = 110;

}  // namespace

Loaded CVL_Server::Load() {
  if (!Platform_.Machine.ClaimSingleInstance()) {
    Obstacle_ = Platform_.Machine.ClaimObstacle();
    return Loaded::AnotherInstance;
  }
  const std::string_view first_word = FirstWordOf(CommandTail_);
  if (first_word == "-debug" || first_word == "-config") {
    Obstacle_ = Platform_.Screen.Obstacle();
    if (!Obstacle_.empty()) return Loaded::NoWindow;
  }
  State.Start.ProgramVersion = VersionText;
  State.Start.MakerHost = MakerHostName();
  SetDates();
  TakeSyncStamp();
  State.Dates.Guard = State.Dates.DateBase100;
  Time_.svrBIAS();
  State.Start.OSUserName = Platform_.Machine.UserName();
  BuildStaticContents();
  Settings_.ReadCVLFile();
  TakeStart();
  TakeReference();
  HideWindow();

  Loaded loaded = Loaded::Running;
  const Failure unheard = Trap([&] { loaded = RunFromCommandLine(); });
  static_cast<void>(unheard);
  return loaded;
}

void CVL_Server::SetDates() {
  SetBaseDates(State.Dates);
  State.Dates.ClientEpoch = DateTime::Of(2002, 1, 1);
  State.Dates.StampEpoch = DateTime::Of(1978, 8, 3);
}

void CVL_Server::TakeSyncStamp() {
  State.Dates.UseStampEpoch = true;
  State.Sync.SyncStamp = Time_.GrabTime();
  State.Dates.UseStampEpoch = false;
}

void CVL_Server::BuildStaticContents() {
  constexpr int RootImage = 1;
  constexpr int ServiceImage = 35;
  TreeView &tree = Window.CVL_TV;
  tree.Add("CVL Servers", 0, RootImage);
  tree.Add("Time Service Server", 1, ServiceImage);
  tree.Add("Daytime Service Server", 1, ServiceImage);
  tree.Add("SNTP v4 Service Server", 1, ServiceImage);
  tree.Add("UnixTime Service Server", 1, ServiceImage);
  tree.Add("CVL Server Client Server", 1, ServiceImage);
  tree.Add("CVL About/Help", 0, RootImage);
  tree.Add("CVL Advanced Config", 0, RootImage);
  tree.Nodes[0].Expanded = true;
  State.RegionCode = "NA";
  for (Picture &lamp : Window.LED) {
    lamp.Image = LampDarkImage;
  }
  Window.SyncIntC.List = {"Second/s", "Minute/s", "Hour/s", "Day/s"};
}

void CVL_Server::TakeStart() {
  State.Sync.SyncMessage = Window.Caption;
  State.Sync.LastSync = Time_.Now();
  State.Status.TipText = Joined({"Chronvale SERVER ", std::string_view("\0", 1)});
  State.Start.StartTimeText = GeneralText(Time_.Now());
  // Whatever the settings say: the log is on at the start of every run, and off only for
  // the rest of one.
  State.Flags.EnableLogging = true;
}

void CVL_Server::TakeReference() {
  State.Sync.ReferenceStamp = Time_.GrabTime();
  State.Start.LocalHostName = Sockets_.TCP123[0].LocalHostName();
  State.Start.LocalIP = Sockets_.TCP123[0].LocalIP();
}

void CVL_Server::HideWindow() {
  Window.Visible = false;
  Window.InTaskList = false;
}

Loaded CVL_Server::RunFromCommandLine() {
  if (!CommandTail_.empty()) {
    GetCommandLine();
    if (ActOnFirstWord() == Loaded::Ended) return Loaded::Ended;
  }
  Platform_.CVLService.StartService();
  Panels_.CVLSelected(1);
  Exchange_.SyncTimeNow();
  return Loaded::Running;
}

void CVL_Server::GetCommandLine() {
  CommandArgs_ = Split(CommandTail_, " ");
}

Loaded CVL_Server::ActOnFirstWord() {
  const std::string &word = CommandArgs_.front();
  if (word == "-install") {
    InstallService();
    return Loaded::Ended;
  }
  if (word == "-uninstall") {
    UninstallService();
    return Loaded::Ended;
  }
  if (word == "-rs") Window.Visible = false;
  if (word == "-debug" || word == "-config") ShowWindow();
  return Loaded::Running;
}

void CVL_Server::InstallService() {
  ServiceHost &service = Platform_.CVLService;
  service.SaveSetting("", "Description", "Chronvale Server Services");
  service.Definition.Interactive = false;
  const bool installed = service.Install();
  service.LogEvent(
      InstallEventType, InstallEventId,
      Joined({GeneralText(Time_.Now()), " --- ",
              installed ? "[CVL Server installed successfully!] "
                        : Joined({"[CVL Server failed to install - please contact us at ",
                                  SupportAddress, "!] "})}));
}

void CVL_Server::UninstallService() {
  ServiceHost &service = Platform_.CVLService;
  const bool removed = service.Uninstall();
  service.LogEvent(InstallEventType, InstallEventId,
                   Joined({GeneralText(Time_.Now()), " --- ",
                           removed ? "[CVL Server uninstalled successfully!] "
                                   : "[CVL Server failed to uninstall!] "}));
}

void CVL_Server::ShowWindow() {
  Platform_.CVLService.Definition.Debug = true;
  Window.Visible = true;
  // The show comes with a resize; that of a window which starts minimised takes it into the
  // tray.
  Tray_.OnResize(Window.State);
  Window.InTaskList = true;
  State.Flags.Interactive = true;
}

}  // namespace cvl
