// The properties of a button that the form it stands on stores, and the kinds of value that
// they have.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ui/button/colours.h"
#include "ui/button/raster.h"

namespace cvl {

/// Looks of a button. Any other number paints neither background nor edge.
namespace button_style {
inline constexpr std::int32_t Standard = 0;  ///< raised; sunken when pressed
inline constexpr std::int32_t Flat = 1;      ///< an edge only while hovered or pressed
inline constexpr std::int32_t Menu = 2;      ///< flat; filled and framed while hovered
inline constexpr std::int32_t Rounded = 3;   ///< gradient and cut corners
inline constexpr std::int32_t Bare = 4;      ///< never an edge
}  // namespace button_style

/// Where the picture stands. Any other number is taken for Left.
namespace picture_position {
inline constexpr std::int32_t Above = 0;
inline constexpr std::int32_t Left = 1;
inline constexpr std::int32_t Right = 2;
inline constexpr std::int32_t Below = 3;
}  // namespace picture_position

/// What gives a picture its drawn size. Any other number leaves the size as it is.
namespace picture_size {
inline constexpr std::int32_t Small = 0;   ///< 16 by 16
inline constexpr std::int32_t Normal = 1;  ///< 32 by 32
inline constexpr std::int32_t Own = 2;     ///< the picture's own
inline constexpr std::int32_t Custom = 3;  ///< PictureWidth by PictureHeight
inline constexpr std::int32_t Large = 4;   ///< 64 by 64
}  // namespace picture_size

/// Kinds of cursor that the button itself sets; the others are the system's.
namespace mouse_pointer {
inline constexpr std::int16_t Default = 0;
inline constexpr std::int16_t Custom = 99;  ///< the picture of MouseIcon
}  // namespace mouse_pointer

struct ButtonFont {
  std::string Name = "MS Sans Serif";
  double Points = 8.25;
  bool Bold = false;
  bool Italic = false;
  bool Underline = false;
  bool Strikethrough = false;

  bool operator==(const ButtonFont &) const = default;
};

/// The members carry the names under which they are stored, and their defaults. Enabled, the
/// last stored value, is the one that every control has.
struct ButtonProperties {
  Colour BackColor = system_colour::ButtonFace;
  Colour ForeColor = system_colour::ButtonText;  ///< of the text, and of the frame of Menu
  bool ShowFocusRect = true;
  std::string Caption;  ///< by default the name of the instance
  std::int32_t PicturePosition = picture_position::Left;
  std::int32_t ButtonStyle = button_style::Menu;
  RasterRef Picture;
  std::int32_t PictureWidth = 32;  ///< drawn size in pixels
  std::int32_t PictureHeight = 32;
  std::int32_t PictureSize = picture_size::Normal;
  std::int32_t OriginalPicSizeW = 32;  ///< the size of Picture itself
  std::int32_t OriginalPicSizeH = 32;
  std::optional<ButtonFont> Font;  ///< none: the container's
  RasterRef PictureHover;          ///< shown in place of Picture while hovering
  RasterRef MouseIcon;
  std::int16_t MousePointer = mouse_pointer::Default;
  std::string URL;                                      ///< what a click opens
  Colour XPColor_Pressed = system_colour::Highlight3D;  ///< focus of Rounded, press of Menu
  Colour XPColor_Hover = system_colour::Light3D;        ///< of Menu and Rounded
  bool XPDefaultColors = true;                          ///< fixed ones in place of these two
  std::string SoundOver = ".\\resources\\over.wav";     ///< kept only: nothing plays it
  std::string SoundClick = ".\\resources\\click.wav";   ///< kept only
  bool DefCurHand = true;
  bool XPShowBorderAlways = false;  ///< Menu: a frame also when idle
  Colour MaskColor = 0;             ///< pixels of bitmaps that aren't painted
  bool TransparentBG = false;       ///< show the parent's picture behind the button
  std::int16_t BEVEL = 1;           ///< width of the edge in pixels; below 2 the plain one
  std::int16_t BEVELDEPTH = 8;      ///< brightness step per pixel of the wide edge
};

/// What is done again when a property changes.
enum class Redo {
  Nothing,
  Painting,
  Layout,  ///< and painting
  Resize,  ///< the whole step, layout and painting included
};

/// A property: the name that it is stored under, where it stands, and what depends on it.
template <class Value>
struct ButtonProperty {
  const char *Name;
  Value ButtonProperties::*Field;
  Redo Depends;
};
template <class Value>
ButtonProperty(const char *, Value ButtonProperties::*, Redo) -> ButtonProperty<Value>;

namespace button_property {
using P = ButtonProperties;
inline constexpr ButtonProperty BackColor{"BackColor", &P::BackColor, Redo::Painting};
inline constexpr ButtonProperty ForeColor{"ForeColor", &P::ForeColor, Redo::Painting};
inline constexpr ButtonProperty ShowFocusRect{"ShowFocusRect", &P::ShowFocusRect, Redo::Painting};
inline constexpr ButtonProperty Caption{"Caption", &P::Caption, Redo::Layout};
inline constexpr ButtonProperty PicturePosition{"PicturePosition", &P::PicturePosition,
                                                Redo::Layout};
inline constexpr ButtonProperty ButtonStyle{"ButtonStyle", &P::ButtonStyle, Redo::Resize};
inline constexpr ButtonProperty Picture{"Picture", &P::Picture, Redo::Layout};
inline constexpr ButtonProperty PictureWidth{"PictureWidth", &P::PictureWidth, Redo::Layout};
inline constexpr ButtonProperty PictureHeight{"PictureHeight", &P::PictureHeight, Redo::Layout};
inline constexpr ButtonProperty PictureSize{"PictureSize", &P::PictureSize, Redo::Layout};
inline constexpr ButtonProperty OriginalPicSizeW{"OriginalPicSizeW", &P::OriginalPicSizeW,
                                                 Redo::Layout};
inline constexpr ButtonProperty OriginalPicSizeH{"OriginalPicSizeH", &P::OriginalPicSizeH,
                                                 Redo::Layout};
inline constexpr ButtonProperty Font{"Font", &P::Font, Redo::Layout};
inline constexpr ButtonProperty PictureHover{"PictureHover", &P::PictureHover, Redo::Layout};
inline constexpr ButtonProperty MouseIcon{"MouseIcon", &P::MouseIcon, Redo::Nothing};
inline constexpr ButtonProperty MousePointer{"MousePointer", &P::MousePointer, Redo::Nothing};
inline constexpr ButtonProperty URL{"URL", &P::URL, Redo::Nothing};
inline constexpr ButtonProperty XPColor_Pressed{"XPColor_Pressed", &P::XPColor_Pressed,
                                                Redo::Painting};
inline constexpr ButtonProperty XPColor_Hover{"XPColor_Hover", &P::XPColor_Hover, Redo::Painting};
inline constexpr ButtonProperty XPDefaultColors{"XPDefaultColors", &P::XPDefaultColors,
                                                Redo::Painting};
inline constexpr ButtonProperty SoundOver{"SoundOver", &P::SoundOver, Redo::Nothing};
inline constexpr ButtonProperty SoundClick{"SoundClick", &P::SoundClick, Redo::Nothing};
inline constexpr ButtonProperty DefCurHand{"DefCurHand", &P::DefCurHand, Redo::Nothing};
inline constexpr ButtonProperty XPShowBorderAlways{"XPShowBorderAlways", &P::XPShowBorderAlways,
                                                   Redo::Painting};
inline constexpr ButtonProperty MaskColor{"MaskColor", &P::MaskColor, Redo::Painting};
inline constexpr ButtonProperty TransparentBG{"TransparentBG", &P::TransparentBG, Redo::Painting};
inline constexpr ButtonProperty BEVEL{"BEVEL", &P::BEVEL, Redo::Painting};
inline constexpr ButtonProperty BEVELDEPTH{"BEVELDEPTH", &P::BEVELDEPTH, Redo::Painting};
}  // namespace button_property

/// Calls VISIT with each property, whatever its type.
template <class Visit>
void ForEachButtonProperty(Visit &&visit) {
  namespace p = button_property;
  const auto all = [&](const auto &...each) { (visit(each), ...); };
  all(p::BackColor, p::ForeColor, p::ShowFocusRect, p::Caption, p::PicturePosition, p::ButtonStyle,
      p::Picture, p::PictureWidth, p::PictureHeight, p::PictureSize, p::OriginalPicSizeW,
      p::OriginalPicSizeH, p::Font, p::PictureHover, p::MouseIcon, p::MousePointer, p::URL,
      p::XPColor_Pressed, p::XPColor_Hover, p::XPDefaultColors, p::SoundOver, p::SoundClick,
      p::DefCurHand, p::XPShowBorderAlways, p::MaskColor, p::TransparentBG, p::BEVEL,
      p::BEVELDEPTH);
}

}  // namespace cvl
