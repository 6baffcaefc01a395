// Fonts by their role: the one that a layout names where it is installed, else the nearest
// face of the same kind.

#pragma once

#include <QFont>
#include <QRect>
#include <QString>

#include "ui/control_layout.h"

namespace cvl {

QFont FontFor(const LayoutFont &font);

/// FONT, made as much smaller as TEXT needs to fit a box of SIZE, if it needs it; never
/// below the smallest size that can be read.
QFont FontThatFits(const QFont &font, const QString &text, QSize size, int flags);

/// Whether TEXT fits.
bool TextFits(const QFont &font, const QString &text, QSize size, int flags);

}  // namespace cvl
