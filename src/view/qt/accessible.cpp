#include "view/qt/accessible.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QLineEdit>

#include "view/qt/button_widget.h"
#include "view/qt/drop_down.h"

namespace cvl {

namespace {

class AccessibleButton final : public QAccessibleWidget {
 public:
  explicit AccessibleButton(ButtonWidget &button)
      : QAccessibleWidget(&button, QAccessible::PushButton), Button_(button) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.pressed = Button_.IsDown();
    return state;
  }

  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (Button_.isEnabled()) names.prepend(pressAction());
    return names;
  }

  void doAction(const QString &name) override {
    if (name == pressAction()) {
      Button_.Press();
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

  QStringList keyBindingsForAction(const QString &name) const override {
    const QKeySequence key = Button_.AccessKey();
    if (name != pressAction() || key.isEmpty()) return {};
    return {key.toString(QKeySequence::NativeText)};
  }

 private:
  ButtonWidget &Button_;
};

/// The list is the first child, the line of an editable box the second.
class AccessibleDropDown final : public QAccessibleWidget {
 public:
  explicit AccessibleDropDown(DropDown &box)
      : QAccessibleWidget(&box, QAccessible::ComboBox), Box_(box) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.expandable = true;
    state.expanded = Box_.view()->isVisible();
    state.collapsed = !state.expanded;
    state.editable = Box_.isEditable();
    return state;
  }

  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? Box_.currentText() : QAccessibleWidget::text(kind);
  }

  int childCount() const override { return Box_.isEditable() ? 2 : 1; }

  QAccessibleInterface *child(int index) const override {
    if (index == 0) return QAccessible::queryAccessibleInterface(Box_.view());
    if (index == 1 && Box_.isEditable()) {
      return QAccessible::queryAccessibleInterface(Box_.lineEdit());
    }
    return nullptr;
  }

  QAccessibleInterface *childAt(int x, int y) const override {
    if (!Box_.isEditable()) return nullptr;
    const QLineEdit &line = *Box_.lineEdit();
    return line.rect().contains(line.mapFromGlobal(QPoint(x, y))) ? child(1) : nullptr;
  }

  int indexOfChild(const QAccessibleInterface *child) const override {
    if (child->object() == Box_.view()) return 0;
    return Box_.isEditable() && child->object() == Box_.lineEdit() ? 1 : -1;
  }

  QStringList actionNames() const override {
    return QStringList(showMenuAction()) + QAccessibleWidget::actionNames();
  }

  void doAction(const QString &name) override {
    if (name != showMenuAction()) {
      QAccessibleWidget::doAction(name);
    } else if (!Box_.isEnabled()) {
      return;
    } else if (Box_.view()->isVisible()) {
      Box_.hidePopup();
    } else {
      Box_.showPopup();
    }
  }

 private:
  DropDown &Box_;
};

QAccessibleInterface *InterfaceOf(const QString &, QObject *object) {
  if (auto *button = dynamic_cast<ButtonWidget *>(object)) return new AccessibleButton(*button);
  if (auto *box = dynamic_cast<DropDown *>(object)) return new AccessibleDropDown(*box);
  return nullptr;
}

}  // namespace

void InstallAccessibility() {
  QAccessible::installFactory(InterfaceOf);
}

}  // namespace cvl
