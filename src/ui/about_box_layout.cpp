#include "ui/about_box.h"

#include "ui/window_style.h"

namespace cvl {

namespace {

using namespace window_style;

constexpr LayoutRow<AboutBox> Rows[] = {
    {{.Name = "Frame1",
      .Kind = ControlKind::Frame,
      .Parent = "",
      .At = {0, -90, 5400, 960},
      .Background = BannerGround},
     nullptr},
    {{.Name = "NOLLabel",
      .Kind = ControlKind::Label,
      .Parent = "Frame1",
      .Text = "Chronvale SVR v5.0",
      .At = {1020, 135, 4290, 390},
      .TextFont = Title,
      .TextColour = BannerText},
     nullptr},
    {{.Name = "ROT",
      .Kind = ControlKind::Label,
      .Parent = "Frame1",
      .Text = "About Chronvale Server",
      .At = {1065, 510, 4275, 420},
      .TextFont = Console,
      .TextColour = BannerText},
     [](AboutBox &window) -> ControlModel { return &window.ROT; }},
    {{.Name = "Image1",
      .Kind = ControlKind::Image,
      .Parent = "Frame1",
      .At = LogoPlace,
      .Picture = ImageSource::Logo},
     nullptr},
    {{.Name = "AboutF", .Kind = ControlKind::Frame, .Parent = "", .At = {60, 900, 5280, 1050}},
     nullptr},
    {{.Name = "Help",
      .Kind = ControlKind::Button,
      .Parent = "AboutF",
      .Text = "Online Help",
      .At = {1740, 345, 1800, 420}},
     [](AboutBox &window) -> ControlModel { return &window.Help; }},
};

}  // namespace

WindowLayout AboutBoxLayout(AboutBox &window) {
  return {"CVL_AboutSVR", 5400, 2040, PlaceControls<AboutBox>(Rows, window)};
}

}  // namespace cvl
