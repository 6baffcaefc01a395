// A folder of pictures that is sound until a test breaks it. Each picture has a colour of
// its own and a transparent first pixel.

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace cvl::tools {

class ScratchArt {
 public:
  ScratchArt();
  ~ScratchArt();
  ScratchArt(const ScratchArt &) = delete;
  ScratchArt &operator=(const ScratchArt &) = delete;

  const std::filesystem::path &Path() const { return Path_; }

  /// Writes a file, its path relative to the folder.
  void Write(const std::string &name, const std::string &text) const;

  /// The text of a picture of one colour (0xRRGGBB) whose first pixel is transparent.
  static std::string Xpm(int width, int height, std::uint32_t colour);

  /// The colour of an image of the table, 1 to 35.
  static std::uint32_t ColourOf(int number) { return 0x102030U + static_cast<unsigned>(number); }

 private:
  std::filesystem::path Path_;
};

}  // namespace cvl::tools
