#include <dlfcn.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "ui/main_window_layout.h"
#include "view/native_window.h"
#include "view/window_module.h"

namespace cvl {

namespace {

/// The module stands beside the program.
constexpr const char *ModuleName = "cvlwindow.so";

std::string ModulePath() {
  std::error_code failure;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
  return (program.parent_path() / ModuleName).string();
}

}  // namespace

/// Stands in for the view's screen, tray and message boxes until the module is loaded, and
/// for good in a run that never asks for a window.
struct NativeWindow::Parts final : Desktop, Shell, MessageBoxes {
  explicit Parts(const Platform &windowless) : Windowless(windowless) {}

  std::string Obstacle() override {
    // Never unloaded: a toolkit doesn't survive that.
    void *handle = dlopen(ModulePath().c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) return Reason("the window module cannot be loaded: ");
    void *entry = dlsym(handle, WindowModuleEntryName);
    if (entry == nullptr) return Reason("the window module is damaged: ");
    WindowModule *module = reinterpret_cast<WindowModuleEntry *>(entry)();
    std::string obstacle = module->OpenDisplay();
    if (obstacle.empty()) Module = module;
    return obstacle;
  }

  void OpenAddress(const std::string &address) override { Windowless.Screen.OpenAddress(address); }
  void OpenDateAndTime() override { Windowless.Screen.OpenDateAndTime(); }

  void Shell_NotifyIcon(TrayMessage message, const TrayIcon &icon) override {
    (Module != nullptr ? Module->Tray() : Windowless.Tray).Shell_NotifyIcon(message, icon);
  }
  void SetForegroundWindow() override {
    (Module != nullptr ? Module->Tray() : Windowless.Tray).SetForegroundWindow();
  }

  BoxAnswer Show(BoxOwner owner, BoxStyle style, std::string_view title,
                 std::string_view text) override {
    MessageBoxes &boxes = Module != nullptr ? Module->Boxes() : Windowless.Boxes;
    return boxes.Show(owner, style, title, text);
  }

  static std::string Reason(const char *what) {
    const char *reason = dlerror();
    return std::string(what) + (reason == nullptr ? "" : reason);
  }

  Platform Windowless;
  WindowModule *Module = nullptr;
};

NativeWindow::NativeWindow(const Platform &windowless)
    : Parts_(std::make_unique<Parts>(windowless)) {}

NativeWindow::~NativeWindow() = default;

Platform NativeWindow::Interfaces() {
  const Platform &plain = Parts_->Windowless;
  return {plain.MachineClock,
          plain.Loop,
          plain.Sockets,
          plain.Names,
          plain.ProgramFiles,
          plain.Machine,
          plain.CVLService,
          *Parts_,
          *Parts_,
          plain.Store,
          *Parts_,
          plain.Programs};
}

void NativeWindow::Run(CVL_Server &server) {
  Parts_->Module->Run({
      .Loop = Parts_->Windowless.Loop,
      .Window = server.Window,
      .Layout = MainWindowLayout(server.Window),
      .Menu = MainMenuEntries(server.Window),
      .Tray = server.Tray(),
      .Others = server.Others(),
      .ConfigurationLayout = ConfigurationWindowLayout,
      .AboutLayout = AboutBoxLayout,
      .OpenAddress = [this](const std::string &address) { Parts_->OpenAddress(address); },
      .OnClose = [&server] { server.Unload(UnloadMode::CloseButton); },
      .OnSessionEnd = [&server] { server.Unload(UnloadMode::SystemEnds); },
  });
}

}  // namespace cvl
