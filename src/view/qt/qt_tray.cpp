#include "view/qt/qt_tray.h"

#include <string>

#include "view/qt/qt_images.h"
#include "view/qt/qt_text.h"

namespace cvl {

namespace {

/// The tip up to its terminator, without the blanks that fill it up.
QString TipText(const std::string &tip) {
  return FromModel(std::string_view(tip).substr(0, tip.find('\0'))).trimmed();
}

}  // namespace

void QtTray::Abandon() {
  static_cast<void>(Entry_.release());
  Abandoned_ = true;
}

void QtTray::Shell_NotifyIcon(TrayMessage message, const TrayIcon &icon) {
  if (Abandoned_) return;
  if (message == TrayMessage::Remove) {
    if (Entry_) Entry_->hide();
    Entry_.reset();
    return;
  }
  if (!Entry_) {
    if (message == TrayMessage::Modify) return;
    Entry_.reset(new QSystemTrayIcon);
    QObject::connect(Entry_.get(), &QSystemTrayIcon::activated, Entry_.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) { OnActivated(reason); });
  }
  Entry_->setIcon(icon.Icon == 0 ? WindowIcon() : TableIcon(icon.Icon));
  Entry_->setToolTip(TipText(icon.Tip));
  Entry_->show();
}

void QtTray::SetForegroundWindow() {
  if (Window != nullptr) Window->activateWindow();
}

void QtTray::OnActivated(QSystemTrayIcon::ActivationReason reason) {
  if (!OnEvent) return;
  switch (reason) {
    case QSystemTrayIcon::Trigger:
      OnEvent(TrayEvent::LeftUp);
      break;
    case QSystemTrayIcon::DoubleClick:
      OnEvent(TrayEvent::LeftDoubleClick);
      break;
    case QSystemTrayIcon::Context:
      OnEvent(TrayEvent::RightUp);
      break;
    default:
      break;
  }
}

}  // namespace cvl
