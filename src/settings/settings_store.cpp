#include "settings/settings_store.h"

#include "base/text.h"

namespace cvl {

namespace {

constexpr std::int16_t UsualReplyHeader = 36;

}  // namespace

void SettingsStore::ReadCVLFile() {
  const std::string path = Parts_.ProgramFiles.InProgramDirectory(ServerList::FileName);
  if (!Parts_.ProgramFiles.Exists(path)) {
    if (QRBUpdate) QRBUpdate();
    return;
  }
  ReadServerFile(path);
  Parts_.State.Flags.UseJulian = true;
  Parts_.State.Flags.EnableLogging = true;
  Parts_.State.Sync.ReplyHeaderByte = UsualReplyHeader;
  TickServices();
  Parts_.Schedule.CalcIntC();
  Parts_.Draw.CalcRandR();
  Parts_.Window.Servers.Select(1);
}

void SettingsStore::ReadServerFile(const std::string &path) {
  const std::unique_ptr<std::istream> file = Parts_.ProgramFiles.OpenForInput(path);
  Parts_.Servers.Read(*file);
}

void SettingsStore::TickServices() {
  struct Row {
    Service &Of;
    Tick Udp;
  };
  for (const Row &row :
       {Row{Parts_.Services.Time, Tick::On}, Row{Parts_.Services.Ntp, Tick::On},
        Row{Parts_.Services.Unix, Tick::Off}, Row{Parts_.Services.Client, Tick::Off}}) {
    row.Of.MasterBox.SetValue(Tick::On);
    row.Of.TcpBox.Visible = true;
    row.Of.UdpBox.Visible = true;
    row.Of.TcpBox.SetValue(Tick::On);
    Parts_.Listening.LoadServers(row.Of.TcpCode);
    if (row.Udp == Tick::Off) continue;
    row.Of.UdpBox.SetValue(Tick::On);
    Parts_.Listening.LoadServers(row.Of.UdpCode);
  }
}

void SettingsStore::WriteSettings() {}

}  // namespace cvl
