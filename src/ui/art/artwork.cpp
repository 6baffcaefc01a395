#include "ui/art/artwork.h"

#include <cassert>
#include <cstddef>

#include "ui/art/art_tables.h"

namespace cvl {

ArtPicture ImageOf(int number) {
  assert(number >= 1 && static_cast<std::size_t>(number) <= art_tables::Images.size());
  return art_tables::Images[static_cast<std::size_t>(number) - 1];
}

ArtPicture Logo() {
  return art_tables::Logo;
}

std::span<const ArtPicture> WindowIcons() {
  return art_tables::Icons;
}

}  // namespace cvl
