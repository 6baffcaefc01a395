// Reading a picture in XPM form: a text file in which each row of the picture is a string
// of one or two characters a pixel.

#pragma once

#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace cvl::tools {

/// A picture can't be understood or isn't what it should be. The text is for the person
/// who drew it, and begins with the place: "iml/09_us.xpm:14: ...".
class ArtError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Rows of 0xAARRGGBB, top to bottom. A pixel is opaque, or transparent and then 0.
struct XpmPicture {
  int Width = 0;
  int Height = 0;
  std::vector<std::uint32_t> Pixels;
};

/// Reads the text of a file; `name` is what messages call it.
///
/// The form is a narrow XPM 3: sizes from 1 to 256, colours as "c None" or "c #RRGGBB".
/// What stands outside of the strings isn't looked at, beyond the comment at the start.
/// Raises ArtError for anything else.
XpmPicture ReadXpm(std::string_view text, std::string_view name);

}  // namespace cvl::tools
