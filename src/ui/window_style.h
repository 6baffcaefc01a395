// What the layouts of the three windows share: fonts by their role, and the banner.

#pragma once

#include <string_view>

#include "ui/control_layout.h"

namespace cvl::window_style {

inline constexpr LayoutFont Title{FontFace::Arial, 19, true};
inline constexpr LayoutFont Bold{FontFace::Dialog, 11, true};
inline constexpr LayoutFont Console{FontFace::LucidaConsole, 11};
inline constexpr LayoutFont Courier{FontFace::CourierNew, 12};
inline constexpr LayoutFont Terminal{FontFace::Terminal, 12};

// The banner is white on every desktop, so its texts can't take the desktop's colour.
inline constexpr LayoutColour BannerGround = 0xFFFFFF;
inline constexpr LayoutColour BannerText = 0x000000;

/// The banner at the top of a window of that width. It begins above the window.
constexpr ControlLayout Banner(int width) {
  return {.Name = "Frame1",
          .Kind = ControlKind::Frame,
          .Parent = "",
          .At = {0, -90, width, 960},
          .Background = BannerGround};
}

/// The product's name on the banner.
constexpr ControlLayout ProductName(std::string_view text, int width) {
  return {.Name = "NOLLabel",
          .Kind = ControlKind::Label,
          .Parent = "Frame1",
          .Text = text,
          .At = {1020, 135, width, 390},
          .TextFont = Title,
          .TextColour = BannerText,
          .Selectable = true};
}

/// The line below the product's name.
constexpr ControlLayout Headline(std::string_view text, int width) {
  return {.Name = "ROT",
          .Kind = ControlKind::Label,
          .Parent = "Frame1",
          .Text = text,
          .At = {1065, 510, width, 420},
          .TextFont = Console,
          .TextColour = BannerText};
}

/// A label whose text the user can select and copy.
constexpr ControlLayout Selectable(ControlLayout label) {
  label.Selectable = true;
  return label;
}

constexpr ControlLayout BannerLogo() {
  return {.Name = "Image1",
          .Kind = ControlKind::Image,
          .Parent = "Frame1",
          .At = {90, 105, 840, 840},
          .SpokenName = "Chronvale logo",
          .Picture = ImageSource::Logo};
}

}  // namespace cvl::window_style
