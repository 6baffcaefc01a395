// The boxes that a hand writes into.

#include <QKeyEvent>
#include <QLineEdit>

#include "view/qt/control_widgets.h"
#include "view/qt/drop_down.h"
#include "view/qt/qt_fonts.h"
#include "view/qt/qt_images.h"
#include "view/qt/qt_text.h"

namespace cvl {

namespace {

/// A line of text that tells its model of each key before the text changes.
class KeyLine final : public QLineEdit {
 public:
  KeyLine(TextBox &model, ViewEvents &events, QWidget *parent)
      : QLineEdit(parent), Model_(model), Events_(events) {}

 protected:
  void keyPressEvent(QKeyEvent *event) override {
    const QByteArray code = event->text().toLatin1();
    if (code.size() == 1) {
      const int key = static_cast<unsigned char>(code.at(0));
      Events_.Raise([&] { Model_.Press(key); });
    }
    QLineEdit::keyPressEvent(event);
  }

 private:
  TextBox &Model_;
  ViewEvents &Events_;
};

Qt::Alignment HorizontalOf(Alignment align) {
  switch (align) {
    case Alignment::Centre:
      return Qt::AlignHCenter | Qt::AlignVCenter;
    case Alignment::Right:
      return Qt::AlignRight | Qt::AlignVCenter;
    case Alignment::Left:
      break;
  }
  return Qt::AlignLeft | Qt::AlignVCenter;
}

/// Brings BOX up to COUNT entries: SAME tells whether it shows one already, ADD adds one.
template <class Same, class Add>
void RefreshEntries(QComboBox &box, int count, Same same, Add add) {
  bool is_same = box.count() == count;
  for (int at = 0; is_same && at < count; ++at)
    is_same = same(at);
  if (is_same) return;
  box.clear();
  for (int at = 0; at < count; ++at)
    add(at);
}

}  // namespace

Mirror MakeTextBox(const ControlLayout &layout, TextBox &model, ViewEvents &events,
                   QWidget *parent) {
  auto *box = new KeyLine(model, events, parent);
  box->setFont(FontFor(layout.TextFont));
  box->setAlignment(HorizontalOf(layout.Align));
  if (layout.MaxLength != 0) box->setMaxLength(static_cast<int>(layout.MaxLength));
  QObject::connect(box, &QLineEdit::textEdited, box, [&model, &events](const QString &text) {
    events.Raise([&] { model.SetText(ToModel(text)); });
  });
  return {box, [box, &model] {
            RefreshControl(*box, model);
            const QString text = FromModel(model.Text());
            if (box->text() != text) box->setText(text);
          }};
}

Mirror MakeComboBox(const ControlLayout &layout, ComboBox &model, ViewEvents &events,
                    QWidget *parent) {
  auto *box = new DropDown(layout, parent);
  box->setEditable(true);  // its text is free
  box->setInsertPolicy(QComboBox::NoInsert);
  box->setCompleter(nullptr);
  QObject::connect(box, &QComboBox::activated, box, [&model, &events](int item) {
    events.Raise([&] { model.Choose(static_cast<std::size_t>(item)); });
  });
  // An entry that is typed in full is text as any other: only the list makes a choice.
  QObject::disconnect(box->lineEdit(), &QLineEdit::returnPressed, box, nullptr);
  QObject::disconnect(box->lineEdit(), &QLineEdit::editingFinished, box, nullptr);
  QObject::connect(box->lineEdit(), &QLineEdit::textEdited, box,
                   [&model, &events](const QString &text) {
                     events.Raise([&] { model.SetText(ToModel(text)); });
                   });
  return {box, [box, &model] {
            RefreshControl(*box, model);
            const auto entry = [&model](int at) {
              return FromModel(model.List[static_cast<std::size_t>(at)]);
            };
            RefreshEntries(
                *box, static_cast<int>(model.List.size()),
                [&](int at) { return box->itemText(at) == entry(at); },
                [&](int at) { box->addItem(entry(at)); });
            const QString text = FromModel(model.Text());
            if (box->currentText() == text) return;
            box->setCurrentIndex(box->findText(text));
            box->setEditText(text);
          }};
}

Mirror MakeImageCombo(const ControlLayout &layout, ImageCombo &model, ViewEvents &events,
                      QWidget *parent) {
  auto *box = new DropDown(layout, parent);
  box->setIconSize(QSize(16, 16));
  QObject::connect(box, &QComboBox::activated, box,
                   [&model, &events](int item) { events.Raise([&] { model.Choose(item + 1); }); });
  return {box, [box, &model] {
            RefreshControl(*box, model);
            RefreshEntries(
                *box, model.Count(),
                [&](int at) {
                  const ImageCombo::Item &item = model.At(at + 1);
                  return box->itemData(at).toInt() == item.Image &&
                         box->itemText(at) == FromModel(item.Text);
                },
                [&](int at) {
                  const ImageCombo::Item &item = model.At(at + 1);
                  box->addItem(TableIcon(item.Image), FromModel(item.Text), item.Image);
                });
            if (box->currentIndex() != model.Selected() - 1) {
              box->setCurrentIndex(model.Selected() - 1);
            }
          }};
}

}  // namespace cvl
