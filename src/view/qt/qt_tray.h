// The tray entry on the desktop.

#pragma once

#include <QSystemTrayIcon>
#include <QWidget>
#include <functional>
#include <memory>

#include "platform/shell.h"

namespace cvl {

class QtTray final : public Shell {
 public:
  void Shell_NotifyIcon(TrayMessage message, const TrayIcon &icon) override;
  void SetForegroundWindow() override;

  /// Whether the desktop has a tray to go into.
  static bool IsThere() { return QSystemTrayIcon::isSystemTrayAvailable(); }

  /// Its entry went with the display: does nothing from here on.
  void Abandon();

  /// What a hand does to the entry.
  std::function<void(TrayEvent)> OnEvent;
  /// The main window, once there is one.
  QWidget *Window = nullptr;

 private:
  void OnActivated(QSystemTrayIcon::ActivationReason reason);

  std::unique_ptr<QSystemTrayIcon, void (*)(QSystemTrayIcon *)> Entry_{
      nullptr, [](QSystemTrayIcon *entry) { entry->deleteLater(); }};
  bool Abandoned_ = false;
};

}  // namespace cvl
