#include "view/qt/qt_message_boxes.h"

#include <QMessageBox>

#include "view/qt/qt_text.h"

namespace cvl {

BoxAnswer QtMessageBoxes::Show(BoxOwner owner, BoxStyle style, std::string_view title,
                               std::string_view text) {
  QMessageBox box(WidgetOf ? WidgetOf(owner) : nullptr);
  box.setWindowTitle(FromModel(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(FromModel(text));
  box.setStandardButtons(QMessageBox::Ok);
  switch (style) {
    case BoxStyle::Ok:
      break;
    case BoxStyle::OkExclamation:
      box.setIcon(QMessageBox::Warning);
      break;
    case BoxStyle::YesNoInformation:
      box.setIcon(QMessageBox::Information);
      box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
      box.setDefaultButton(QMessageBox::Yes);
      box.setEscapeButton(QMessageBox::No);
      break;
  }
  switch (box.exec()) {
    case QMessageBox::Yes:
      return BoxAnswer::Yes;
    case QMessageBox::No:
      return BoxAnswer::No;
    case QMessageBox::Ok:
      return BoxAnswer::Ok;
    default:
      return UnseenAnswer(style);  // the program ends under it
  }
}

}  // namespace cvl
