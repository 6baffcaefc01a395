// What the controls of the windows do beyond the live settings: tree, tray menu, and the
// secondary windows, connected each time one is made.

#include "base/failure_modes.h"
#include "host/cvl_server.h"

namespace cvl {

void CVL_Server::ConnectWindows() {
  Panels_.ShowAboutBox = [this] { Others_.ShowAbout(); };
  Panels_.ShowConfiguration = [this] { Others_.ShowConfiguration(); };
  Window.CVL_TV.OnNodeClick = [this](std::int16_t node) { Panels_.CVLSelected(node); };
  Window.svrStatlbl.OnClick = [this] {
    const Failure passed_over = Trap([this] {
      if (Window.CVL_TV.Selected != 0) Panels_.CVLSelected(Window.CVL_TV.Selected);
    });
    static_cast<void>(passed_over);
  };
  Window.mnuShow.OnClick = [this] { Tray_.Restore(); };
  Window.mnuExit.OnClick = [this] { MnuExit(); };
  Others_.OnConfigurationMade = [this](ConfigurationWindow &window) { Connect(window); };
}

void CVL_Server::Connect(ConfigurationWindow &window) {
  window.Regions.OnClick = [this, &window] { Draw_.ChooseRegion(window.Regions.Text()); };
  window.wc3Logs.OnClick = [this, &window] {
    State.Flags.EnableLogging = window.wc3Logs.IsTicked();
  };
  window.CheckUpdate.Click = [this] { Update_.ClickCheckUpdate(); };
  window.SelTimeZone.Click = [this] { Platform_.Screen.OpenDateAndTime(); };
  window.cfgsvrOK.Click = [this] { Others_.CloseConfiguration(); };
}

}  // namespace cvl
