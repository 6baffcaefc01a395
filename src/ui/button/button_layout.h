// Where caption and picture of a button stand.

#pragma once

#include "ui/button/box.h"
#include "ui/button/button_text.h"

namespace cvl {

struct ButtonLayout {
  Box Caption;
  Box Picture;
  Box Shadow;  ///< under a lifted picture
  Box Focus;
};

/// Lays a button of WIDTH by HEIGHT pixels out. The caption is measured only when it has
/// text. Pictures and texts of more than 32767 pixels are taken for that size: nothing that
/// they could be painted on is larger.
ButtonLayout CalcLayout(int width, int height, const ButtonProperties &properties,
                        const ButtonFont &font, ButtonText &text);

}  // namespace cvl
