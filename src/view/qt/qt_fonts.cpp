#include "view/qt/qt_fonts.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QStringList>

namespace cvl {

namespace {

QStringList FamiliesOf(FontFace face) {
  switch (face) {
    case FontFace::Dialog:
      return {"MS Sans Serif", "Microsoft Sans Serif", "Liberation Sans", "Arial", "DejaVu Sans"};
    case FontFace::Arial:
      return {"Arial", "Liberation Sans", "Helvetica", "DejaVu Sans"};
    case FontFace::LucidaConsole:
      return {"Lucida Console", "DejaVu Sans Mono", "Liberation Mono"};
    case FontFace::CourierNew:
      return {"Courier New", "Liberation Mono", "DejaVu Sans Mono"};
    case FontFace::Terminal:
      return {"Terminal", "DejaVu Sans Mono", "Liberation Mono"};
  }
  return {};
}

bool IsMonospaced(FontFace face) {
  return face != FontFace::Dialog && face != FontFace::Arial;
}

}  // namespace

QFont FontFor(const LayoutFont &font) {
  QFont made = QFontDatabase::systemFont(IsMonospaced(font.Face) ? QFontDatabase::FixedFont
                                                                 : QFontDatabase::GeneralFont);
  for (const QString &family : FamiliesOf(font.Face)) {
    if (!QFontDatabase::hasFamily(family)) continue;
    made.setFamily(family);
    break;
  }
  made.setPixelSize(font.Pixels);
  made.setBold(font.Bold);
  return made;
}

bool TextFits(const QFont &font, const QString &text, QSize size, int flags) {
  const QFontMetrics metrics(font);
  const QRect need = metrics.boundingRect(QRect(0, 0, size.width(), 10000), flags, text);
  if (need.width() > size.width()) return false;
  if (need.height() <= size.height()) return true;
  // A single line of capitals may stand in a box that is lower than the face.
  return need.height() < 2 * metrics.height() &&
         metrics.tightBoundingRect(text).height() <= size.height();
}

QFont FontThatFits(const QFont &font, const QString &text, QSize size, int flags) {
  QFont fitting = font;
  while (fitting.pixelSize() > SmallestPixels && !TextFits(fitting, text, size, flags)) {
    fitting.setPixelSize(fitting.pixelSize() - 1);
  }
  return fitting;
}

}  // namespace cvl
