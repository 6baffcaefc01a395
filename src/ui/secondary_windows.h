// The two windows that exist only while somebody needs them.
//
//   windows.Configuration().CheckUpdate     // made, unseen, by being touched
//   windows.ShowAbout();

#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/event_loop.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "ui/about_box.h"
#include "ui/configuration_window.h"

namespace cvl {

class SecondaryWindows {
 public:
  SecondaryWindows(EventLoop &loop, const MainWindow &main, const RunState &state)
      : Loop_(loop), Main_(main), State_(state) {}

  /// Called with each configuration window when it has been made, to connect its controls.
  std::function<void(ConfigurationWindow &)> OnConfigurationMade;

  /// The configuration window, made and loaded if there is none.
  ConfigurationWindow &Configuration();
  AboutBox &About();

  /// Shows a window, or brings it to the front.
  void ShowConfiguration();
  void ShowAbout();

  /// Drops a window: the next who touches it gets a new one. A handler of one of its own
  /// controls may call it; the window goes at the next Bury.
  void CloseConfiguration();
  void CloseAbout();

  /// Destroys dropped windows. To be called where no handler of theirs can be under way.
  void Bury();

  /// The windows that there are, without making one; null for none.
  ConfigurationWindow *ConfigurationIfAny() const { return Configuration_.get(); }
  AboutBox *AboutIfAny() const { return About_.get(); }

 private:
  EventLoop &Loop_;
  const MainWindow &Main_;
  const RunState &State_;
  std::unique_ptr<ConfigurationWindow> Configuration_;
  std::unique_ptr<AboutBox> About_;
  std::vector<std::unique_ptr<ConfigurationWindow>> DroppedConfigurations_;
  std::vector<std::unique_ptr<AboutBox>> DroppedAbouts_;
};

}  // namespace cvl
