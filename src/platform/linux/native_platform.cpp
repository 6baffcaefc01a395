#include "platform/linux/epoll_loop.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_desktop.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_host.h"
#include "platform/linux/linux_network.h"
#include "platform/linux/linux_resolver.h"
#include "platform/linux/linux_service_host.h"
#include "platform/platform.h"

namespace cvl {

struct NativePlatform::Parts {
  LinuxClock MachineClock;
  EpollLoop Loop;
  LinuxNetwork Sockets;
  LinuxServiceHost CVLService{Loop};
  LinuxResolver Names{Loop};
  LinuxFiles ProgramFiles;
  LinuxHost Machine{ProgramFiles.ProgramDirectory()};
  NoTray Tray;
  LinuxDesktop Screen;
};

NativePlatform::NativePlatform() {
  RaiseDescriptorLimit();
  Parts_ = std::make_unique<Parts>();
}

NativePlatform::~NativePlatform() = default;

Platform NativePlatform::Interfaces() {
  Parts &parts = *Parts_;
  return {parts.MachineClock, parts.Loop,       parts.Sockets, parts.Names, parts.ProgramFiles,
          parts.Machine,      parts.CVLService, parts.Tray,    parts.Screen};
}

}  // namespace cvl
