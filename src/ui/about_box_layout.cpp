#include "ui/about_box.h"

#include "ui/window_style.h"

namespace cvl {

namespace {

using namespace window_style;

constexpr LayoutRow<AboutBox> AboutRows[] = {
    {Banner(5400)},
    {ProductName("Chronvale SVR v5.0", 4290)},
    {Selectable(Headline("About Chronvale Server", 4275)), ModelOf<&AboutBox::ROT>},
    {BannerLogo()},
    {{.Name = "AboutF", .Kind = ControlKind::Frame, .Parent = "", .At = {60, 900, 5280, 1050}}},
    {{.Name = "Help",
      .Kind = ControlKind::Button,
      .Parent = "AboutF",
      .Text = "Online Help",
      .At = {1740, 345, 1800, 420}},
     ModelOf<&AboutBox::Help>},
};

}  // namespace

WindowLayout AboutBoxLayout(AboutBox &window) {
  return {"CVL_AboutSVR", 5400, 2040, PlaceControls<AboutBox>(AboutRows, window)};
}

}  // namespace cvl
