// The system's own push button.
//
// It paints itself in one of five styles onto a surface of pixels, watches with a fast timer
// whether the pointer is still over it, and opens an address when it is clicked. What shows
// it hands the surface on to the screen and tells it what the user does:
//
//   QRBButtons button(loop, "cfgsvrOK");
//   button.SetButtonStyle(button_style::Standard);
//   button.SetCaption("&OK");
//   button.Click = [&] { ... };
//   button.Attach(&view);
//   button.Resize(81, 25);
//
// It works unseen as well: properties are kept and the surface is painted, without texts.
// The user's events come only while the button is enabled, as a window's do.
//
// A handler may change, disable and detach the button but not destroy it: the step that
// raised the event goes on behind it. MouseMove lets pending events run, in which the same
// holds.

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>

#include "controls/control.h"
#include "controls/timer.h"
#include "ui/button/button_properties.h"
#include "ui/button/button_view.h"
#include "ui/button/canvas.h"
#include "ui/button/property_store.h"
#include "ui/button/region.h"
#include "ui/button/unseen_view.h"

namespace cvl {

/// Buttons of the mouse, as events name them.
namespace mouse_button {
inline constexpr int Left = 1;
inline constexpr int Right = 2;
inline constexpr int Middle = 4;
}  // namespace mouse_button

/// The code of the space bar.
inline constexpr int SpaceKey = 32;

/// Shift states are sums of 1 (shift), 2 (control) and 4 (alt). Positions are pixels of the
/// surface; those of events may lie outside of it.
class QRBButtons : public Control {
 public:
  /// Unseen, with the default properties and the least size. Its caption is its name.
  QRBButtons(EventLoop &loop, std::string instance_name);
  QRBButtons(const QRBButtons &) = delete;
  QRBButtons &operator=(const QRBButtons &) = delete;

  // Events.

  std::function<void()> Click;
  std::function<void(int key_code, int shift)> KeyDown;
  std::function<void(int key_ascii)> KeyPress;
  std::function<void(int key_code, int shift)> KeyUp;
  std::function<void(int button, int shift, int x, int y)> MouseDown;
  std::function<void(int button, int shift, int x, int y)> MouseMove;
  std::function<void(int button, int shift, int x, int y)> MouseUp;
  std::function<void(int shift)> MouseIn;
  /// The shift state is that of the last press: a tick of the timer knows no other.
  std::function<void(int shift)> MouseOut;

  // Operations.

  /// Paints the surface anew, with Enabled as it is now.
  void Refresh();

  /// Paints if Enabled was changed, through the field that all controls have, since the last
  /// painting. SetEnabled needs no such call.
  void RefreshIfStale();

  /// Opens URL, if there is one: mail addresses with the desktop's program, all others as
  /// pages. Failures: neither trap nor continue.
  void GoToURL();

  // What shows it.

  /// The view that shows it from now on, or null for none. The view outlives the button or
  /// is detached before it goes.
  void Attach(ButtonView *view);

  /// The size has changed. A side below 10 pixels becomes 150 units of the container, of
  /// which the view hears; one above 32767 is cut there.
  void Resize(int width, int height);
  int Width() const { return Surface_.Width(); }
  int Height() const { return Surface_.Height(); }

  /// Rows from the top, pixels 0xFFRRGGBB.
  const Canvas &Surface() const { return Surface_; }
  /// The shape of the window; none means all of it.
  const std::optional<Region> &Shape() const { return Shape_; }

  /// The character that, with the alt key, stands for a click; lower case, or empty.
  const std::string &AccessKey() const { return AccessKey_; }
  /// The picture that the pointer has over the button; null for one of the system's own, the
  /// one of MousePointer. A new button shows its hand although MouseIcon is none yet.
  RasterRef Cursor() const;
  /// The native window of the view, 0 for none.
  std::uintptr_t hWnd() const { return View_->WindowHandle(); }
  /// The program's version, such as "5.1.1". Not stored.
  static std::string Version();

  // What the user does, and what becomes of the surroundings.

  void GotFocus();
  void LostFocus();
  void OnMouseDown(int button, int shift, int x, int y);
  /// Comes in place of a second press.
  void OnDoubleClick();
  void OnMouseMove(int button, int shift, int x, int y);
  void OnMouseUp(int button, int shift, int x, int y);
  void OnKeyDown(int key_code, int shift);
  void OnKeyPress(int key_ascii);
  void OnKeyUp(int key_code, int shift);
  void AccessKeyPressed();
  /// Something about the container is different: default button, colours, design mode.
  void AmbientChanged();
  /// The font that the button uses has changed by itself.
  void FontChanged();

  // Run-time state.

  bool HasFocus() const { return HasFocus_; }
  bool IsDown() const { return IsDown_; }
  bool IsHover() const { return IsHover_; }
  bool SpaceLatch() const { return SpaceLatch_; }
  /// The one of Picture and PictureHover in use; null for none.
  const RasterRef &CurrentPicture() const { return CurrentPicture_; }
  const ButtonLayout &Layout() const { return Layout_; }

  // Properties. A write tells the view and repaints what depends on the property.

  const ButtonProperties &Properties() const { return Properties_; }

  /// Takes the stored values, and the defaults for what isn't stored. Raises 13 when a
  /// stored value is of a wrong type; no property has changed then.
  void ReadProperties(const PropertyStore &store);
  /// Stores what differs from the defaults.
  void WriteProperties(PropertyStore &store) const;

  void SetEnabled(bool value);

  Colour BackColor() const { return Properties_.BackColor; }
  Colour ForeColor() const { return Properties_.ForeColor; }
  bool ShowFocusRect() const { return Properties_.ShowFocusRect; }
  const std::string &Caption() const { return Properties_.Caption; }
  std::int32_t PicturePosition() const { return Properties_.PicturePosition; }
  std::int32_t ButtonStyle() const { return Properties_.ButtonStyle; }
  const RasterRef &Picture() const { return Properties_.Picture; }
  std::int32_t PictureWidth() const { return Properties_.PictureWidth; }
  std::int32_t PictureHeight() const { return Properties_.PictureHeight; }
  std::int32_t PictureSize() const { return Properties_.PictureSize; }
  std::int32_t OriginalPicSizeW() const { return Properties_.OriginalPicSizeW; }
  std::int32_t OriginalPicSizeH() const { return Properties_.OriginalPicSizeH; }
  /// The button's own font, or the container's.
  ButtonFont Font() const;
  const RasterRef &PictureHover() const { return Properties_.PictureHover; }
  const RasterRef &MouseIcon() const { return Properties_.MouseIcon; }
  std::int16_t MousePointer() const { return Properties_.MousePointer; }
  const std::string &URL() const { return Properties_.URL; }
  Colour XPColor_Pressed() const { return Properties_.XPColor_Pressed; }
  Colour XPColor_Hover() const { return Properties_.XPColor_Hover; }
  bool XPDefaultColors() const { return Properties_.XPDefaultColors; }
  const std::string &SoundOver() const { return Properties_.SoundOver; }
  const std::string &SoundClick() const { return Properties_.SoundClick; }
  bool DefCurHand() const { return Properties_.DefCurHand; }
  bool XPShowBorderAlways() const { return Properties_.XPShowBorderAlways; }
  Colour MaskColor() const { return Properties_.MaskColor; }
  bool TransparentBG() const { return Properties_.TransparentBG; }
  std::int16_t BEVEL() const { return Properties_.BEVEL; }
  std::int16_t BEVELDEPTH() const { return Properties_.BEVELDEPTH; }

  void SetBackColor(Colour value) { Set(button_property::BackColor, value); }
  void SetForeColor(Colour value) { Set(button_property::ForeColor, value); }
  void SetShowFocusRect(bool value) { Set(button_property::ShowFocusRect, value); }
  /// Sets the access key too.
  void SetCaption(std::string value);
  void SetPicturePosition(std::int32_t value) { Set(button_property::PicturePosition, value); }
  /// Rounded switches TransparentBG off.
  void SetButtonStyle(std::int32_t value);
  /// Sets the picture's own size too, which is 32 by 32 for none.
  void SetPicture(const RasterRef &value);
  void SetPictureWidth(std::int32_t value) { Set(button_property::PictureWidth, value); }
  void SetPictureHeight(std::int32_t value) { Set(button_property::PictureHeight, value); }
  /// Sets PictureWidth and PictureHeight, unless it says that they hold.
  void SetPictureSize(std::int32_t value);
  void SetOriginalPicSizeW(std::int32_t value) { Set(button_property::OriginalPicSizeW, value); }
  void SetOriginalPicSizeH(std::int32_t value) { Set(button_property::OriginalPicSizeH, value); }
  /// A font equal to the container's is the container's from now on.
  void SetFont(const ButtonFont &value);
  /// Shown from the next hovering on.
  void SetPictureHover(const RasterRef &value) { Set(button_property::PictureHover, value); }
  void SetMouseIcon(const RasterRef &value) { Set(button_property::MouseIcon, value); }
  void SetMousePointer(std::int16_t value) { Set(button_property::MousePointer, value); }
  void SetURL(std::string value) { Set(button_property::URL, std::move(value)); }
  void SetXPColor_Pressed(Colour value) { Set(button_property::XPColor_Pressed, value); }
  void SetXPColor_Hover(Colour value) { Set(button_property::XPColor_Hover, value); }
  void SetXPDefaultColors(bool value) { Set(button_property::XPDefaultColors, value); }
  void SetSoundOver(std::string value) { Set(button_property::SoundOver, std::move(value)); }
  void SetSoundClick(std::string value) { Set(button_property::SoundClick, std::move(value)); }
  /// True makes MouseIcon the button's hand and MousePointer custom; false leaves no picture
  /// in MouseIcon.
  void SetDefCurHand(bool value);
  void SetXPShowBorderAlways(bool value) { Set(button_property::XPShowBorderAlways, value); }
  void SetMaskColor(Colour value) { Set(button_property::MaskColor, value); }
  void SetTransparentBG(bool value) { Set(button_property::TransparentBG, value); }
  void SetBEVEL(std::int16_t value) { Set(button_property::BEVEL, value); }
  void SetBEVELDEPTH(std::int16_t value) { Set(button_property::BEVELDEPTH, value); }

 private:
  template <class Value>
  void Set(const ButtonProperty<Value> &property, std::type_identity_t<Value> value) {
    Properties_.*property.Field = std::move(value);
    Changed(property.Name, property.Depends);
  }
  void Changed(std::string_view name, Redo redo);
  void SizePicture();
  void Lay();
  void SetAccessKey();
  void Press();
  void OnTick();

  UnseenView Unseen_;
  ButtonView *View_ = &Unseen_;
  std::string InstanceName_;
  ButtonProperties Properties_;

  Canvas Surface_;
  std::optional<Region> Shape_;
  ButtonLayout Layout_;
  std::string AccessKey_;
  RasterRef CurrentPicture_;

  bool HasFocus_ = false;
  bool IsDown_ = false;
  bool IsHover_ = false;
  // Set by any key that goes down; the space bar behind another key is passed over.
  bool SpaceLatch_ = false;
  bool PaintedEnabled_ = true;

  // Of the last press, for the double click.
  int LastButton_ = 0;
  int LastShift_ = 0;
  int LastX_ = 0;
  int LastY_ = 0;

  RasterRef ImgHAND_;
  Timer OverTimer_;
};

}  // namespace cvl
