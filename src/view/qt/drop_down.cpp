#include "view/qt/drop_down.h"

#include <QProxyStyle>

#include "view/qt/qt_fonts.h"

namespace cvl {

namespace {

/// The desktop's style, except that lists open as lists. Many styles open them as menus, which
/// show every entry at once and never scroll.
class ListStyle final : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                QStyleHintReturn *result) const override {
    if (hint == SH_ComboBox_Popup) return 0;
    return QProxyStyle::styleHint(hint, option, widget, result);
  }
};

}  // namespace

DropDown::DropDown(const ControlLayout &layout, QWidget *parent) : QComboBox(parent) {
  auto *style = new ListStyle;
  style->setParent(this);
  setStyle(style);
  setFocusPolicy(Qt::StrongFocus);
  setFont(FontFor(layout.TextFont));
  setMaxVisibleItems(layout.MostRows);
}

void DropDown::wheelEvent(QWheelEvent *event) {
  if (hasFocus()) {
    QComboBox::wheelEvent(event);
  } else {
    event->ignore();
  }
}

}  // namespace cvl
