// The window of the system that this program was built for.
//
//   NativePlatform native;
//   NativeWindow window(native.Interfaces());
//   CVL_Server server(window.Interfaces(), command_tail);
//   if (server.Load() == Loaded::Running) window.Run(server);

#pragma once

#include <memory>

#include "host/cvl_server.h"
#include "platform/platform.h"

namespace cvl {

class NativeWindow {
 public:
  /// WINDOWLESS is the platform without a window; what it refers to outlives this object.
  explicit NativeWindow(const Platform &windowless);
  ~NativeWindow();
  NativeWindow(const NativeWindow &) = delete;
  NativeWindow &operator=(const NativeWindow &) = delete;

  /// The platform with screen, tray and message boxes of a window. Nothing of a window is
  /// loaded before the screen is asked for an obstacle.
  Platform Interfaces();

  /// Shows SERVER's windows and lets its loop run until it is told to quit.
  void Run(CVL_Server &server);

 private:
  struct Parts;
  std::unique_ptr<Parts> Parts_;
};

}  // namespace cvl
