// One painting of a button: background, edge, picture, focus rectangle and caption.

#pragma once

#include <functional>

#include "ui/button/button_scene.h"
#include "ui/button/button_text.h"

namespace cvl {

/// Paints all of the canvas anew, beginning with BackColor. BACKDROP tells what lies behind
/// a button that shows it, and is asked only then; where it fails nothing of it is shown.
void PaintButton(Canvas &canvas, const ButtonScene &scene, ButtonText &text,
                 const std::function<Backdrop()> &backdrop);

}  // namespace cvl
