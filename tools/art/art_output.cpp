#include "tools/art/art_output.h"

#include <cstdint>
#include <iomanip>
#include <span>
#include <sstream>

namespace cvl::tools {

namespace {

constexpr std::size_t PixelsInALine = 8;

void PutPixels(std::ostream &out, const std::string &name, const XpmPicture &picture) {
  out << "constexpr std::array<std::uint32_t, " << std::dec << picture.Pixels.size() << "> " << name
      << "{" << std::hex << std::uppercase << std::setfill('0');
  for (std::size_t at = 0; at < picture.Pixels.size(); ++at) {
    out << (at % PixelsInALine == 0 ? "\n    " : " ") << "0x" << std::setw(8) << picture.Pixels[at]
        << ",";
  }
  out << "};\n" << std::dec;
}

std::string Numbered(const char *name, std::size_t number) {
  return std::string(name).append(std::to_string(number));
}

void PutPicture(std::ostream &out, const std::string &pixels, const XpmPicture &picture) {
  out << "{" << picture.Width << ", " << picture.Height << ", " << pixels << "}";
}

void PutTable(std::ostream &out, const char *table, const char *pixels,
              std::span<const XpmPicture> pictures) {
  out << "const std::array<ArtPicture, " << pictures.size() << "> " << table << "{{\n";
  for (std::size_t at = 0; at < pictures.size(); ++at) {
    out << "    ";
    PutPicture(out, Numbered(pixels, at + 1), pictures[at]);
    out << ",\n";
  }
  out << "}};\n";
}

}  // namespace

std::string ArtSource(const ArtFolder &art) {
  std::ostringstream out;
  out << "// Made by cvlart from the pictures in data/art: change them there.\n"
         "#include \"ui/art/art_tables.h\"\n"
         "\n"
         "namespace cvl::art_tables {\n"
         "\n"
         "namespace {\n"
         "\n";
  for (std::size_t at = 0; at < art.Images.size(); ++at) {
    PutPixels(out, Numbered("ImagePixels", at + 1), art.Images[at]);
  }
  for (std::size_t at = 0; at < art.Icons.size(); ++at) {
    PutPixels(out, Numbered("IconPixels", at + 1), art.Icons[at]);
  }
  PutPixels(out, "LogoPixels", art.Logo);
  out << "\n}  // namespace\n\n";
  PutTable(out, "Images", "ImagePixels", art.Images);
  PutTable(out, "Icons", "IconPixels", art.Icons);
  out << "const ArtPicture Logo";
  PutPicture(out, "LogoPixels", art.Logo);
  out << ";\n\n}  // namespace cvl::art_tables\n";
  return out.str();
}

std::string ArtSheet(const ArtFolder &art, int scale) {
  const auto side = static_cast<std::size_t>(TableImageSide);
  const auto factor = static_cast<std::size_t>(scale);
  const std::size_t width = TableImages * side * factor;
  const std::size_t height = side * factor;
  std::string sheet = std::string("P6\n")
                          .append(std::to_string(width))
                          .append(" ")
                          .append(std::to_string(height))
                          .append("\n255\n");
  sheet.reserve(sheet.size() + width * height * 3);
  for (std::size_t y = 0; y < height; ++y) {
    for (std::size_t x = 0; x < width; ++x) {
      const XpmPicture &image = art.Images[x / factor / side];
      const std::uint32_t pixel = image.Pixels[y / factor * side + x / factor % side];
      const std::uint32_t colour = pixel == 0 ? MaskColour : pixel;
      for (const unsigned shift : {16U, 8U, 0U}) {
        sheet.push_back(static_cast<char>(colour >> shift & 0xFF));
      }
    }
  }
  return sheet;
}

}  // namespace cvl::tools
