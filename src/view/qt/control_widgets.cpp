#include "view/qt/control_widgets.h"

#include <QCheckBox>
#include <QLabel>

#include "ui/main_window_layout.h"
#include "view/qt/fitted_label.h"
#include "view/qt/frame_box.h"
#include "view/qt/locked_text_box.h"
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
  Shrink(*box, [&] { return box->sizeHint().width() <= room; });
  QObject::connect(box, &QCheckBox::clicked, box, [&model, &events](bool ticked) {
    events.Raise([&] { model.SetValue(ticked ? Tick::On : Tick::Off); });
  });
  return {box, [box, &model] {
            RefreshControl(*box, model);
            if (box->isChecked() != model.IsTicked()) box->setChecked(model.IsTicked());
          }};
}

Mirror MakeLockedTextBox(const ControlLayout &layout, TextBox &model, QWidget *parent) {
  auto *box = new LockedTextBox(layout, parent);
  return {box, [box, &model] {
            RefreshControl(*box, model);
            box->SetText(FromModel(model.Text()));
          }};
}

Mirror MakeImage(const ControlLayout &layout, Picture *model, QWidget *parent) {
  auto *image = new QLabel(parent);
  image->setAlignment(Qt::AlignCenter);
  if (layout.Picture == ImageSource::Logo) {
    image->setPixmap(LogoPixmap(parent->devicePixelRatioF()));
    return {image, {}};
  }
  // Another image, or a display of another scale, wants another picture.
  return {image, [image, model, shown = std::pair(0, 0.0)]() mutable {
            RefreshControl(*image, *model);
            const QString state = FromModel(LampState(*model));
            if (image->accessibleDescription() != state) image->setAccessibleDescription(state);
            const std::pair wanted(model->Image, image->devicePixelRatioF());
            if (shown == wanted || model->Image == 0) return;
            shown = wanted;
            image->setPixmap(TablePixmap(wanted.first, wanted.second));
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
