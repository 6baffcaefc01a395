// The cursor that a button brings along: a hand with its finger up.

#pragma once

#include "ui/button/raster.h"

namespace cvl {

/// An icon of 32 by 32; always the same one. It points with the tip of the finger.
RasterRef HandCursor();

}  // namespace cvl
