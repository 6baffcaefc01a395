// The way of the main window into the tray and back.
//
//   entry.OnResize(WindowState::Minimized);          // the minimise button was pressed
//   entry.OnTrayEvent(TrayEvent::LeftUp);            // a click brings the window back

#pragma once

#include "platform/shell.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "status/status_texts.h"
#include "ui/panels.h"

namespace cvl {

class TrayEntry {
 public:
  TrayEntry(MainWindow &window, const RunState &state, Panels &panels, StatusTexts &texts,
            Shell &shell);

  /// The window has been resized into STATE, which is also how it is minimised and
  /// restored: refreshes panel and tip, and hides the window behind its tray entry or takes
  /// the entry away. Failures: neither trap nor continue.
  void OnResize(WindowState state);

  /// Minimises the window: one on the screen goes into the tray at once, one that isn't shown
  /// when it is shown.
  void Minimise();

  /// A hand on the tray entry: a left click restores, a right click opens the menu.
  void OnTrayEvent(TrayEvent event);

  /// Brings the window back; the entry mnuShow does the same.
  void Restore();

 private:
  MainWindow &Window_;
  const RunState &State_;
  Panels &Panels_;
  StatusTexts &Texts_;
  Shell &Shell_;
};

}  // namespace cvl
