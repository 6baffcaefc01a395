// The program's pictures in the toolkit's form.

#pragma once

#include <QIcon>
#include <QPixmap>

namespace cvl {

/// A picture of the image table, 1 to 35, for a display of SCALE pixels to the unit.
QPixmap TablePixmap(int number, double scale);
QIcon TableIcon(int number);

QPixmap LogoPixmap(double scale);

/// The icon of the windows, and of the tray.
QIcon WindowIcon();

}  // namespace cvl
