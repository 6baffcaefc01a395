#include "ui/button/colours.h"

#include <algorithm>
#include <array>

namespace cvl {

namespace {

/// The classic scheme, by the system's numbers. A desktop's own colours are never asked for,
/// so that a button is the same pixel for pixel everywhere.
constexpr std::array<Colour, 25> ClassicScheme = {
    Rgb(0xC0, 0xC0, 0xC0),  // 0 scroll bar
    Rgb(0x00, 0x80, 0x80),  // 1 desktop
    Rgb(0x00, 0x00, 0x80),  // 2 active caption
    Rgb(0x80, 0x80, 0x80),  // 3 inactive caption
    Rgb(0xC0, 0xC0, 0xC0),  // 4 menu
    Rgb(0xFF, 0xFF, 0xFF),  // 5 window
    Rgb(0x00, 0x00, 0x00),  // 6 window frame
    Rgb(0x00, 0x00, 0x00),  // 7 menu text
    Rgb(0x00, 0x00, 0x00),  // 8 window text
    Rgb(0xFF, 0xFF, 0xFF),  // 9 caption text
    Rgb(0xC0, 0xC0, 0xC0),  // 10 active border
    Rgb(0xC0, 0xC0, 0xC0),  // 11 inactive border
    Rgb(0x80, 0x80, 0x80),  // 12 work space
    Rgb(0x00, 0x00, 0x80),  // 13 highlight
    Rgb(0xFF, 0xFF, 0xFF),  // 14 highlighted text
    Rgb(0xC0, 0xC0, 0xC0),  // 15 button face
    Rgb(0x80, 0x80, 0x80),  // 16 button shadow
    Rgb(0x80, 0x80, 0x80),  // 17 grey text
    Rgb(0x00, 0x00, 0x00),  // 18 button text
    Rgb(0xC0, 0xC0, 0xC0),  // 19 inactive caption text
    Rgb(0xFF, 0xFF, 0xFF),  // 20 3D highlight
    Rgb(0x00, 0x00, 0x00),  // 21 3D dark shadow
    Rgb(0xDF, 0xDF, 0xDF),  // 22 3D light
    Rgb(0x00, 0x00, 0x00),  // 23 tip text
    Rgb(0xFF, 0xFF, 0xE1),  // 24 tip
};

std::uint8_t Shifted(std::uint8_t component, int shift) {
  return static_cast<std::uint8_t>(std::clamp(component + std::clamp(shift, -255, 255), 0, 255));
}

}  // namespace

Colour TranslateColor(Colour colour) {
  if (colour <= 0xFFFFFF) return colour;
  const Colour number = colour & 0xFF;
  return number < ClassicScheme.size() ? ClassicScheme[number] : Colour{0};
}

Colour ColorShift(Colour colour, int red, int green, int blue) {
  const Colour base = TranslateColor(colour);
  return Rgb(Shifted(RedOf(base), red), Shifted(GreenOf(base), green), Shifted(BlueOf(base), blue));
}

Colour ColorShift(Colour colour, int shift) {
  return ColorShift(colour, shift, shift, shift);
}

std::uint32_t PixelOf(Colour colour) {
  const Colour base = TranslateColor(colour);
  return 0xFF000000U | static_cast<std::uint32_t>(RedOf(base)) << 16 |
         static_cast<std::uint32_t>(GreenOf(base)) << 8 | BlueOf(base);
}

Colour ColourOfPixel(std::uint32_t pixel) {
  return Rgb(static_cast<std::uint8_t>(pixel >> 16), static_cast<std::uint8_t>(pixel >> 8),
             static_cast<std::uint8_t>(pixel));
}

}  // namespace cvl
