#include "status/tray_entry.h"

namespace cvl {

TrayEntry::TrayEntry(MainWindow &window, const RunState &state, Panels &panels, StatusTexts &texts,
                     Shell &shell)
    : Window_(window), State_(state), Panels_(panels), Texts_(texts), Shell_(shell) {}

void TrayEntry::OnResize(WindowState state) {
  Window_.State = state;
  Panels_.CVLSelected(static_cast<std::int16_t>(Panels_.PanelNode() + 1));
  Texts_.UpdateSZTIP();
  const TrayIcon icon{State_.Status.TrayImage, State_.Status.TipText.Text()};
  if (state == WindowState::Minimized) {
    Window_.Visible = false;
    Shell_.Shell_NotifyIcon(TrayMessage::Add, icon);
  } else {
    Shell_.Shell_NotifyIcon(TrayMessage::Remove, icon);
  }
}

void TrayEntry::Minimise() {
  if (Window_.Visible) {
    OnResize(WindowState::Minimized);
  } else {
    Window_.State = WindowState::Minimized;
  }
}

void TrayEntry::OnTrayEvent(TrayEvent event) {
  switch (event) {
    case TrayEvent::LeftUp:
    case TrayEvent::LeftDoubleClick:
      Restore();
      break;
    case TrayEvent::RightUp:
      Shell_.SetForegroundWindow();
      Window_.mnuMain.PopUp();
      break;
  }
}

void TrayEntry::Restore() {
  OnResize(WindowState::Normal);
  Window_.Visible = true;
}

}  // namespace cvl
