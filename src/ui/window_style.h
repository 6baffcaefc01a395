// What the layouts of the three windows share: fonts by their role, and the banner.

#pragma once

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

inline constexpr Place LogoPlace{90, 105, 840, 840};

}  // namespace cvl::window_style
