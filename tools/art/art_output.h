// What becomes of the pictures: a source file for the program, and a sheet to look at.

#pragma once

#include <string>

#include "tools/art/art_folder.h"

namespace cvl::tools {

/// C++ that defines the tables which src/ui/art/art_tables.h declares.
std::string ArtSource(const ArtFolder &art);

/// The image table as one picture (binary PPM): its images beside one another from 1 to 35
/// on a ground of the mask colour, each pixel `scale` by `scale` pixels large.
std::string ArtSheet(const ArtFolder &art, int scale);

}  // namespace cvl::tools
