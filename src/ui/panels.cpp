#include "ui/panels.h"

#include "base/text.h"

namespace cvl {

/// What belongs to a panel.
struct Panels::Row {
  CheckBox MainWindow::*Enable;
  CheckBox MainWindow::*Tcp;
  CheckBox MainWindow::*Udp;
  std::int32_t RequestCounters::*TcpCount;
  std::int32_t RequestCounters::*UdpCount;

  static const Row &Of(std::int16_t panel_index) {
    static constexpr Row Rows[] = {
        {&MainWindow::eNTP, &MainWindow::eTCP37, &MainWindow::eUDP37, &RequestCounters::ReqTCP37,
         &RequestCounters::ReqUDP37},
        {&MainWindow::eDTS, &MainWindow::eTCP13, &MainWindow::eUDP13, &RequestCounters::ReqTCP13,
         &RequestCounters::ReqUDP13},
        {&MainWindow::eSNTP, &MainWindow::eTCP123, &MainWindow::eUDP123,
         &RequestCounters::ReqTCP123, &RequestCounters::ReqUDP123},
        {&MainWindow::eUnix, &MainWindow::eTCP519, &MainWindow::eUDP519,
         &RequestCounters::ReqTCP519, &RequestCounters::ReqUDP519},
        {&MainWindow::eCVLS, &MainWindow::eTCP3777, &MainWindow::eUDP3777,
         &RequestCounters::ReqTCP3777, &RequestCounters::ReqUDP3777},
    };
    return Rows[panel_index];
  }
};

void Panels::CVLSelected(std::int16_t node) {
  if (node == 7) {
    if (ShowAboutBox) ShowAboutBox();
    return;
  }
  if (node == 8) {
    if (ShowConfiguration) ShowConfiguration();
    return;
  }
  if (node >= 1 && node <= 6) {
    PanelIndex_ = static_cast<std::int16_t>(node == 1 ? 0 : node - 2);
    PanelNode_ = static_cast<std::int16_t>(PanelIndex_ + 1);
    ReadBoxes();
  }
  for (std::size_t panel = 0; panel < Window_.proto_f.size(); ++panel) {
    const bool up = panel == static_cast<std::size_t>(PanelIndex_);
    Window_.proto_f[panel].Visible = up;
    Window_.CVLRemHost[panel].Visible = up;
  }
  BuildText();
  if (State_.Flags.Interactive) Window_.svrStatlbl.Caption = StatusText();
}

void Panels::ReadBoxes() {
  const Row &row = Row::Of(PanelIndex_);
  PanelEnabled_ = (Window_.*row.Enable).IsTicked();
  PanelTCP_ = (Window_.*row.Tcp).IsTicked();
  PanelUDP_ = (Window_.*row.Udp).IsTicked();
  TcpCount_ = State_.Requests.*row.TcpCount;
  UdpCount_ = State_.Requests.*row.UdpCount;
}

void Panels::RefreshCounts() {
  if (PanelNode_ != 0) {
    const Row &row = Row::Of(PanelIndex_);
    TcpCount_ = State_.Requests.*row.TcpCount;
    UdpCount_ = State_.Requests.*row.UdpCount;
  }
  BuildText();
}

const std::string &Panels::StatusText() const {
  if (TextIsStale_) {
    StatusText_ = Joined(
        {"Server is: ", PanelEnabled_ ? "Enabled" : "Disabled", "\r\n",
         PanelTCP_ ? "TCP: ON - " : "TCP: OFF - ", PanelUDP_ ? "UDP: ON" : "UDP: OFF",
         "\r\nRequests: ", std::to_string(TcpCount_), "/t - ", std::to_string(UdpCount_), "/u"});
    TextIsStale_ = false;
  }
  return StatusText_;
}

}  // namespace cvl
