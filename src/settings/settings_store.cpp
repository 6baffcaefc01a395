#include "settings/settings_store.h"

#include "base/number_text.h"
#include "base/text.h"

namespace cvl {

namespace {

constexpr std::string_view SettingsKey = "Software\\Chronvale Server";
constexpr std::string_view ZoneKey = "SYSTEM\\CurrentControlSet\\Control\\TimeZoneInformation";
constexpr std::string_view RunKey = "SOFTWARE\\MICROSOFT\\WINDOWS\\CURRENTVERSION\\RUN";

/// The first byte of an NTP reply: no leap second ahead, version 4, mode server (RFC 5905).
constexpr std::int16_t UsualReplyHeader = 36;
constexpr const char *UsualRegion = "NA";

constexpr std::size_t SettingsFields = 5;
constexpr std::size_t FewestSettingsFields = 4;
constexpr std::size_t ServiceFields = 4;

/// The values that a first run writes, in its order.
constexpr struct {
  std::string_view Name;
  std::string_view Value;
} Defaults[] = {
    {"Settings", "YES:59:Minutes/s:NA:36"},
    {"OpenMinimized", "NO"},
    {"NTP37", "YES:YES:YES:37"},
    {"EnableLogging", "YES"},
    {"SNTP123", "YES:YES:YES:123"},
    {"UNIX519", "YES:YES:NO:519"},
    {"CVL3777", "YES:YES:NO:3777"},
    {"DTS13", "NO:YES:YES:13"},
    {"UseJulian", "YES"},
};

bool IsYes(std::string_view field) {
  return field == "YES";
}

Tick TickOf(std::string_view field) {
  return IsYes(field) ? Tick::On : Tick::Off;
}

std::string ServiceText(const Service &service) {
  return Joined({FlagText(service.MasterBox.IsTicked()), ":", FlagText(service.TcpBox.IsTicked()),
                 ":", FlagText(service.UdpBox.IsTicked()), ":", service.PortBox.Text()});
}

}  // namespace

void SettingsStore::ReadCVLFile() {
  const std::string path = Parts_.ProgramFiles.InProgramDirectory(ServerList::FileName);
  if (!Parts_.ProgramFiles.Exists(path)) {
    if (QRBUpdate) QRBUpdate();
    return;
  }
  ReadServerFile(path);
  ReadForeignValues();
  if (Read("Settings").empty()) {
    FirstRun();
  } else {
    ReadSettings();
  }
  CloseReading();
}

void SettingsStore::ReadServerFile(const std::string &path) {
  const std::unique_ptr<std::istream> file = Parts_.ProgramFiles.OpenForInput(path);
  Parts_.Servers.Read(*file);
}

void SettingsStore::ReadForeignValues() {
  Parts_.DaylightZoneName = Parts_.Store.RegReadString(ZoneKey, "DaylightName");
  Parts_.StandardZoneName = Parts_.Store.RegReadString(ZoneKey, "StandardName");
  if (!Parts_.Store.RegReadString(RunKey, "Chronvale Server").empty()) StartsWithSystem = true;
}

void SettingsStore::ReadSettings() {
  if (IsYes(Read("OpenMinimized"))) Parts_.Tray.Minimise();
  if (IsYes(Read("UseJulian"))) Parts_.State.Flags.UseJulian = true;
  if (IsYes(Read("EnableLogging"))) Parts_.State.Flags.EnableLogging = true;

  const std::vector<std::string> fields = Split(Read("Settings"), ":", SettingsFields);
  if (fields.size() < FewestSettingsFields) return;
  Parts_.Window.RandomCheck.SetValue(TickOf(fields[0]));
  if (IsNumeric(fields[1])) Parts_.Window.SyncN.SetText(fields[1]);
  Parts_.Window.SyncIntC.SetText(fields[2]);
  const std::string_view region = Trim(fields[3]);
  Parts_.State.RegionCode = region.empty() ? UsualRegion : region;
  // The fifth field is written at each unload and never read back. It is meant so: whatever
  // a store holds there, replies go out with the usual header.
  Parts_.State.Sync.ReplyHeaderByte = UsualReplyHeader;

  const ServiceTable &services = Parts_.Services;
  for (const Service *service :
       {&services.Time, &services.Ntp, &services.Unix, &services.Client, &services.Daytime}) {
    ReadService(*service);
  }
}

void SettingsStore::ReadService(const Service &service) {
  const std::vector<std::string> fields = Split(Read(service.Setting), ":", ServiceFields);
  if (fields.size() < ServiceFields || !IsYes(fields[0])) return;
  service.MasterBox.SetValue(Tick::On);
  service.TcpBox.Visible = true;
  service.UdpBox.Visible = true;
  service.PortBox.SetText(fields[3]);
  if (IsYes(fields[1])) OpenSocket(service.TcpBox, service.TcpCode);
  if (IsYes(fields[2])) OpenSocket(service.UdpBox, service.UdpCode);
}

void SettingsStore::OpenSocket(CheckBox &box, std::string_view code) {
  // The tick opens the socket and the call opens it again. On a later reading in the same
  // run the box is ticked already and only the call is left.
  box.SetValue(Tick::On);
  Parts_.Listening.LoadServers(code);
}

void SettingsStore::FirstRun() {
  std::string path = Joined({"HKEY_LOCAL_MACHINE\\", SettingsKey});
  Parts_.Store.RegCreateKeyPath(path);
  for (const auto &setting : Defaults) {
    Write(setting.Name, setting.Value);
  }
  Parts_.State.Flags.UseJulian = true;
  const auto enable = [](const Service &service) {
    service.MasterBox.SetValue(Tick::On);
    service.TcpBox.Visible = true;
    service.UdpBox.Visible = true;
  };
  enable(Parts_.Services.Time);
  Parts_.Services.Daytime.MasterBox.SetValue(Tick::Off);
  Parts_.State.Flags.EnableLogging = true;
  enable(Parts_.Services.Ntp);
  enable(Parts_.Services.Unix);
  enable(Parts_.Services.Client);
  Parts_.State.Sync.ReplyHeaderByte = UsualReplyHeader;
}

void SettingsStore::CloseReading() {
  Parts_.Schedule.CalcIntC();
  Parts_.Draw.CalcRandR();
  if (Parts_.Window.Servers.Count() > 0) Parts_.Window.Servers.Select(1);
  if (!FileRequested) return;
  FileRequested = false;
  if (SyncTimeNow) SyncTimeNow();
}

void SettingsStore::WriteSettings() {
  const MainWindow &window = Parts_.Window;
  Write("Settings", Joined({FlagText(window.RandomCheck.IsTicked()), ":", window.SyncN.Text(), ":",
                            window.SyncIntC.Text(), ":", Parts_.State.RegionCode, ":",
                            std::to_string(Parts_.State.Sync.ReplyHeaderByte)}));
  Write("EnableLogging", FlagText(Parts_.State.Flags.EnableLogging));
  const ServiceTable &services = Parts_.Services;
  for (const Service *service :
       {&services.Time, &services.Unix, &services.Ntp, &services.Client, &services.Daytime}) {
    Write(service->Setting, ServiceText(*service));
  }
}

std::string SettingsStore::Read(std::string_view value_name) {
  return Parts_.Store.RegReadString(SettingsKey, value_name);
}

void SettingsStore::Write(std::string_view value_name, std::string_view value) {
  static_cast<void>(
      Parts_.Store.RegWriteString(RegistryRoot::LocalMachine, SettingsKey, value_name, value));
}

}  // namespace cvl
