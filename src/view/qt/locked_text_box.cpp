#include "view/qt/locked_text_box.h"

#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>

#include "view/qt/qt_fonts.h"
#include "view/qt/qt_text.h"

namespace cvl {

LockedTextBox::LockedTextBox(const ControlLayout &layout, QWidget *parent)
    : QPlainTextEdit(parent), DesignFont_(FontFor(layout.TextFont)) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setFocusPolicy(Qt::StrongFocus);
  setTabChangesFocus(true);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameStyle(QFrame::Panel | QFrame::Sunken);
  document()->setDocumentMargin(0);
  QPalette colours = palette();
  if (layout.TextColour) colours.setColor(QPalette::Text, QColor(QRgb(*layout.TextColour)));
  if (layout.Background) colours.setColor(QPalette::Base, QColor(QRgb(*layout.Background)));
  setPalette(colours);
  SetText(FromModel(layout.Text));
}

void LockedTextBox::SetText(const QString &text) {
  if (text == Text()) return;
  const int anchor = textCursor().anchor();
  const int caret = textCursor().position();
  // The font comes first: the scroll range is computed with it when the text is set.
  Fit(text);
  setPlainText(text);
  const int end = static_cast<int>(text.size());
  QTextCursor kept = textCursor();
  kept.setPosition(std::min(anchor, end));
  kept.setPosition(std::min(caret, end), QTextCursor::KeepAnchor);
  setTextCursor(kept);
}

void LockedTextBox::Fit(const QString &text) {
  setFont(FontThatFits(DesignFont_, text, contentsRect().size(), Qt::AlignLeft));
}

void LockedTextBox::resizeEvent(QResizeEvent *event) {
  QPlainTextEdit::resizeEvent(event);
  Fit(Text());
}

}  // namespace cvl
