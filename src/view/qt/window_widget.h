// A window of the toolkit, built from a layout.

#pragma once

#include <QCloseEvent>
#include <QWidget>
#include <functional>
#include <vector>

#include "ui/control_layout.h"
#include "view/qt/mirror.h"
#include "view/qt/view_events.h"

namespace cvl {

class WindowWidget : public QWidget {
 public:
  /// A fixed size, a close button, and a minimise button if MINIMISES; centred on the screen.
  enum class Minimises { No, Yes };
  WindowWidget(const WindowLayout &layout, Minimises minimises, ViewEvents &events);

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

 private:
  void Add(const PlacedControl &control, ViewEvents &events);
  QWidget *ParentOf(const ControlLayout &layout);
  Mirror Make(const PlacedControl &control, ViewEvents &events, QWidget *parent);

  std::vector<Mirror> Mirrors_;
};

/// The name of a control's widget: its name, and its index behind it in brackets.
QString WidgetName(std::string_view name, int index);

}  // namespace cvl
