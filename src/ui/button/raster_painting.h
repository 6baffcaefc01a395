// Pictures painted onto a canvas, stretched to a box by repeating or skipping pixels.
//
// Which pixels of a picture count: of a bitmap all that haven't the mask colour, of an icon
// those with an alpha.

#pragma once

#include "ui/button/canvas.h"

namespace cvl {

/// The picture itself. An icon is blended with what is there by its alpha.
void PaintRaster(Canvas &canvas, const Raster &picture, const Box &box, Colour mask);

/// All pixels that count, in one colour.
void PaintSilhouette(Canvas &canvas, const Raster &picture, const Box &box, Colour mask,
                     Colour colour);

/// The form of a picture that stands for something disabled: its dark pixels in the colour
/// of the 3D highlight, moved by a pixel to the right and down, and over that in the colour
/// of the button's shadow.
void PaintEmbossed(Canvas &canvas, const Raster &picture, const Box &box, Colour mask);

}  // namespace cvl
