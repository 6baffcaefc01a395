// The view: the windows of the models, and the toolkit's loop with the server's inside it.

#pragma once

#include <QApplication>
#include <QMenu>
#include <QSocketNotifier>
#include <QTimer>
#include <memory>

#include "view/qt/qt_message_boxes.h"
#include "view/qt/qt_tray.h"
#include "view/qt/view_events.h"
#include "view/qt/window_widget.h"
#include "view/window_module.h"

namespace cvl {

class QtView final : public WindowModule {
 public:
  QtView();
  ~QtView() override;
  QtView(const QtView &) = delete;
  QtView &operator=(const QtView &) = delete;

  std::string OpenDisplay() override;
  Shell &Tray() override { return Tray_; }
  MessageBoxes &Boxes() override { return Boxes_; }
  void Run(const WindowModels &models) override;

  bool IsOpen() const { return Application_ != nullptr; }

  /// The connection to the display has broken: ends the server, while there is time.
  void OnDisplayGone();

  /// Builds the windows without running a loop.
  void Build(const WindowModels &models);
  /// Brings all that is seen up to the models, and ends when the server's loop has.
  void Refresh();
  /// Takes the windows down. The models are left alone from here on.
  void CloseWindows();

  WindowWidget *Main() const { return Main_.get(); }
  WindowWidget *Configuration() const { return Configuration_.get(); }
  WindowWidget *About() const { return About_.get(); }
  QMenu *TrayMenu() const { return Menu_.get(); }

 private:
  void BuildMenu();
  void ConnectWindow();
  void OnServerReady();
  void RefreshMain();
  void RefreshOthers();
  void Drop(std::unique_ptr<WindowWidget> widget);
  void OnMainStateChange();
  QWidget *WidgetOf(BoxOwner owner) const;

  std::unique_ptr<QApplication> Application_;
  QtTray Tray_;
  QtMessageBoxes Boxes_;

  std::unique_ptr<WindowModels> Models_;
  std::unique_ptr<ViewEvents> Events_;
  std::unique_ptr<QSocketNotifier> Notifier_;
  std::unique_ptr<QTimer> RefreshTimer_;
  std::unique_ptr<QMenu> Menu_;
  std::unique_ptr<WindowWidget> Main_;
  std::unique_ptr<WindowWidget> Configuration_;
  std::unique_ptr<WindowWidget> About_;
  // The models that the secondary windows were built from: another one wants another window.
  const ConfigurationWindow *ConfigurationModel_ = nullptr;
  const AboutBox *AboutModel_ = nullptr;
  // Windows that are closed and not yet destroyed.
  int Dropped_ = 0;
  bool Refreshing_ = false;
};

}  // namespace cvl
