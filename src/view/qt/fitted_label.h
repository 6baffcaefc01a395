// A label whose text always fits: its font shrinks where the text would be cut.

#pragma once

#include <QLabel>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QResizeEvent>
#include <functional>

#include "ui/control_layout.h"

namespace cvl {

class FittedLabel : public QLabel {
 public:
  FittedLabel(const ControlLayout &layout, QWidget *parent);

  /// Shows TEXT. A selection keeps its place; while the user is selecting with the mouse the
  /// call has no effect, so call it again later.
  void SetText(const QString &text);
  QString Text() const { return text(); }

  /// How the text is laid out in its box: flags of QPainter::drawText.
  int Flags() const;

  std::function<void()> OnClick;

 protected:
  void paintEvent(QPaintEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;

 private:
  bool IsBeingSelected() const;
  void Fit();

  QFont DesignFont_;
};

}  // namespace cvl
