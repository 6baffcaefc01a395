#include "view/qt/frame_box.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>

#include "view/qt/qt_fonts.h"
#include "view/qt/qt_text.h"

namespace cvl {

namespace {

constexpr int CaptionIndent = 9;
constexpr int CaptionGap = 2;

}  // namespace

FrameBox::FrameBox(const ControlLayout &layout, QWidget *parent)
    : QGroupBox(FromModel(layout.Text), parent), Background_(layout.Background) {
  setFont(FontFor(layout.TextFont));
}

void FrameBox::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  if (Background_) {
    painter.fillRect(rect(), QColor(QRgb(*Background_)));
    return;
  }
  const QFontMetrics metrics(font());
  const int line_top = metrics.height() / 2;
  const QRect line = rect().adjusted(0, line_top, -1, -1);
  QRect caption(CaptionIndent, 0, metrics.horizontalAdvance(title()), metrics.height());
  if (!title().isEmpty()) {
    // The line leaves a gap for its caption.
    const QRect gap = caption.adjusted(-CaptionGap, 0, CaptionGap, 0);
    painter.setClipRegion(QRegion(rect()) - gap);
  }
  painter.setPen(palette().color(QPalette::Light));
  painter.drawRect(line.adjusted(1, 1, 0, 0));
  painter.setPen(palette().color(QPalette::Dark));
  painter.drawRect(line.adjusted(0, 0, -1, -1));
  if (title().isEmpty()) return;
  painter.setClipping(false);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(caption, Qt::AlignLeft | Qt::AlignTop, title());
}

}  // namespace cvl
