#include "tests/view_qt/window_bench.h"

#include <QTimer>

#include "ui/main_window_layout.h"

namespace cvl {

QtView &TheView() {
  // Never taken down, as in the program.
  static QtView *const view = [] {
    auto *made = new QtView;
    const std::string obstacle = made->OpenDisplay();
    if (!obstacle.empty()) throw std::runtime_error(obstacle);
    return made;
  }();
  return *view;
}

void WindowTest::WatchedTray::Shell_NotifyIcon(TrayMessage message, const TrayIcon &icon) {
  Kept.Shell_NotifyIcon(message, icon);
  TheView().Tray().Shell_NotifyIcon(message, icon);
}

void WindowTest::WatchedTray::SetForegroundWindow() {
  Kept.SetForegroundWindow();
  TheView().Tray().SetForegroundWindow();
}

WindowTest::~WindowTest() {
  if (!Server) return;
  // The loop quits, so that nothing more is handed to the models.
  Server->Unload(UnloadMode::FromCode);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  TheView().CloseWindows();
  // The toolkit remembers that it was told to end until the next run of its loop.
  QTimer::singleShot(0, qApp, &QCoreApplication::quit);
  QApplication::exec();
}

Platform WindowTest::Interfaces() {
  const Platform plain = System.Interfaces();
  return {plain.MachineClock, plain.Loop,    plain.Sockets,     plain.Names,
          plain.ProgramFiles, plain.Machine, plain.CVLService,  Tray_,
          plain.Screen,       plain.Store,   TheView().Boxes(), plain.Programs};
}

WindowModels WindowTest::Models() {
  return {
      .Loop = System.Loop,
      .Window = Server->Window,
      .Layout = MainWindowLayout(Server->Window),
      .Menu = MainMenuEntries(Server->Window),
      .Tray = Server->Tray(),
      .Others = Server->Others(),
      .ConfigurationLayout = ConfigurationWindowLayout,
      .AboutLayout = AboutBoxLayout,
      .OpenAddress = [this](const std::string &address) { System.Screen.OpenAddress(address); },
      .OnClose = [this] { Server->Unload(UnloadMode::CloseButton); },
      .OnSessionEnd = [this] { Server->Unload(UnloadMode::SystemEnds); },
  };
}

void WindowTest::Show() {
  Server = std::make_unique<CVL_Server>(Interfaces(), "-config");
  ASSERT_EQ(Server->Load(), Loaded::Running);
  TheView().Build(Models());
  Activate(*TheView().Main());
}

void WindowTest::Refresh() {
  System.Loop.Drain();
  TheView().Refresh();
  QCoreApplication::processEvents();
}

void WindowTest::Advance(std::int64_t milliseconds) {
  System.Loop.Advance(milliseconds);
  Refresh();
}

void WindowTest::Click(QWidget &widget, Qt::MouseButton button) {
  ClickAt(widget, widget.rect().center(), button);
}

void WindowTest::ClickAt(QWidget &widget, QPoint at, Qt::MouseButton button) {
  QWidget *window = widget.window();
  QTest::mouseClick(window->windowHandle(), button, {}, widget.mapTo(window, at));
}

void WindowTest::Press(Qt::Key key, Qt::KeyboardModifiers held, QWidget *window) {
  if (window == nullptr) window = TheView().Main();
  QTest::keyClick(window->windowHandle(), key, held);
}

void WindowTest::Type(const char *text, QWidget *window) {
  if (window == nullptr) window = TheView().Main();
  for (const char *letter = text; *letter != '\0'; ++letter) {
    QTest::keyClick(window->windowHandle(), *letter);
  }
}

void WindowTest::Activate(QWidget &window) {
  window.activateWindow();
  EXPECT_TRUE(BecomesActive(window)) << Text(window.windowTitle());
}

bool WindowTest::BecomesActive(const QWidget &window) {
  // The toolkit counts a window as active while its owner is.
  return QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; }, 10000);
}

void WindowTest::RaiseTray(TrayEvent event) {
  static_cast<QtTray &>(TheView().Tray()).OnEvent(event);
}

void WindowTest::AskNtp() {
  System.Net.Arrive(123, At("10.0.0.7", 4000), Bytes(48, 0));
  Refresh();
}

std::string WindowTest::Focus() {
  const QWidget *focused = QApplication::focusWidget();
  return focused == nullptr ? "" : Text(focused->objectName());
}

}  // namespace cvl
