#include "view/qt/qt_message_boxes.h"

#include <QFontMetrics>
#include <QGridLayout>
#include <QMessageBox>
#include <QPointer>
#include <QSpacerItem>

#include "view/qt/qt_text.h"
#include "view/qt/window_widget.h"

namespace cvl {

namespace {

// The icon and the buttons of a title bar, whatever the window manager draws there.
constexpr int TitleBarExtras = 150;

/// Makes BOX as wide as its title needs, which the toolkit leaves out of account.
void MakeRoomForTitle(QMessageBox &box) {
  auto *grid = qobject_cast<QGridLayout *>(box.layout());
  if (grid == nullptr) return;
  QFont font = box.font();
  font.setBold(true);
  const int width = QFontMetrics(font).horizontalAdvance(box.windowTitle()) + TitleBarExtras;
  grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

/// The window that the user goes back to when BOX is answered: its owner, unless the active window
/// is one that belongs to the owner.
QWidget *InFrontAfter(const QMessageBox &box) {
  QWidget *owner = box.parentWidget();
  QWidget *active = QApplication::activeWindow();
  if (owner == nullptr) return active;
  return active != nullptr && active->parentWidget() == owner ? active : owner;
}

}  // namespace

BoxAnswer QtMessageBoxes::Show(BoxOwner owner, BoxStyle style, std::string_view title,
                               std::string_view text) {
  // Its owner takes it along if that goes first.
  const QPointer<QMessageBox> shown = new QMessageBox(WidgetOf ? WidgetOf(owner) : nullptr);
  QMessageBox &box = *shown;
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
  MakeRoomForTitle(box);
  const QPointer<QWidget> front = InFrontAfter(box);
  const int answer = box.exec();
  if (shown) shown->deleteLater();
  if (front != nullptr && front->isVisible()) BringToFront(*front);
  switch (answer) {
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
