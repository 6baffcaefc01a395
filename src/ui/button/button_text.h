// What a button asks of whoever has fonts.

#pragma once

#include "ui/button/box.h"
#include "ui/button/button_properties.h"
#include "ui/button/canvas.h"
#include "ui/button/caption_text.h"

namespace cvl {

struct TextSize {
  int Width = 0;
  int Height = 0;
};

/// Lines break between words where the width asks for it, and at line ends of the text. Each
/// is centred, with a margin of one pixel at either side; a tab is one character wide.
class ButtonText {
 public:
  virtual ~ButtonText() = default;

  /// The room that a text takes when it may be WIDTH pixels wide. A word that is longer
  /// makes it wider than that.
  virtual TextSize MeasureText(const ShownCaption &text, const ButtonFont &font, int width) = 0;

  /// Draws a text from the top of a box downwards. COLOUR is no system colour.
  virtual void DrawText(Canvas &canvas, const ShownCaption &text, const ButtonFont &font,
                        const Box &box, Colour colour) = 0;

  /// The font of what the button stands on, which is the button's unless it has its own.
  virtual ButtonFont ContainerFont() = 0;
};

}  // namespace cvl
