#include "view/qt/fitted_label.h"

#include <QPainter>

#include "view/qt/qt_fonts.h"
#include "view/qt/qt_text.h"

namespace cvl {

namespace {

int FlagsOf(const ControlLayout &layout) {
  switch (layout.Align) {
    case Alignment::Centre:
      return Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
    case Alignment::Right:
      return Qt::AlignRight | Qt::AlignTop | Qt::TextWordWrap;
    case Alignment::Left:
      break;
  }
  return Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;
}

}  // namespace

FittedLabel::FittedLabel(const ControlLayout &layout, QWidget *parent)
    : QFrame(parent), Flags_(FlagsOf(layout)) {
  setFont(FontFor(layout.TextFont));
  QPalette colours = palette();
  if (layout.TextColour) {
    colours.setColor(QPalette::WindowText, QColor(QRgb(*layout.TextColour)));
  }
  if (layout.Background) {
    colours.setColor(QPalette::Window, QColor(QRgb(*layout.Background)));
    setAutoFillBackground(true);
  }
  setPalette(colours);
  SetText(FromModel(layout.Text));
}

void FittedLabel::SetText(const QString &text) {
  if (text == Text_) return;
  Text_ = text;
  // A text with lines of its own keeps them: it gets smaller rather than broken anew.
  Flags_ = text.contains('\n') ? Flags_ & ~Qt::TextWordWrap : Flags_ | Qt::TextWordWrap;
  setAccessibleName(text);
  update();
}

QFont FittedLabel::FittingFont() const {
  return FontThatFits(font(), Text_, contentsRect().size(), Flags_);
}

void FittedLabel::paintEvent(QPaintEvent *event) {
  QFrame::paintEvent(event);
  QPainter painter(this);
  const QFont fitting = FittingFont();
  painter.setFont(fitting);
  painter.setPen(palette().color(QPalette::WindowText));
  QRect box = contentsRect();
  const QFontMetrics metrics(fitting);
  if (metrics.height() >= box.height() && !Text_.contains('\n')) {
    // A line with no more room than its face has: its letters stand at the top of the box, clear of
    // what stands under it.
    const int baseline = box.top() - metrics.tightBoundingRect(Text_).top();
    const int spare = box.width() - metrics.horizontalAdvance(Text_);
    const int left = Flags_ & Qt::AlignRight ? spare : Flags_ & Qt::AlignHCenter ? spare / 2 : 0;
    painter.drawText(box.left() + left, baseline, Text_);
    return;
  }
  painter.drawText(box, Flags_, Text_);
}

void FittedLabel::mouseReleaseEvent(QMouseEvent *event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->pos()) && OnClick) OnClick();
}

}  // namespace cvl
