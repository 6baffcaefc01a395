// A text that always fits its box: where it would not, its letters get smaller.

#pragma once

#include <QFrame>
#include <QMouseEvent>
#include <QPaintEvent>
#include <functional>

#include "ui/control_layout.h"

namespace cvl {

class FittedLabel : public QFrame {
 public:
  FittedLabel(const ControlLayout &layout, QWidget *parent);

  void SetText(const QString &text);
  const QString &Text() const { return Text_; }

  /// The font that the present text is painted in.
  QFont FittingFont() const;
  /// How the text is set in its box.
  int Flags() const { return Flags_; }

  std::function<void()> OnClick;

 protected:
  void paintEvent(QPaintEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;

 private:
  QString Text_;
  int Flags_;
};

}  // namespace cvl
