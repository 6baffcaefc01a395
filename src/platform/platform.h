// The operating system, as the program sees it.

#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/event_loop.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/message_box.h"
#include "platform/network.h"
#include "platform/program_starter.h"
#include "platform/registry_store.h"
#include "platform/resolver.h"
#include "platform/service_host.h"
#include "platform/shell.h"

namespace cvl {

/// One of each interface. Whoever hands it out owns them.
struct Platform {
  Clock &MachineClock;
  EventLoop &Loop;
  Network &Sockets;
  Resolver &Names;
  Files &ProgramFiles;
  Host &Machine;
  ServiceHost &CVLService;
  Shell &Tray;
  Desktop &Screen;
  RegistryStore &Store;
  MessageBoxes &Boxes;
  ProgramStarter &Programs;
};

/// The system that this program was built for.
class NativePlatform {
 public:
  /// Prepares the process too: signals, the limit of descriptors. Make it before any thread.
  /// Raises 10024 when the system gives no descriptors.
  NativePlatform();
  ~NativePlatform();
  NativePlatform(const NativePlatform &) = delete;
  NativePlatform &operator=(const NativePlatform &) = delete;

  Platform Interfaces();

  /// Gives up the rights of the process that serving and setting the time doesn't need,
  /// permanently. Call it before there are threads. The process goes on where the system
  /// refuses.
  void GiveUpRights();

  /// What keeps the settings from being read, in one line; empty when nothing does.
  std::string SettingsObstacle() const;

  /// Shows TEXT where standard error is a terminal, and nothing where it isn't.
  void ShowAtTerminal(std::string_view text) const;

 private:
  struct Parts;
  std::unique_ptr<Parts> Parts_;
};

}  // namespace cvl
