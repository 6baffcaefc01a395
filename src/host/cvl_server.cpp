#include "host/cvl_server.h"

#include "base/failure_modes.h"
#include "base/text.h"
#include "host/port_state.h"
#include "host/terminal_report.h"

namespace cvl {

namespace {

constexpr std::int32_t TickMs = 1000;

}  // namespace

CVL_Server::CVL_Server(const Platform &platform, std::string command_tail)
    : Platform_(platform),
      CommandTail_(std::move(command_tail)),
      Layer_(platform.Loop, platform.Sockets, platform.Names),
      Time_(platform.MachineClock, State.Dates, State.Zone, Window.svrCurrent),
      Panels_(Window, State),
      Lamps_(Window, State.Flags),
      Texts_(State, Window, Panels_, Lamps_, Time_, platform.Tray),
      Tray_(Window, State, Panels_, Texts_, platform.Tray),
      Others_(platform.Loop, Window, State),
      Log_(State, Time_, platform.ProgramFiles),
      StatusTick_(State, Window, Lamps_, Time_, platform.Loop),
      SvrTime_(platform.Loop, TickMs),
      SyncNow_(platform.Loop, TickMs),
      Sockets_(Layer_),
      Services_(Window, Sockets_),
      Listeners_(Services_, State, Window),
      Boxes_(Services_, Listeners_, Panels_),
      Servers_(Window),
      Draw_(Window, State, Servers_, Time_),
      Schedule_(State, Window, SyncNow_, Texts_, Panels_),
      Exchange_({State, Window, platform.MachineClock, Time_, Servers_, Draw_, Schedule_, Texts_,
                 Sockets_.UDP123, Layer_}),
      TcpTime_({State, Window, platform.MachineClock, Time_, Servers_, Draw_, Schedule_, Exchange_,
                Lamps_, Texts_, Layer_}),
      Context_{State, Window, Sockets_, Time_, Lamps_, Texts_, Log_, platform.Loop},
      DaytimeService_(Context_),
      TimeService_(Context_),
      NtpService_(Context_, Exchange_),
      UnixTimeService_(Context_),
      ClientProtocol_(Context_),
      Registry_(platform.Store, platform.Boxes),
      Settings_({State, Window, platform.ProgramFiles, Registry_, Services_, Listeners_, Servers_,
                 Draw_, Schedule_, Tray_, TcpTime_.StandardZoneName, TcpTime_.DaylightZoneName}),
      Update_({State, Window, platform.ProgramFiles, platform.Boxes, platform.Programs, Settings_,
               Layer_}),
      ServiceStatus_(State, Services_, Listeners_, platform.CVLService) {
  ConnectControls();
  ConnectWindows();
  ConnectServiceEvents();
}

CVL_Server::~CVL_Server() = default;

void CVL_Server::ConnectControls() {
  SvrTime_.OnTimer = [this] {
    StatusTick_.OnTimer();
    ServiceStatus_.Report();
  };
  SyncNow_.OnTimer = [this] { Schedule_.Tick(); };
  Schedule_.SyncTimeNow = [this] { Exchange_.SyncTimeNow(); };
  Settings_.QRBUpdate = [this] { Update_.QRBUpdate(); };
  Update_.CheckUpdate = [this]() -> Control & { return Others_.Configuration().CheckUpdate; };
  Settings_.SyncTimeNow = [this] { Exchange_.SyncTimeNow(); };
  Exchange_.CloseTcpTime = [this] { TcpTime_.tcpTime().Close(); };
  Window.Servers.OnClick = [this] { Servers_.ChooseSelected(); };
  Window.SyncIntC.OnClick = [this] { Schedule_.CalcIntC(); };
  Window.SyncN.OnChange = [this] { Schedule_.FilterSyncN(); };
  Window.SyncN.OnKeyPress = [this](int key) {
    if (key == EnterKey) Schedule_.CalcIntC();
  };
}

void CVL_Server::ConnectServiceEvents() {
  ServiceHost &service = Platform_.CVLService;
  service.Definition = {.Name = "CVLServer", .DisplayName = "Chronvale Server"};
  // The error report of a start or a stop; nothing is written of one without an error.
  const auto report = [this](const char *event, const Failure &failure) {
    if (!failure) return;
    Platform_.CVLService.LogEvent(
        109, 1,
        Joined({GeneralText(Time_.Now()), " --- ", event, " [", std::to_string(failure.Number),
                "] ", failure.Description}));
  };
  service.OnStart = [report](bool &success) {
    report("CVL Start", Trap([&success] { success = true; }));
  };
  service.OnPause = [this](bool &success) {
    State.Flags.ServicePaused = true;
    ServiceStatus_.Report();
    success = true;
  };
  service.OnContinue = [this](bool &success) {
    State.Flags.ServicePaused = false;
    ServiceStatus_.Report();
    success = true;
  };
  service.OnStop = [this, report] {
    report("CVL Stop", Trap([this] {
             ExitRequested_ = true;
             Unload(UnloadMode::FromCode);
           }));
  };
}

std::string CVL_Server::TerminalReport(const std::string &settings_obstacle) const {
  const Files &files = Platform_.ProgramFiles;
  const std::string server_file = files.InProgramDirectory(ServerList::FileName);
  const std::string inside = files.InProgramDirectory("");
  return cvl::TerminalReport({.Version = State.Start.ProgramVersion,
                              .ProgramDirectory = inside.substr(0, inside.size() - 1),
                              .Ports = PortStates(Services_, Listeners_),
                              .MissingServerFile = files.Exists(server_file) ? "" : server_file,
                              .SettingsObstacle = settings_obstacle,
                              .CommandTail = CommandTail_});
}

void CVL_Server::MnuExit() {
  ExitRequested_ = true;
  Unload(UnloadMode::FromCode);
}

void CVL_Server::Unload(UnloadMode mode) {
  if (Unloading_) return;
  Unloading_ = true;
  LastUnloadMode_ = mode;
  SvrTime_.SetEnabled(false);
  SyncNow_.SetEnabled(false);
  Exchange_.Cancel();
  Layer_.Shut();
  for (SlotArray *slots :
       {&Sockets_.TCP37, &Sockets_.TCP13, &Sockets_.TCP123, &Sockets_.TCP519, &Sockets_.TCP3777}) {
    (*slots)[0].Close();
  }
  Sockets_.UDP3777.Close();
  Sockets_.UDP519.Close();
  Sockets_.UDP123.Close();
  Sockets_.UDP13.Close();
  Sockets_.UDP37.Close();

  ContinueOnFailure steps;
  steps.Step([this] { Settings_.WriteSettings(); });
  steps.Step([this] { Platform_.Tray.Shell_NotifyIcon(TrayMessage::Remove, {}); });
  steps.Step([this] { Others_.CloseConfiguration(); });
  steps.Step([this] {
    if (LastUnloadMode_ == UnloadMode::CloseButton || ExitRequested_) Others_.CloseAbout();
  });
  Platform_.Loop.Quit();
}

}  // namespace cvl
