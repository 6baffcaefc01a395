// A window of the toolkit, built from a layout.

#pragma once

#include <QCloseEvent>
#include <QKeyEvent>
#include <QWidget>
#include <functional>
#include <vector>

#include "ui/control_layout.h"
#include "view/qt/mirror.h"
#include "view/qt/view_events.h"

namespace cvl {

class WindowWidget : public QWidget {
 public:
  /// A window of fixed size, centred on the screen. One without an OWNER is a main window, which
  /// can be minimised; one with an owner stays in front of it and is closed by the Escape key.
  WindowWidget(const WindowLayout &layout, ViewEvents &events, QWidget *owner = nullptr);

  /// Brings every widget up to its model.
  void Refresh();

  /// The close button was pressed. The window stays until its model has gone.
  std::function<void()> OnClose;
  /// The window manager has minimised the window, or brought it back.
  std::function<void()> OnStateChange;

  void Centre();

 protected:
  void closeEvent(QCloseEvent *event) override;
  void changeEvent(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;

 private:
  void Add(const PlacedControl &control, ViewEvents &events);
  QWidget *ParentOf(const ControlLayout &layout);
  Mirror Make(const PlacedControl &control, ViewEvents &events, QWidget *parent);

  std::vector<Mirror> Mirrors_;
};

/// Shows WINDOW, if it is hidden or minimised, and makes it the active one.
void BringToFront(QWidget &window);

/// The name of a control's widget: its name, and its index behind it in brackets.
QString WidgetName(std::string_view name, int index);

}  // namespace cvl
