// Fonts by their role: the one that a layout names where it is installed, else the nearest
// face of the same kind.

#pragma once

#include <QFont>
#include <QRect>
#include <QString>
#include <QWidget>

#include "ui/control_layout.h"

namespace cvl {

/// The smallest letters that can be read.
inline constexpr int SmallestPixels = 7;

QFont FontFor(const LayoutFont &font);

/// FONT, made as much smaller as TEXT needs to fit a box of SIZE, if it needs it; never
/// below the smallest size that can be read.
QFont FontThatFits(const QFont &font, const QString &text, QSize size, int flags);

/// Makes the letters of WIDGET smaller until FITS says so, or until they are as small as can be
/// read.
template <class Fits>
void Shrink(QWidget &widget, Fits &&fits) {
  QFont font = widget.font();
  while (!fits() && font.pixelSize() > SmallestPixels) {
    font.setPixelSize(font.pixelSize() - 1);
    widget.setFont(font);
  }
}

/// Whether TEXT fits.
bool TextFits(const QFont &font, const QString &text, QSize size, int flags);

}  // namespace cvl
