// The box of a drop-down list.

#pragma once

#include <QComboBox>
#include <QWheelEvent>

#include "ui/control_layout.h"

namespace cvl {

/// Its list opens below the box and scrolls when it has more rows than the layout allows. The
/// mouse wheel chooses an entry only while the box has the keyboard focus.
class DropDown final : public QComboBox {
 public:
  DropDown(const ControlLayout &layout, QWidget *parent);

 protected:
  void wheelEvent(QWheelEvent *event) override;
};

}  // namespace cvl
