#include <unistd.h>

#include <csignal>
#include <cstdio>

#include "platform/linux/epoll_loop.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_desktop.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_host.h"
#include "platform/linux/linux_message_box.h"
#include "platform/linux/linux_network.h"
#include "platform/linux/linux_program_starter.h"
#include "platform/linux/linux_registry_store.h"
#include "platform/linux/linux_resolver.h"
#include "platform/linux/linux_service_host.h"
#include "platform/linux/rights.h"
#include "platform/platform.h"

namespace cvl {

struct NativePlatform::Parts {
  LinuxClock MachineClock;
  EpollLoop Loop;
  LinuxNetwork Sockets;
  LinuxFiles ProgramFiles;
  LinuxServiceHost CVLService{Loop, ProgramFiles.ProgramDirectory(),
                              LinuxRegistryStore::UsualPath(ProgramFiles)};
  LinuxResolver Names{Loop};
  LinuxHost Machine{ProgramFiles.ProgramDirectory()};
  NoTray Tray;
  LinuxRegistryStore Store{LinuxRegistryStore::UsualPath(ProgramFiles), MachineClock};
  LoggedMessageBoxes Boxes;
  LinuxProgramStarter Programs;
  LinuxDesktop Screen{Programs};
};

namespace {

/// A write that fails is to return its number. Programs that are started get the signals back.
void IgnoreSignalsOfWriting() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace

NativePlatform::NativePlatform() {
  RaiseDescriptorLimit();
  IgnoreSignalsOfWriting();
  Parts_ = std::make_unique<Parts>();
}

NativePlatform::~NativePlatform() = default;

Platform NativePlatform::Interfaces() {
  Parts &parts = *Parts_;
  return {parts.MachineClock, parts.Loop,    parts.Sockets,    parts.Names,
          parts.ProgramFiles, parts.Machine, parts.CVLService, parts.Tray,
          parts.Screen,       parts.Store,   parts.Boxes,      parts.Programs};
}

void NativePlatform::GiveUpRights() {
  cvl::GiveUpRights(Parts_->ProgramFiles.ProgramDirectory());
}

std::string NativePlatform::SettingsObstacle() const {
  return Parts_->Store.Obstacle();
}

void NativePlatform::ShowAtTerminal(std::string_view text) const {
  if (isatty(STDERR_FILENO) == 0) return;
  std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace cvl
