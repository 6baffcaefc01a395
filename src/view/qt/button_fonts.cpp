#include "view/qt/button_fonts.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <cmath>

#include "view/qt/qt_fonts.h"
#include "view/qt/qt_text.h"

namespace cvl {

namespace {

constexpr int Flags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;

// At either side of each line.
constexpr int Margin = 1;

QFont ToolkitFont(const ButtonFont &font, double scale) {
  // The container's font where the named one isn't installed.
  QFont made = FontFor({});
  const QString family = FromModel(font.Name);
  if (QFontDatabase::hasFamily(family)) made.setFamily(family);
  made.setPixelSize(std::max(1, static_cast<int>(std::llround(font.Points * 96 / 72 * scale))));
  made.setBold(font.Bold);
  made.setItalic(font.Italic);
  made.setUnderline(font.Underline);
  made.setStrikeOut(font.Strikethrough);
  return made;
}

/// The text with the toolkit's own mark in front of the underlined character.
QString Marked(const ShownCaption &text) {
  QString marked;
  for (std::size_t at = 0; at < text.Text.size(); ++at) {
    if (at == text.Underlined) marked += '&';
    if (text.Text[at] == '&') marked += '&';
    marked += QLatin1Char(text.Text[at]);
  }
  return marked;
}

}  // namespace

TextSize MeasureCaption(const ShownCaption &text, const ButtonFont &font, double scale, int width) {
  const QFontMetrics metrics(ToolkitFont(font, scale));
  const QRect need =
      metrics.boundingRect(QRect(0, 0, width - 2 * Margin, 10000), Flags, FromModel(text.Text));
  return {need.width() + 2 * Margin, need.height()};
}

void DrawCaption(Canvas &canvas, const ShownCaption &text, const ButtonFont &font, double scale,
                 const Box &box, Colour colour) {
  QImage image(reinterpret_cast<uchar *>(canvas.Pixels()), canvas.Width(), canvas.Height(),
               QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setFont(ToolkitFont(font, scale));
  painter.setPen(QColor(RedOf(colour), GreenOf(colour), BlueOf(colour)));
  painter.drawText(QRect(box.Left + Margin, box.Top, box.Width() - 2 * Margin, box.Height()),
                   Flags | Qt::TextShowMnemonic | Qt::TextDontClip, Marked(text));
}

}  // namespace cvl
