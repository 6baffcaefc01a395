// The windows of a whole server on a display, with a system of fakes behind it.
//
//   Show();
//   Click(Widget("eTCP123"));
//   EXPECT_FALSE(Server->Window.eTCP123.IsTicked());
//
// Events of mouse and keyboard take the way of real ones: they reach whatever stands at that
// place of the window, or has the focus.

#pragma once

#include <QApplication>
#include <QString>
#include <QTest>
#include <QWidget>
#include <stdexcept>

#include "tests/host/host_bench.h"
#include "view/qt/qt_view.h"

namespace cvl {

/// The one view of the process, with its display open.
QtView &TheView();

/// What the model and the toolkit call a text.
inline std::string Text(const QString &text) {
  return text.toStdString();
}

class WindowTest : public HostTest {
 protected:
  ~WindowTest() override;

  // What the test does.

  /// Loads a server whose window is seen, and builds it; returns when it is active.
  void Show();

  /// Lets the server's loop handle what is pending, and brings the windows up to it.
  void Refresh();
  /// The same behind a span of time.
  void Advance(std::int64_t milliseconds);

  void Click(QWidget &widget, Qt::MouseButton button = Qt::LeftButton);
  /// AT is a place inside WIDGET.
  void ClickAt(QWidget &widget, QPoint at, Qt::MouseButton button = Qt::LeftButton);
  /// Presses a key in WINDOW, the main window if none is named.
  void Press(Qt::Key key, Qt::KeyboardModifiers held = {}, QWidget *window = nullptr);
  void Type(const char *text, QWidget *window = nullptr);

  /// Has the window manager make WINDOW the active one.
  static void Activate(QWidget &window);
  /// Waits until WINDOW itself is the active one; false when it doesn't become that.
  static bool BecomesActive(const QWidget &window);

  /// A hand on the tray entry.
  void RaiseTray(TrayEvent event);

  /// A datagram from a client of NTP, and the server's answer.
  void AskNtp();

  // What the test sees.

  /// A widget by its name; of the main window if no other is named.
  template <class Kind = QWidget>
  Kind &Widget(const char *name, QWidget *window = nullptr) const {
    if (window == nullptr) window = TheView().Main();
    auto *found = window == nullptr ? nullptr : window->findChild<Kind *>(QString(name));
    if (found == nullptr) throw std::logic_error(std::string("no such widget: ") + name);
    return *found;
  }

  /// The name of the widget that has the focus.
  static std::string Focus();

  /// What a view is built from.
  WindowModels Models();

 private:
  /// Keeps what the tray was told and tells the desktop's.
  struct WatchedTray final : Shell {
    explicit WatchedTray(FakeShell &kept) : Kept(kept) {}
    void Shell_NotifyIcon(TrayMessage message, const TrayIcon &icon) override;
    void SetForegroundWindow() override;
    FakeShell &Kept;
  };

  Platform Interfaces();

  WatchedTray Tray_{System.Tray};
};

}  // namespace cvl
