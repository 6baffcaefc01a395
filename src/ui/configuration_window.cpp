#include "ui/configuration_window.h"

#include <string_view>

#include "base/text.h"

namespace cvl {

namespace {

// The first two letters are the region's code. The rest is for the eye alone.
constexpr std::string_view RegionEntries[] = {
    "NA - North America [USA, Canada, Mexico]",
    "SA - South America [Chile , Brazil, Columbia]",
    "EU - Europe [UK, Spain, Italy, France]",
    "AF - Africa [Kenya, Egypt, South Africa]",
    "AW - West Asia [Afghanistan, Russia, Indonesia]",
    "AE - East Asia [Bangladesh, Thailand, India, China]",
    "AP - Asia Pacific [Australia, Japan, New Zealand]",
};

}  // namespace

ConfigurationWindow::ConfigurationWindow(EventLoop &loop, const MainWindow &main,
                                         const RunState &state)
    : Caption(Joined({"CONFIG - ", main.Caption})),
      CheckUpdate(loop, "CheckUpdate"),
      SelTimeZone(loop, "SelTimeZone"),
      cfgsvrOK(loop, "cfgsvrOK") {
  CheckUpdate.SetCaption("Check for Software Updates");
  SelTimeZone.SetCaption("Time Zone");
  cfgsvrOK.SetCaption("OK");
  for (QRBButtons *button : {&CheckUpdate, &SelTimeZone, &cfgsvrOK}) {
    button->SetButtonStyle(button_style::Standard);
  }
  for (const std::string_view entry : RegionEntries) {
    Regions.List.emplace_back(entry);
    if (state.RegionCode == entry.substr(0, 2)) Regions.SetText(entry);
  }
  if (state.Flags.EnableLogging) wc3Logs.SetValue(Tick::On);
}

}  // namespace cvl
