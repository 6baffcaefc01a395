// The edge of a button.

#pragma once

#include "ui/button/button_scene.h"

namespace cvl {

/// Paints the edge that style and state ask for; for style Rounded that is the whole face.
/// A style without an edge paints nothing.
void DrawFrame(Canvas &canvas, const ButtonScene &scene);

}  // namespace cvl
