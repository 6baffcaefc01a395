// The pictures of the window. They are part of the library, not files beside the program;
// they are drawn in data/art.

#pragma once

#include <cstdint>
#include <span>

namespace cvl {

/// A picture: rows of 0xAARRGGBB, top to bottom. A pixel is opaque or 0, which is
/// transparent. The pixels live as long as the program.
struct ArtPicture {
  int Width;
  int Height;
  std::span<const std::uint32_t> Pixels;
};

/// The colour, 0xRRGGBB, that stands for transparent where a picture can't say so. No
/// image of the table has it among its own colours.
inline constexpr std::uint32_t MaskColour = 0xC0C0C0;

/// An image of the table IML, 16 by 16 pixels. Asserts that the number is from 1 to 35:
///
///   1       the clock of the tree's root
///   2-8     globes, one for each region: NA SA EU AF AW AE AP
///   9-32    flags; docs/protocols.md has the countries
///   33, 34  the dark lamp and the lit one
///   35      a service in the tree
ArtPicture ImageOf(int number);

/// 56 by 56 pixels; its edge is drawn to stand on white.
ArtPicture Logo();

/// The window's icon in 16, 32 and 48 pixels, in this order.
std::span<const ArtPicture> WindowIcons();

}  // namespace cvl
