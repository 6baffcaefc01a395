#include "view/qt/control_widgets.h"

#include <QCheckBox>
#include <QLabel>

#include "view/qt/fitted_label.h"
#include "view/qt/frame_box.h"
#include "view/qt/qt_fonts.h"
#include "view/qt/qt_images.h"
#include "view/qt/qt_text.h"

namespace cvl {

void RefreshControl(QWidget &widget, const Control &model) {
  if (widget.isVisibleTo(widget.parentWidget()) != model.Visible) widget.setVisible(model.Visible);
  if (widget.isEnabledTo(widget.parentWidget()) != model.Enabled) widget.setEnabled(model.Enabled);
  const QString tip = FromModel(model.Tip.Text());
  if (widget.toolTip() != tip) widget.setToolTip(tip);
}

Mirror MakeCheckBox(const ControlLayout &layout, CheckBox &model, ViewEvents &events,
                    QWidget *parent) {
  auto *box = new QCheckBox(FromModel(layout.Text), parent);
  box->setFont(FontFor(layout.TextFont));
  const int room = layout.At.Width / TwipsPerPixel;
  for (QFont font = box->font(); box->sizeHint().width() > room && font.pixelSize() > 7;) {
    font.setPixelSize(font.pixelSize() - 1);
    box->setFont(font);
  }
  QObject::connect(box, &QCheckBox::clicked, box, [&model, &events](bool ticked) {
    events.Raise([&] { model.SetValue(ticked ? Tick::On : Tick::Off); });
  });
  return {box, [box, &model] {
            RefreshControl(*box, model);
            if (box->isChecked() != model.IsTicked()) box->setChecked(model.IsTicked());
          }};
}

Mirror MakeLockedTextBox(const ControlLayout &layout, TextBox &model, QWidget *parent) {
  auto *box = new FittedLabel(layout, parent);
  box->setFrameStyle(QFrame::Panel | QFrame::Sunken);
  return {box, [box, &model] {
            RefreshControl(*box, model);
            box->SetText(FromModel(model.Text()));
          }};
}

Mirror MakeImage(const ControlLayout &layout, Picture *model, QWidget *parent) {
  auto *image = new QLabel(parent);
  if (model == nullptr) {
    image->setPixmap(LogoPixmap(parent->devicePixelRatioF()));
    image->setAlignment(Qt::AlignCenter);
    return {image, {}};
  }
  static_cast<void>(layout);
  return {image, [image, model, shown = 0]() mutable {
            RefreshControl(*image, *model);
            if (shown == model->Image || model->Image == 0) return;
            shown = model->Image;
            image->setPixmap(TablePixmap(shown, image->devicePixelRatioF()));
          }};
}

Mirror MakeLabel(const ControlLayout &layout, Label *model, ViewEvents &events, QWidget *parent) {
  auto *label = new FittedLabel(layout, parent);
  if (model == nullptr) return {label, {}};
  label->OnClick = [model, &events] {
    if (model->OnClick) events.Raise(model->OnClick);
  };
  return {label, [label, model] {
            RefreshControl(*label, *model);
            label->SetText(FromModel(model->Caption));
          }};
}

Mirror MakeFrame(const ControlLayout &layout, QWidget *parent) {
  return {new FrameBox(layout, parent), {}};
}

}  // namespace cvl
