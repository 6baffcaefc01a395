// The widgets of the control model: each is built from its layout, shows what its model
// holds, and tells the model what a hand does to it.

#pragma once

#include "ui/control_layout.h"
#include "view/qt/mirror.h"
#include "view/qt/view_events.h"

namespace cvl {

Mirror MakeCheckBox(const ControlLayout &layout, CheckBox &model, ViewEvents &events,
                    QWidget *parent);
Mirror MakeTextBox(const ControlLayout &layout, TextBox &model, ViewEvents &events,
                   QWidget *parent);
/// A box of several lines that the user can't change.
Mirror MakeLockedTextBox(const ControlLayout &layout, TextBox &model, QWidget *parent);
Mirror MakeComboBox(const ControlLayout &layout, ComboBox &model, ViewEvents &events,
                    QWidget *parent);
Mirror MakeImageCombo(const ControlLayout &layout, ImageCombo &model, ViewEvents &events,
                      QWidget *parent);
Mirror MakeTree(const ControlLayout &layout, TreeView &model, ViewEvents &events, QWidget *parent);
/// A picture of the image table, or one that never changes.
Mirror MakeImage(const ControlLayout &layout, Picture *model, QWidget *parent);
/// MODEL may be null.
Mirror MakeLabel(const ControlLayout &layout, Label *model, ViewEvents &events, QWidget *parent);
Mirror MakeFrame(const ControlLayout &layout, QWidget *parent);

/// Brings visibility, whether it can be used, and tip of WIDGET up to MODEL.
void RefreshControl(QWidget &widget, const Control &model);

}  // namespace cvl
