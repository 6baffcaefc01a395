// A frame: an etched line around its controls, with its caption in the upper edge, or a
// plain coloured area.

#pragma once

#include <QGroupBox>
#include <QPaintEvent>

#include "ui/control_layout.h"

namespace cvl {

/// A group box for whoever reads the window aloud; painted by itself, so that the line
/// stands where the layout counts on it, whatever the desktop's style.
class FrameBox : public QGroupBox {
 public:
  FrameBox(const ControlLayout &layout, QWidget *parent);

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  LayoutColour Background_;
};

}  // namespace cvl
