// What cvlart writes: the tables behind artwork.h.

#pragma once

#include <array>

#include "ui/art/artwork.h"

namespace cvl::art_tables {

extern const std::array<ArtPicture, 35> Images;
extern const std::array<ArtPicture, 3> Icons;
extern const ArtPicture Logo;

}  // namespace cvl::art_tables
