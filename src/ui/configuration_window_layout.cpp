#include "ui/configuration_window.h"

#include "ui/window_style.h"

namespace cvl {

namespace {

using namespace window_style;

using Window = ConfigurationWindow;

constexpr std::string_view RegionLabelText = "Select What Region this Server will Operate in";

constexpr LayoutRow<Window> ConfigurationRows[] = {
    {Banner(5400)},
    {ProductName("Chronvale SVR v5.0", 4290)},
    {Headline("Advanced Setup Options:  Select your region  and startup options for CVL Server "
              "Edition.",
              4275)},
    {BannerLogo()},
    {{.Name = "Frame2", .Kind = ControlKind::Frame, .Parent = "", .At = {60, 900, 5280, 2910}}},
    {{.Name = "RegionLbl",
      .Kind = ControlKind::Label,
      .Parent = "Frame2",
      .Text = RegionLabelText,
      .At = {165, 195, 4950, 225},
      .TextFont = Bold}},
    {{.Name = "Regions",
      .Kind = ControlKind::ComboBox,
      .Parent = "Frame2",
      .Text = "North America NA",
      .At = {165, 450, 4950, 345},
      .SpokenName = RegionLabelText},
     ModelOf<&Window::Regions>},
    {{.Name = "closelbl",
      .Kind = ControlKind::Label,
      .Parent = "Frame2",
      .Text = "Select the closest region to you.",
      .At = {165, 855, 4950, 225}}},
    {{.Name = "wc3Logs",
      .Kind = ControlKind::CheckBox,
      .Parent = "Frame2",
      .Text = "Enable Extended WC3 Logging.",
      .At = {165, 1215, 4950, 240}},
     ModelOf<&Window::wc3Logs>},
    {{.Name = "OpenMin",
      .Kind = ControlKind::CheckBox,
      .Parent = "Frame2",
      .Text = "Open Minimized?",
      .At = {165, 1515, 4950, 240}},
     ModelOf<&Window::OpenMin>},
    {{.Name = "RunCVL",
      .Kind = ControlKind::CheckBox,
      .Parent = "Frame2",
      .Text = "Run Chronvale Server when Windows Starts.",
      .At = {165, 1815, 4950, 240}},
     ModelOf<&Window::RunCVL>},
    {{.Name = "CheckUpdate",
      .Kind = ControlKind::Button,
      .Parent = "Frame2",
      .Text = "Check for Software Updates",
      .At = {165, 2295, 3000, 420}},
     ModelOf<&Window::CheckUpdate>},
    {{.Name = "SelTimeZone",
      .Kind = ControlKind::Button,
      .Parent = "Frame2",
      .Text = "Time Zone",
      .At = {3315, 2295, 1800, 420}},
     ModelOf<&Window::SelTimeZone>},
    {{.Name = "cfgsvrOK",
      .Kind = ControlKind::Button,
      .Parent = "",
      .Text = "OK",
      .At = {3915, 3960, 1260, 420}},
     ModelOf<&Window::cfgsvrOK>},
};

}  // namespace

WindowLayout ConfigurationWindowLayout(ConfigurationWindow &window) {
  return {"CVL_ConfigSVR", 5400, 4530, PlaceControls<Window>(ConfigurationRows, window)};
}

}  // namespace cvl
