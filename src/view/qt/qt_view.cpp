#include "view/qt/qt_view.h"

#include <QCursor>
#include <QSessionManager>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "view/qt/accessible.h"
#include "view/qt/qt_images.h"
#include "view/qt/qt_text.h"

namespace cvl {

namespace {

// What sockets do is on the window within this time; a hand's own doings at once.
constexpr int RefreshMs = 40;

/// The view that the toolkit's messages are about.
QtView *ViewOfMessages = nullptr;

[[noreturn]] void EndWith(const char *line) {
  std::fputs(line, stderr);
  std::fflush(nullptr);
  std::_Exit(EXIT_FAILURE);
}

/// The name of the desktop file, without its ending.
constexpr const char *DesktopName = "chronvale-server";

// A turn of the toolkit's loop costs more than a pass of ours that finds nothing to do; under
// load one turn serves several passes.
constexpr int PassesAtOnce = 4;

/// The toolkit ends the process when it can't open the display that the environment names,
/// and when the display goes away under it. Its message comes just before, and nothing else
/// tells of either. What else it says is of interest to nobody.
void OnToolkitMessage(QtMsgType type, const QMessageLogContext &, const QString &text) {
  const bool is_open = ViewOfMessages != nullptr && ViewOfMessages->IsOpen();
  if (type == QtFatalMsg && !is_open) {
    EndWith("cvlserver: no window: the display cannot be opened\n");
  }
  if (type == QtFatalMsg || text.contains(QLatin1String("connection broke"))) {
    if (is_open) ViewOfMessages->OnDisplayGone();
    EndWith("cvlserver: the display is gone\n");
  }
  const char *trace = std::getenv("CHRONVALE_TRACE");
  if (trace != nullptr && std::string_view(trace) == "1") {
    std::fprintf(stderr, "cvlserver: window: %s\n", text.toLocal8Bit().constData());
  }
}

bool IsSet(const char *name) {
  const char *value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

}  // namespace

QtView::QtView() {
  ViewOfMessages = this;
}

QtView::~QtView() {
  ViewOfMessages = nullptr;
}

std::string QtView::OpenDisplay() {
  if (!IsSet("DISPLAY") && !IsSet("WAYLAND_DISPLAY") && !IsSet("QT_QPA_PLATFORM")) {
    return "there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set";
  }
  qInstallMessageHandler(OnToolkitMessage);
  static char name[] = "cvlserver";
  static char *arguments[] = {name, nullptr};
  static int count = 1;
  Application_ = std::make_unique<QApplication>(count, arguments);
  // The toolkit takes over the user's locale; numbers in files and settings stay as they are.
  std::setlocale(LC_NUMERIC, "C");
  InstallAccessibility();
  // Desktops find the program's name and icon by this: the desktop file is named so, and on X11
  // the window's class is the application's name.
  QApplication::setApplicationName(DesktopName);
  QApplication::setDesktopFileName(DesktopName);
  QApplication::setQuitOnLastWindowClosed(false);
  return {};
}

void QtView::Build(const WindowModels &models) {
  Models_ = std::make_unique<WindowModels>(models);
  Events_ = std::make_unique<ViewEvents>(models.Loop, [this] { Refresh(); });
  Events_->OpenAddress = models.OpenAddress;
  RefreshTimer_ = std::make_unique<QTimer>();
  RefreshTimer_->setSingleShot(true);
  RefreshTimer_->setInterval(RefreshMs);
  QObject::connect(RefreshTimer_.get(), &QTimer::timeout, RefreshTimer_.get(),
                   [this] { Refresh(); });
  Main_ = std::make_unique<WindowWidget>(models.Layout, *Events_);
  BuildMenu();
  ConnectWindow();
  Refresh();
}

void QtView::BuildMenu() {
  Menu_ = std::make_unique<QMenu>(FromModel(Models_->Window.mnuMain.Caption));
  for (MenuEntry *entry : Models_->Menu) {
    if (entry->Caption == "-") {
      Menu_->addSeparator();
      continue;
    }
    QAction *action = Menu_->addAction(FromModel(entry->Caption));
    QObject::connect(action, &QAction::triggered, action, [this, entry] {
      if (entry->OnClick) Events_->Raise(entry->OnClick);
    });
  }
  Models_->Window.mnuMain.OnPopUp = [this] { Menu_->popup(QCursor::pos()); };
}

void QtView::ConnectWindow() {
  Main_->OnClose = [this] { Events_->Raise(Models_->OnClose); };
  Main_->OnStateChange = [this] { OnMainStateChange(); };
  Tray_.Window = Main_.get();
  Tray_.OnEvent = [this](TrayEvent event) {
    Events_->Raise([&] { Models_->Tray.OnTrayEvent(event); });
  };
  Boxes_.WidgetOf = [this](BoxOwner owner) { return WidgetOf(owner); };
  QObject::connect(Application_.get(), &QGuiApplication::commitDataRequest, Main_.get(),
                   [this](QSessionManager &manager) {
                     // A session would start the program anew without its switch, and so unseen.
                     manager.setRestartHint(QSessionManager::RestartNever);
                     Events_->Raise(Models_->OnSessionEnd);
                   });
}

void QtView::Run(const WindowModels &models) {
  Build(models);
  Notifier_ = std::make_unique<QSocketNotifier>(static_cast<qintptr>(models.Loop.Descriptor()),
                                                QSocketNotifier::Read);
  QObject::connect(Notifier_.get(), &QSocketNotifier::activated, Notifier_.get(),
                   [this] { OnServerReady(); });
  OnServerReady();
  if (!models.Loop.IsQuitting()) QApplication::exec();
  CloseWindows();
}

void QtView::CloseWindows() {
  Notifier_.reset();
  RefreshTimer_->stop();
  Boxes_.WidgetOf = {};
  Tray_.Window = nullptr;
  Tray_.OnEvent = {};
  About_.reset();
  Configuration_.reset();
  Menu_.reset();
  Main_.reset();
}

void QtView::OnDisplayGone() {
  // Nothing that the program still does may ask the toolkit for anything.
  Tray_.Abandon();
  if (Models_) Models_->Loop.Dispatch(Models_->OnSessionEnd);
}

void QtView::OnServerReady() {
  for (int pass = 0; pass < PassesAtOnce && !Models_->Loop.IsQuitting(); ++pass) {
    Models_->Loop.RunOnePass();
  }
  if (Models_->Loop.IsQuitting()) {
    Refresh();
  } else if (!RefreshTimer_->isActive()) {
    RefreshTimer_->start();
  }
}

void QtView::Refresh() {
  if (Models_->Loop.IsQuitting()) {
    // Ends message boxes too: each is answered as if nobody had seen it.
    QCoreApplication::exit();
    return;
  }
  // Showing and hiding windows raises events of their own.
  if (Refreshing_) {
    RefreshTimer_->start();
    return;
  }
  Refreshing_ = true;
  RefreshMain();
  RefreshOthers();
  if (Dropped_ == 0 && Events_->IsIdle()) Models_->Others.Bury();
  Refreshing_ = false;
}

void QtView::RefreshMain() {
  const MainWindow &model = Models_->Window;
  Main_->Refresh();
  const QString title = FromModel(model.Caption);
  if (Main_->windowTitle() != title) Main_->setWindowTitle(title);
  const bool minimised = model.State == WindowState::Minimized;
  // Without a tray a minimised window would be out of reach: it stays in the task bar.
  const bool seen = model.Visible || (minimised && !QtTray::IsThere());
  if (!seen) {
    if (Main_->isVisible()) Main_->hide();
    return;
  }
  if (Main_->isMinimized() != minimised) {
    Main_->setWindowState(minimised ? Qt::WindowMinimized : Qt::WindowNoState);
  }
  if (Main_->isVisible()) return;
  Main_->show();
  if (minimised) return;
  Main_->raise();
  Main_->activateWindow();
}

void QtView::RefreshOthers() {
  SecondaryWindows &others = Models_->Others;
  // They go to the tray with their owner and come back with it.
  const bool owner_seen = Models_->Window.Visible;
  const auto refresh = [&](auto *model, auto &seen_model, std::unique_ptr<WindowWidget> &widget,
                           auto layout, auto close) {
    if (model != seen_model) {
      if (widget) Drop(std::exchange(widget, nullptr));
      seen_model = model;
    }
    if (model == nullptr || !model->Visible) return;
    if (!widget) {
      widget = std::make_unique<WindowWidget>(layout(*model), *Events_, Main_.get());
      model->OnShow = [shown = widget.get()] { BringToFront(*shown); };
      widget->setWindowTitle(FromModel(model->Caption));
      widget->OnClose = [this, close] { Events_->Raise(close); };
    }
    widget->Refresh();
    if (widget->isVisible() == owner_seen) return;
    // A window manager may have minimised it with its owner.
    widget->setWindowState(widget->windowState() & ~Qt::WindowMinimized);
    widget->setVisible(owner_seen);
  };
  refresh(others.ConfigurationIfAny(), ConfigurationModel_, Configuration_,
          Models_->ConfigurationLayout, [&others] { others.CloseConfiguration(); });
  refresh(others.AboutIfAny(), AboutModel_, About_, Models_->AboutLayout,
          [&others] { others.CloseAbout(); });
}

void QtView::Drop(std::unique_ptr<WindowWidget> widget) {
  // It may be in the middle of the event that has closed it, and its model with it: both go
  // when that has ended.
  widget->hide();
  ++Dropped_;
  QObject::connect(widget.get(), &QObject::destroyed, RefreshTimer_.get(), [this] {
    --Dropped_;
    if (Main_) RefreshTimer_->start();
  });
  widget.release()->deleteLater();
}

void QtView::OnMainStateChange() {
  if (Refreshing_) return;
  const WindowState state = Main_->isMinimized()   ? WindowState::Minimized
                            : Main_->isMaximized() ? WindowState::Maximized
                                                   : WindowState::Normal;
  if (state == Models_->Window.State) return;
  Events_->Raise([&] {
    if (state == WindowState::Normal) {
      Models_->Tray.Restore();
    } else {
      Models_->Tray.OnResize(state);
    }
  });
}

QWidget *QtView::WidgetOf(BoxOwner owner) const {
  QWidget *widget = nullptr;
  if (owner == BoxOwner::MainWindow) widget = Main_.get();
  if (owner == BoxOwner::ConfigurationWindow) widget = Configuration_.get();
  return widget != nullptr && widget->isVisible() ? widget : nullptr;
}

}  // namespace cvl
