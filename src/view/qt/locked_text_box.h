// A box of several lines whose text the user can select and copy but not change.

#pragma once

#include <QFont>
#include <QPlainTextEdit>
#include <QResizeEvent>

#include "ui/control_layout.h"

namespace cvl {

/// Its font shrinks where the text would be cut, so it never scrolls.
class LockedTextBox final : public QPlainTextEdit {
 public:
  LockedTextBox(const ControlLayout &layout, QWidget *parent);

  /// Shows TEXT. Caret and selection keep their places, so that a text that changes every
  /// second can be selected and copied.
  void SetText(const QString &text);
  QString Text() const { return toPlainText(); }

 protected:
  void resizeEvent(QResizeEvent *event) override;

 private:
  void Fit(const QString &text);

  QFont DesignFont_;
};

}  // namespace cvl
