// The texts of buttons, measured and drawn with the toolkit's fonts.

#pragma once

#include "ui/button/button_text.h"

namespace cvl {

/// SCALE is the pixels of the display to the unit; sizes and places are in its pixels.
TextSize MeasureCaption(const ShownCaption &text, const ButtonFont &font, double scale, int width);
void DrawCaption(Canvas &canvas, const ShownCaption &text, const ButtonFont &font, double scale,
                 const Box &box, Colour colour);

}  // namespace cvl
