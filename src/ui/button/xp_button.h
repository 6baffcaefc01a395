// The face of style Rounded: a vertical gradient in a dark box, shaded inside, with a
// coloured inner frame for focus and for hovering.

#pragma once

#include "ui/button/button_scene.h"
#include "ui/button/region.h"

namespace cvl {

enum class XPState { Normal = 0, Pressed = 2 };
enum class XPHover { Off, On };

/// Paints all of the canvas. A disabled button has one face, whatever its state.
void DrawXPButton(Canvas &canvas, const ButtonScene &scene, XPState state, XPHover hover);

/// The shape of the window: three pixels are cut off at each corner.
Region MakeXPRegion(int width, int height);

}  // namespace cvl
