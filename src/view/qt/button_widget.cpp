#include "view/qt/button_widget.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>

#include "view/qt/button_fonts.h"
#include "view/qt/control_widgets.h"
#include "view/qt/qt_text.h"

namespace cvl {

namespace {

int ShiftOf(Qt::KeyboardModifiers keys) {
  return (keys.testFlag(Qt::ShiftModifier) ? 1 : 0) | (keys.testFlag(Qt::ControlModifier) ? 2 : 0) |
         (keys.testFlag(Qt::AltModifier) ? 4 : 0);
}

/// The shell's code of a key: that of its character, or a number of its own.
int KeyCodeOf(const QKeyEvent &event) {
  switch (event.key()) {
    case Qt::Key_Backspace:
      return 8;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return 13;
    case Qt::Key_Shift:
      return 16;
    case Qt::Key_Control:
      return 17;
    case Qt::Key_Alt:
      return 18;
    case Qt::Key_Escape:
      return 27;
    case Qt::Key_PageUp:
      return 33;
    case Qt::Key_PageDown:
      return 34;
    case Qt::Key_End:
      return 35;
    case Qt::Key_Home:
      return 36;
    case Qt::Key_Left:
      return 37;
    case Qt::Key_Up:
      return 38;
    case Qt::Key_Right:
      return 39;
    case Qt::Key_Down:
      return 40;
    case Qt::Key_Insert:
      return 45;
    case Qt::Key_Delete:
      return 46;
    default:
      return event.key() < 0x100 ? event.key() : 0;
  }
}

}  // namespace

Mirror MakeButton(const ControlLayout &, QRBButtons &model, ViewEvents &events, QWidget *parent) {
  auto *button = new ButtonWidget(model, events, parent);
  return {button, [button] { button->RefreshModel(); }};
}

ButtonWidget::ButtonWidget(QRBButtons &model, ViewEvents &events, QWidget *parent)
    : QWidget(parent), Model_(model), Events_(events), AccessKey_(this) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  QObject::connect(&AccessKey_, &QShortcut::activated, this, [this] { Press(); });
  Model_.Attach(this);
  TakeAccessKey();
  TakeCursor();
}

ButtonWidget::~ButtonWidget() {
  Model_.Attach(nullptr);
}

void ButtonWidget::RefreshModel() {
  const bool was_enabled = isEnabled();
  RefreshControl(*this, Model_);
  // The window may have been inactive meanwhile, and then a disabled button got no focus back.
  const bool comes_back = !was_enabled && isEnabled();
  if (comes_back && window()->isActiveWindow() && window()->focusWidget() == this) setFocus();
  // The window may have gone to a display of another scale.
  if (ShownScale_ != devicePixelRatioF()) FitSurface();
  Model_.RefreshIfStale();
}

void ButtonWidget::Press() {
  Events_.Raise([this] { Model_.AccessKeyPressed(); });
}

int ButtonWidget::InPixels(double units) const {
  return static_cast<int>(std::llround(units * devicePixelRatioF()));
}

void ButtonWidget::paintEvent(QPaintEvent *) {
  const Canvas &surface = Model_.Surface();
  QImage image(reinterpret_cast<const uchar *>(surface.Pixels()), surface.Width(), surface.Height(),
               QImage::Format_RGB32);
  image.setDevicePixelRatio(devicePixelRatioF());
  QPainter(this).drawImage(0, 0, image);
}

void ButtonWidget::resizeEvent(QResizeEvent *) {
  FitSurface();
}

void ButtonWidget::FitSurface() {
  ShownScale_ = devicePixelRatioF();
  Model_.Resize(InPixels(width()), InPixels(height()));
}

void ButtonWidget::focusInEvent(QFocusEvent *) {
  Events_.Raise([this] { Model_.GotFocus(); });
}

void ButtonWidget::focusOutEvent(QFocusEvent *) {
  Events_.Raise([this] { Model_.LostFocus(); });
}

void ButtonWidget::mousePressEvent(QMouseEvent *event) {
  Events_.Raise([&] {
    Model_.OnMouseDown(static_cast<int>(event->button()), ShiftOf(event->modifiers()),
                       InPixels(event->position().x()), InPixels(event->position().y()));
  });
}

void ButtonWidget::mouseDoubleClickEvent(QMouseEvent *) {
  Events_.Raise([this] { Model_.OnDoubleClick(); });
}

void ButtonWidget::mouseMoveEvent(QMouseEvent *event) {
  Events_.Raise([&] {
    Model_.OnMouseMove(static_cast<int>(event->buttons()), ShiftOf(event->modifiers()),
                       InPixels(event->position().x()), InPixels(event->position().y()));
  });
}

void ButtonWidget::mouseReleaseEvent(QMouseEvent *event) {
  if (QWidget::mouseGrabber() == this) releaseMouse();
  Events_.Raise([&] {
    Model_.OnMouseUp(static_cast<int>(event->button()), ShiftOf(event->modifiers()),
                     InPixels(event->position().x()), InPixels(event->position().y()));
  });
}

void ButtonWidget::keyPressEvent(QKeyEvent *event) {
  const QByteArray code = event->text().toLatin1();
  const int shift = ShiftOf(event->modifiers());
  // Keys without a character may move the focus, and Escape may close the window.
  if (code.isEmpty() || event->key() == Qt::Key_Escape) QWidget::keyPressEvent(event);
  Events_.Raise([&] {
    Model_.OnKeyDown(KeyCodeOf(*event), shift);
    if (code.size() == 1) Model_.OnKeyPress(static_cast<unsigned char>(code.at(0)));
  });
}

void ButtonWidget::keyReleaseEvent(QKeyEvent *event) {
  // A key that is held goes down again and again, and up once.
  if (event->isAutoRepeat()) return;
  Events_.Raise([&] { Model_.OnKeyUp(KeyCodeOf(*event), ShiftOf(event->modifiers())); });
}

bool ButtonWidget::focusNextPrevChild(bool next) {
  // The toolkit asks a disabled widget only while it takes the focus away from it. A button that
  // disables itself keeps the focus; the Tab key then goes on from there, through the parent.
  return !isEnabled() || QWidget::focusNextPrevChild(next);
}

TextSize ButtonWidget::MeasureText(const ShownCaption &text, const ButtonFont &font, int width) {
  return MeasureCaption(text, font, devicePixelRatioF(), width);
}

void ButtonWidget::DrawText(Canvas &canvas, const ShownCaption &text, const ButtonFont &font,
                            const Box &box, Colour colour) {
  DrawCaption(canvas, text, font, devicePixelRatioF(), box, colour);
}

bool ButtonWidget::PointerIsOver() {
  // Where the pointer has left for another program's window the display may not tell where it
  // is, but tells that it has left.
  return underMouse() && QApplication::widgetAt(QCursor::pos()) == this;
}

void ButtonWidget::SurfaceChanged() {
  const std::optional<Region> &shape = Model_.Shape();
  if (shape) {
    const auto rect_of = [this](const Box &box) {
      const double scale = devicePixelRatioF();
      return QRect(QPoint(static_cast<int>(box.Left / scale), static_cast<int>(box.Top / scale)),
                   QSize(static_cast<int>(std::ceil(box.Width() / scale)),
                         static_cast<int>(std::ceil(box.Height() / scale))));
    };
    QRegion seen(rect_of(shape->Whole()));
    for (const Box &corner : shape->Removed())
      seen -= rect_of(corner);
    setMask(seen);
  } else if (!mask().isEmpty()) {
    clearMask();
  }
  update();
}

void ButtonWidget::SizeCorrected(int width, int height) {
  const double scale = devicePixelRatioF();
  resize(static_cast<int>(width / scale), static_cast<int>(height / scale));
}

int ButtonWidget::PixelsOf(int units) {
  return InPixels(static_cast<double>(units) / TwipsPerPixel);
}

Backdrop ButtonWidget::ParentBackdrop() {
  return {nullptr, InPixels(x()), InPixels(y())};
}

void ButtonWidget::PropertyChanged(std::string_view name) {
  if (name == "Caption") TakeAccessKey();
  if (name == "MouseIcon" || name == "MousePointer" || name == "DefCurHand") TakeCursor();
}

void ButtonWidget::TakeAccessKey() {
  const QString key = FromModel(Model_.AccessKey());
  AccessKey_.setKey(key.isEmpty() ? QKeySequence() : QKeySequence("Alt+" + key.toUpper()));
  setAccessibleName(FromModel(ShowCaption(Model_.Caption()).Text));
}

void ButtonWidget::TakeCursor() {
  const RasterRef picture = Model_.Cursor();
  if (!picture) {
    unsetCursor();
    return;
  }
  const QImage image(reinterpret_cast<const uchar *>(picture->Pixels.data()), picture->Width,
                     picture->Height, QImage::Format_ARGB32);
  setCursor(QCursor(QPixmap::fromImage(image.copy()), picture->HotX, picture->HotY));
}

}  // namespace cvl
