#include "view/qt/fitted_label.h"

#include <QGuiApplication>
#include <QPainter>
#include <algorithm>

#include "view/qt/qt_fonts.h"
#include "view/qt/qt_text.h"

namespace cvl {

namespace {

Qt::Alignment AlignmentOf(const ControlLayout &layout) {
  switch (layout.Align) {
    case Alignment::Centre:
      return Qt::AlignHCenter | Qt::AlignTop;
    case Alignment::Right:
      return Qt::AlignRight | Qt::AlignTop;
    case Alignment::Left:
      break;
  }
  return Qt::AlignLeft | Qt::AlignTop;
}

}  // namespace

FittedLabel::FittedLabel(const ControlLayout &layout, QWidget *parent)
    : QLabel(parent), DesignFont_(FontFor(layout.TextFont)) {
  setTextFormat(Qt::PlainText);
  setAlignment(AlignmentOf(layout));
  setIndent(0);
  if (layout.Selectable) {
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  }
  QPalette colours = palette();
  if (layout.TextColour) {
    colours.setColor(QPalette::WindowText, QColor(QRgb(*layout.TextColour)));
  }
  setPalette(colours);
  SetText(FromModel(layout.Text));
}

void FittedLabel::SetText(const QString &shown) {
  if (shown == text() || IsBeingSelected()) return;
  const qsizetype start = selectionStart();
  const qsizetype length = selectedText().size();
  // A text with lines of its own keeps them: its font shrinks instead of wrapping them.
  setWordWrap(!shown.contains('\n'));
  setText(shown);
  Fit();
  if (start < 0 || start >= shown.size()) return;
  setSelection(static_cast<int>(start), static_cast<int>(std::min(length, shown.size() - start)));
}

bool FittedLabel::IsBeingSelected() const {
  return hasFocus() && QGuiApplication::mouseButtons().testFlag(Qt::LeftButton);
}

int FittedLabel::Flags() const {
  return static_cast<int>(alignment()) | (wordWrap() ? Qt::TextWordWrap : 0);
}

void FittedLabel::Fit() {
  setFont(FontThatFits(DesignFont_, text(), contentsRect().size(), Flags()));
}

void FittedLabel::resizeEvent(QResizeEvent *event) {
  QLabel::resizeEvent(event);
  Fit();
}

void FittedLabel::paintEvent(QPaintEvent *event) {
  const QRect box = contentsRect();
  const QFontMetrics metrics(font());
  if (metrics.height() < box.height() || text().contains('\n')) {
    QLabel::paintEvent(event);
    return;
  }
  // The box is no higher than the font: put the letters at its top, clear of what is below.
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  const int baseline = box.top() - metrics.tightBoundingRect(text()).top();
  const int spare = box.width() - metrics.horizontalAdvance(text());
  const bool right = alignment().testFlag(Qt::AlignRight);
  const bool centred = alignment().testFlag(Qt::AlignHCenter);
  painter.drawText(box.left() + (right ? spare : centred ? spare / 2 : 0), baseline, text());
}

void FittedLabel::mouseReleaseEvent(QMouseEvent *event) {
  QLabel::mouseReleaseEvent(event);
  if (event->button() == Qt::LeftButton && rect().contains(event->pos()) && OnClick) OnClick();
}

}  // namespace cvl
