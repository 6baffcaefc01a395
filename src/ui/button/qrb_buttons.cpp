#include "ui/button/qrb_buttons.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/text.h"
#include "base/version.h"
#include "ui/button/button_painter.h"
#include "ui/button/hand_cursor.h"
#include "ui/button/xp_button.h"

namespace cvl {

namespace {

constexpr int OverTimerMs = 10;
constexpr int LeastSide = 10;
constexpr int CorrectedSideUnits = 150;
constexpr int MostSide = 32767;

constexpr std::string_view MailPrefix = "mailto:";

ButtonProperties DefaultsOf(const std::string &instance_name) {
  ButtonProperties defaults;
  defaults.Caption = instance_name;
  return defaults;
}

template <class Event, class... Arguments>
void Raise(Event event, Arguments... arguments) {
  // A copy: the handler may set another one in its place.
  if (event) event(arguments...);
}

}  // namespace

QRBButtons::QRBButtons(EventLoop &loop, std::string instance_name)
    : InstanceName_(std::move(instance_name)),
      Properties_(DefaultsOf(InstanceName_)),
      ImgHAND_(HandCursor()),
      OverTimer_(loop, OverTimerMs) {
  OverTimer_.SetEnabled(false);
  OverTimer_.OnTimer = [this] { OnTick(); };
  SetAccessKey();
  Resize(0, 0);
}

// Painting.

void QRBButtons::Refresh() {
  PaintedEnabled_ = Enabled;
  const ButtonScene scene{
      .Properties = Properties_,
      .Layout = Layout_,
      .Font = Font(),
      .CurrentPicture = CurrentPicture_,
      .Enabled = Enabled,
      .HasFocus = HasFocus_,
      .IsDown = IsDown_,
      .IsHover = IsHover_,
      .IsDefault = View_->IsDefaultButton(),
      .DesignMode = View_->InDesignMode(),
  };
  PaintButton(Surface_, scene, *View_, [this] { return View_->ParentBackdrop(); });
  View_->SurfaceChanged();
}

void QRBButtons::RefreshIfStale() {
  if (Enabled != PaintedEnabled_) Refresh();
}

void QRBButtons::Lay() {
  Layout_ = CalcLayout(Width(), Height(), Properties_, Font(), *View_);
}

void QRBButtons::Resize(int width, int height) {
  const auto side = [this](int asked) {
    return std::clamp(asked < LeastSide ? View_->PixelsOf(CorrectedSideUnits) : asked, 0, MostSide);
  };
  Surface_.Resize(side(width), side(height));
  if (Width() != width || Height() != height) View_->SizeCorrected(Width(), Height());
  Shape_.reset();
  if (Properties_.ButtonStyle == button_style::Rounded) Shape_ = MakeXPRegion(Width(), Height());
  Lay();
  Refresh();
}

void QRBButtons::Attach(ButtonView *view) {
  View_ = view == nullptr ? &Unseen_ : view;
  Lay();
  Refresh();
}

void QRBButtons::AmbientChanged() {
  Refresh();
}

void QRBButtons::FontChanged() {
  Lay();
  Refresh();
}

// Focus and mouse.

void QRBButtons::GotFocus() {
  HasFocus_ = true;
  Refresh();
}

void QRBButtons::LostFocus() {
  HasFocus_ = false;
  IsDown_ = false;
  Refresh();
}

void QRBButtons::OnMouseDown(int button, int shift, int x, int y) {
  LastButton_ = button;
  LastShift_ = shift;
  LastX_ = x;
  LastY_ = y;
  Press();
}

void QRBButtons::OnDoubleClick() {
  View_->CaptureMouse();
  Press();
}

/// The mouse-down step, with the values that were kept.
void QRBButtons::Press() {
  if (LastButton_ != mouse_button::Right) {
    IsDown_ = true;
    Refresh();
  }
  Raise(MouseDown, LastButton_, LastShift_, LastX_, LastY_);
}

void QRBButtons::OnMouseMove(int button, int shift, int x, int y) {
  if (Surface_.Bounds().Contains(x, y) && !IsHover_) {
    OverTimer_.SetEnabled(true);
    IsHover_ = true;
    if (Properties_.PictureHover) CurrentPicture_ = Properties_.PictureHover;
    Raise(MouseIn, shift);
    Refresh();
    View_->RunPendingEvents();
  }
  Raise(MouseMove, button, shift, x, y);
}

void QRBButtons::OnMouseUp(int button, int shift, int x, int y) {
  IsDown_ = false;
  if (button != mouse_button::Right) {
    Refresh();
    if (Surface_.Bounds().Contains(x, y)) {
      Raise(Click);
      GoToURL();
    }
  }
  Raise(MouseUp, button, shift, x, y);
}

void QRBButtons::OnTick() {
  if (View_->PointerIsOver()) return;
  OverTimer_.SetEnabled(false);
  IsHover_ = false;
  CurrentPicture_ = Properties_.Picture;
  Raise(MouseOut, LastShift_);
  Refresh();
  // A button dragged off looks released, and counts as held when the pointer comes back.
  if (IsDown_) {
    IsDown_ = false;
    Refresh();
    IsDown_ = true;
  }
}

// Keyboard.

void QRBButtons::OnKeyDown(int key_code, int shift) {
  if (!SpaceLatch_ && key_code == SpaceKey) {
    IsDown_ = true;
    IsHover_ = true;
    Refresh();
  }
  SpaceLatch_ = true;
  Raise(KeyDown, key_code, shift);
}

void QRBButtons::OnKeyPress(int key_ascii) {
  Raise(KeyPress, key_ascii);
}

/// By the space bar an address is opened twice, here and by the mouse-up step. This is meant:
/// SpaceBar.OpensTheAddressTwice pins it.
void QRBButtons::OnKeyUp(int key_code, int shift) {
  if (key_code == SpaceKey) {
    IsDown_ = false;
    IsHover_ = false;
    GoToURL();
    Refresh();
    OnMouseUp(mouse_button::Left, shift, 0, 0);
  }
  SpaceLatch_ = false;
  Raise(KeyUp, key_code, shift);
}

void QRBButtons::AccessKeyPressed() {
  if (!Enabled) return;
  Raise(Click);
  GoToURL();
}

void QRBButtons::GoToURL() {
  const std::string &url = Properties_.URL;
  if (url.starts_with(MailPrefix)) {
    View_->OpenWithShell(url);
  } else if (!url.empty()) {
    View_->NavigateTo(url);
  }
}

// Properties.

void QRBButtons::ReadProperties(const PropertyStore &store) {
  ButtonProperties stored = DefaultsOf(InstanceName_);
  ForEachButtonProperty([&](const auto &property) {
    stored.*property.Field = store.Read(property.Name, stored.*property.Field);
  });
  Enabled = store.Read("Enabled", true);
  Properties_ = std::move(stored);
  CurrentPicture_ = Properties_.Picture;
  SetAccessKey();
  Resize(Width(), Height());
}

void QRBButtons::WriteProperties(PropertyStore &store) const {
  const ButtonProperties defaults = DefaultsOf(InstanceName_);
  ForEachButtonProperty([&](const auto &property) {
    store.Write(property.Name, Properties_.*property.Field, defaults.*property.Field);
  });
  store.Write("Enabled", Enabled, true);
}

void QRBButtons::Changed(std::string_view name, Redo redo) {
  View_->PropertyChanged(name);
  switch (redo) {
    case Redo::Nothing:
      break;
    case Redo::Painting:
      Refresh();
      break;
    case Redo::Layout:
      Lay();
      Refresh();
      break;
    case Redo::Resize:
      Resize(Width(), Height());
      break;
  }
}

void QRBButtons::SetEnabled(bool value) {
  Enabled = value;
  Changed("Enabled", Redo::Painting);
}

ButtonFont QRBButtons::Font() const {
  return Properties_.Font ? *Properties_.Font : View_->ContainerFont();
}

void QRBButtons::SetFont(const ButtonFont &value) {
  std::optional<ButtonFont> own;
  if (value != View_->ContainerFont()) own = value;
  Set(button_property::Font, std::move(own));
}

void QRBButtons::SetCaption(std::string value) {
  Properties_.Caption = std::move(value);
  SetAccessKey();
  Changed(button_property::Caption.Name, button_property::Caption.Depends);
}

void QRBButtons::SetAccessKey() {
  AccessKey_ = AccessKeyOf(Properties_.Caption);
}

void QRBButtons::SetButtonStyle(std::int32_t value) {
  if (value == button_style::Rounded) Properties_.TransparentBG = false;
  Set(button_property::ButtonStyle, value);
}

void QRBButtons::SetPicture(const RasterRef &value) {
  const ButtonProperties defaults;
  Properties_.OriginalPicSizeW = value ? value->Width : defaults.OriginalPicSizeW;
  Properties_.OriginalPicSizeH = value ? value->Height : defaults.OriginalPicSizeH;
  const bool shows_hover = IsHover_ && Properties_.PictureHover;
  if (!shows_hover) CurrentPicture_ = value;
  if (Properties_.PictureSize == picture_size::Own) SizePicture();
  Set(button_property::Picture, value);
}

void QRBButtons::SetPictureSize(std::int32_t value) {
  Properties_.PictureSize = value;
  SizePicture();
  Changed(button_property::PictureSize.Name, button_property::PictureSize.Depends);
}

void QRBButtons::SizePicture() {
  const auto size = [this](std::int32_t width, std::int32_t height) {
    Properties_.PictureWidth = width;
    Properties_.PictureHeight = height;
  };
  switch (Properties_.PictureSize) {
    case picture_size::Small:
      return size(16, 16);
    case picture_size::Normal:
      return size(32, 32);
    case picture_size::Own:
      return size(Properties_.OriginalPicSizeW, Properties_.OriginalPicSizeH);
    case picture_size::Large:
      return size(64, 64);
    default:
      return;
  }
}

void QRBButtons::SetDefCurHand(bool value) {
  Properties_.MouseIcon = value ? ImgHAND_ : nullptr;
  if (value) Properties_.MousePointer = mouse_pointer::Custom;
  Set(button_property::DefCurHand, value);
}

RasterRef QRBButtons::Cursor() const {
  const bool untouched =
      Properties_.MousePointer == mouse_pointer::Default && !Properties_.MouseIcon;
  if (untouched && Properties_.DefCurHand) return ImgHAND_;
  return Properties_.MousePointer == mouse_pointer::Custom ? Properties_.MouseIcon : nullptr;
}

std::string QRBButtons::Version() {
  return VersionText;
}

}  // namespace cvl
