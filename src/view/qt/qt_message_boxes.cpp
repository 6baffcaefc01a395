#include "view/qt/qt_message_boxes.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGridLayout>
#include <QMessageBox>
#include <QPointer>
#include <QSpacerItem>
#include <QWindow>
#include <algorithm>

#include "view/qt/qt_text.h"
#include "view/qt/window_widget.h"

namespace cvl {

namespace {

// The icon and the buttons of a title bar, in units of the display.
constexpr int TitleBarExtras = 150;

/// The height of the title bars on this display, as the window manager draws them; 0 when no
/// window has one.
int TitleBarHeight() {
  int height = 0;
  for (const QWindow *window : QGuiApplication::topLevelWindows()) {
    if (window->isVisible()) height = std::max(height, window->frameMargins().top());
  }
  return height;
}

int WidthOfTitle(const QString &title, QFont font) {
  font.setBold(true);
  return QFontMetrics(font).horizontalAdvance(title);
}

/// The width that a title bar with TITLE needs. The window manager has a font and a scale of its
/// own, of which the toolkit knows nothing: a title bar that is higher than usual has larger
/// letters, and its icon and each of its buttons are as wide as it is high. Its letters may also be
/// wider than the toolkit's.
int TitleBarWidth(const QString &title, const QFont &font) {
  const int height = TitleBarHeight();
  QFont estimated = font;
  estimated.setPixelSize(std::max(1, height * 7 / 10));
  return std::max(WidthOfTitle(title, font) + TitleBarExtras,
                  WidthOfTitle(title, estimated) + 6 * height);
}

/// Makes BOX as wide as its title bar needs, which the toolkit doesn't do.
void MakeRoomForTitle(QMessageBox &box) {
  auto *grid = qobject_cast<QGridLayout *>(box.layout());
  if (grid == nullptr) return;
  // The box has margins beside the grid, so it becomes a little wider than this.
  const int width = TitleBarWidth(box.windowTitle(), box.font());
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
