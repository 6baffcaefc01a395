#include "view/qt/window_widget.h"

#include <QGuiApplication>
#include <QScreen>

#include "view/qt/button_widget.h"
#include "view/qt/control_widgets.h"
#include "view/qt/qt_images.h"
#include "view/qt/qt_text.h"

namespace cvl {

namespace {

template <class... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <class... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

Qt::WindowFlags FlagsFor(const QWidget *owner) {
  // On X11 a window belongs to another one only if it is a dialog.
  Qt::WindowFlags flags = (owner == nullptr ? Qt::Window : Qt::Dialog) | Qt::CustomizeWindowHint |
                          Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowCloseButtonHint;
  if (owner == nullptr) flags |= Qt::WindowMinimizeButtonHint;
  return flags;
}

}  // namespace

QString WidgetName(std::string_view name, int index) {
  const QString made = FromModel(name);
  return index < 0 ? made : QStringLiteral("%1(%2)").arg(made).arg(index);
}

void BringToFront(QWidget &window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}

WindowWidget::WindowWidget(const WindowLayout &layout, ViewEvents &events, QWidget *owner)
    : QWidget(owner, FlagsFor(owner)) {
  setObjectName(FromModel(layout.Name));
  setWindowIcon(WindowIcon());
  setFixedSize(layout.Width / TwipsPerPixel, layout.Height / TwipsPerPixel);
  QWidget *before = nullptr;
  for (const PlacedControl &control : layout.Controls) {
    Add(control, events);
    QWidget *widget = Mirrors_.back().Widget;
    if (widget->focusPolicy() == Qt::NoFocus) continue;
    if (before != nullptr) setTabOrder(before, widget);
    before = widget;
  }
  Refresh();
  Centre();
}

void WindowWidget::Add(const PlacedControl &control, ViewEvents &events) {
  const ControlLayout &layout = *control.Layout;
  Mirror mirror = Make(control, events, ParentOf(layout));
  mirror.Widget->setObjectName(WidgetName(layout.Name, layout.Index));
  if (!layout.SpokenName.empty()) {
    mirror.Widget->setAccessibleName(FromModel(layout.SpokenName));
  }
  const Place &at = layout.At;
  mirror.Widget->setGeometry(at.Left / TwipsPerPixel, at.Top / TwipsPerPixel,
                             at.Width / TwipsPerPixel, at.Height / TwipsPerPixel);
  if (!mirror.Refresh) {
    mirror.Widget->setVisible(layout.Visible);
    mirror.Widget->setToolTip(FromModel(layout.Tip));
  }
  Mirrors_.push_back(std::move(mirror));
}

QWidget *WindowWidget::ParentOf(const ControlLayout &layout) {
  if (layout.Parent.empty()) return this;
  auto *parent = findChild<QWidget *>(WidgetName(layout.Parent, layout.ParentIndex));
  Q_ASSERT(parent != nullptr);
  return parent;
}

Mirror WindowWidget::Make(const PlacedControl &control, ViewEvents &events, QWidget *parent) {
  const ControlLayout &layout = *control.Layout;
  return std::visit(
      Overloaded{
          [&](std::monostate) {
            switch (layout.Kind) {
              case ControlKind::Frame:
                return MakeFrame(layout, parent);
              case ControlKind::Image:
                return MakeImage(layout, nullptr, parent);
              default:
                return MakeLabel(layout, nullptr, events, parent);
            }
          },
          [&](Control *model) {
            Mirror frame = MakeFrame(layout, parent);
            frame.Refresh = [widget = frame.Widget, model] { RefreshControl(*widget, *model); };
            return frame;
          },
          [&](Label *model) { return MakeLabel(layout, model, events, parent); },
          [&](Picture *model) { return MakeImage(layout, model, parent); },
          [&](TextBox *model) {
            return layout.Locked ? MakeLockedTextBox(layout, *model, parent)
                                 : MakeTextBox(layout, *model, events, parent);
          },
          [&](CheckBox *model) { return MakeCheckBox(layout, *model, events, parent); },
          [&](ComboBox *model) { return MakeComboBox(layout, *model, events, parent); },
          [&](ImageCombo *model) { return MakeImageCombo(layout, *model, events, parent); },
          [&](TreeView *model) { return MakeTree(layout, *model, events, parent); },
          [&](QRBButtons *model) { return MakeButton(layout, *model, events, parent); },
      },
      control.Model);
}

void WindowWidget::Refresh() {
  for (const Mirror &mirror : Mirrors_) {
    if (mirror.Refresh) mirror.Refresh();
  }
}

void WindowWidget::Centre() {
  const QScreen *display = QGuiApplication::primaryScreen();
  if (display == nullptr) return;
  const QRect room = display->availableGeometry();
  move(room.center() - rect().center());
}

void WindowWidget::closeEvent(QCloseEvent *event) {
  event->ignore();
  if (OnClose) OnClose();
}

void WindowWidget::keyPressEvent(QKeyEvent *event) {
  // Only keys that the control with the focus has no use for get here.
  if (event->key() == Qt::Key_Escape && parentWidget() != nullptr) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void WindowWidget::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange && OnStateChange) OnStateChange();
}

}  // namespace cvl
