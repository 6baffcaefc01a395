// A view as a module that the program loads when a window is asked for, and only then.

#pragma once

#include <string>

#include "platform/message_box.h"
#include "platform/shell.h"
#include "view/window_models.h"

namespace cvl {

class WindowModule {
 public:
  virtual ~WindowModule() = default;

  /// Opens the display. Returns what stands in the way, in one line; empty when nothing does.
  virtual std::string OpenDisplay() = 0;

  // Of an open display.

  virtual Shell &Tray() = 0;
  virtual MessageBoxes &Boxes() = 0;

  /// Builds the windows of MODELS, lets their loop run, and returns when it has been told to
  /// quit.
  virtual void Run(const WindowModels &models) = 0;
};

/// The one routine of the module: hands out the view, which lives as long as the module.
using WindowModuleEntry = WindowModule *();
inline constexpr const char *WindowModuleEntryName = "CvlWindowModule";

}  // namespace cvl
