// The pictures of a folder, as the program wants them.
//
//   iml/NN_name.xpm                         the image table, NN from 01 to 35, 16 by 16
//   logo.xpm                                56 by 56
//   icon16.xpm, icon32.xpm, icon48.xpm      the window's icon in three sizes

#pragma once

#include <array>
#include <cstddef>
#include <filesystem>

#include "tools/art/xpm.h"

namespace cvl::tools {

inline constexpr std::size_t TableImages = 35;
inline constexpr int TableImageSide = 16;
inline constexpr int LogoSide = 56;
inline constexpr std::array IconSides{16, 32, 48};

/// The colour of the image table that stands for transparent, 0xRRGGBB.
inline constexpr std::uint32_t MaskColour = 0xC0C0C0;

struct ArtFolder {
  std::array<XpmPicture, TableImages> Images;
  XpmPicture Logo;
  std::array<XpmPicture, IconSides.size()> Icons;
};

/// Reads a folder. Raises ArtError for a picture that is missing, broken, there twice or of
/// another size, and for an image of the table that has the mask colour among its own: a
/// masked copy would have a hole there.
ArtFolder LoadArtFolder(const std::filesystem::path &folder);

}  // namespace cvl::tools
