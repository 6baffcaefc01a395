// Colours as 32-bit numbers, 0x00BBGGRR: red in the lowest byte. A number with its top bit
// set names a colour of the system by its low byte.

#pragma once

#include <cstdint>

namespace cvl {

using Colour = std::uint32_t;

/// The names of the system's colours that the button uses.
namespace system_colour {
inline constexpr Colour Highlight = 0x8000000D;
inline constexpr Colour ButtonFace = 0x8000000F;
inline constexpr Colour ButtonShadow = 0x80000010;
inline constexpr Colour ButtonText = 0x80000012;
inline constexpr Colour Highlight3D = 0x80000014;
inline constexpr Colour DarkShadow3D = 0x80000015;
inline constexpr Colour Light3D = 0x80000016;
}  // namespace system_colour

/// The colour of three components.
constexpr Colour Rgb(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
  return static_cast<Colour>(red | green << 8 | blue << 16);
}

/// The components of a colour that names none of the system's.
constexpr std::uint8_t RedOf(Colour colour) {
  return static_cast<std::uint8_t>(colour);
}
constexpr std::uint8_t GreenOf(Colour colour) {
  return static_cast<std::uint8_t>(colour >> 8);
}
constexpr std::uint8_t BlueOf(Colour colour) {
  return static_cast<std::uint8_t>(colour >> 16);
}

/// A colour of 0 to 0xFFFFFF as it stands; any other is looked up by its low byte among the
/// colours of the classic scheme. A number that the scheme hasn't is black.
Colour TranslateColor(Colour colour);

/// COLOUR, translated, with a number added to each component; each stops at 0 and 255.
Colour ColorShift(Colour colour, int red, int green, int blue);
/// The same with one number for all three.
Colour ColorShift(Colour colour, int shift);

/// COLOUR, translated, as a pixel 0xFFRRGGBB: the one place where the order of the
/// components turns.
std::uint32_t PixelOf(Colour colour);
/// The colour of a pixel; its alpha is passed over.
Colour ColourOfPixel(std::uint32_t pixel);

}  // namespace cvl
