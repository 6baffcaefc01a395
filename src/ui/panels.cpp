#include "ui/panels.h"

#include "base/text.h"
#include "state/service_controls.h"

namespace cvl {

namespace {

const ServiceControls &ControlsOf(std::int16_t panel_index) {
  return AllServiceControls[static_cast<std::size_t>(panel_index)];
}

}  // namespace

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
  const ServiceControls &service = ControlsOf(PanelIndex_);
  PanelEnabled_ = (Window_.*service.MasterBox).IsTicked();
  PanelTCP_ = (Window_.*service.TcpBox).IsTicked();
  PanelUDP_ = (Window_.*service.UdpBox).IsTicked();
  CopyCounts();
}

void Panels::CopyCounts() {
  const ServiceControls &service = ControlsOf(PanelIndex_);
  TcpCount_ = State_.Requests.*service.TcpCount;
  UdpCount_ = State_.Requests.*service.UdpCount;
}

void Panels::RefreshCounts() {
  if (PanelNode_ != 0) CopyCounts();
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
