#include "tools/art/art_folder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace cvl::tools {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Refuse(const fs::path &path, std::string_view why) {
  throw ArtError(path.string().append(": ").append(why));
}

XpmPicture ReadPicture(const fs::path &path, int side) {
  std::ifstream file(path, std::ios::binary);
  if (!file) Refuse(path, "can't be read");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  XpmPicture picture = ReadXpm(text, path.string());
  if (picture.Width != side || picture.Height != side) {
    const std::string size = std::to_string(side);
    Refuse(path, std::string("isn't ").append(size).append(" by ").append(size));
  }
  return picture;
}

/// The number that a file's name begins with: two digits and an underscore. 0 for none.
std::size_t NumberOf(const fs::path &path) {
  const std::string name = path.filename().string();
  const auto digit = [&](std::size_t at) { return name[at] >= '0' && name[at] <= '9'; };
  if (name.size() < 4 || !digit(0) || !digit(1) || name[2] != '_') return 0;
  const auto value = [&](std::size_t at) { return static_cast<std::size_t>(name[at] - '0'); };
  return value(0) * 10 + value(1);
}

std::array<fs::path, TableImages> FindImages(const fs::path &folder) {
  if (!fs::is_directory(folder)) Refuse(folder, "there is no such folder");
  std::array<fs::path, TableImages> found;
  for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() != ".xpm") continue;
    const std::size_t number = NumberOf(entry.path());
    if (number < 1 || number > TableImages) {
      Refuse(entry.path(), "its name doesn't begin with 01_ to 35_");
    }
    fs::path &place = found[number - 1];
    if (!place.empty()) Refuse(entry.path(), "another picture has this number");
    place = entry.path();
  }
  const auto gap = std::ranges::find_if(found, &fs::path::empty);
  if (gap != found.end()) {
    Refuse(folder, std::string("has no image ").append(std::to_string(gap - found.begin() + 1)));
  }
  return found;
}

}  // namespace

ArtFolder LoadArtFolder(const fs::path &folder) {
  ArtFolder art;
  const std::array<fs::path, TableImages> paths = FindImages(folder / "iml");
  for (std::size_t at = 0; at < TableImages; ++at) {
    art.Images[at] = ReadPicture(paths[at], TableImageSide);
    if (std::ranges::count(art.Images[at].Pixels, 0xFF000000 | MaskColour) != 0) {
      Refuse(paths[at], "#C0C0C0 is the mask colour: take a grey beside it");
    }
  }
  art.Logo = ReadPicture(folder / "logo.xpm", LogoSide);
  for (std::size_t at = 0; at < IconSides.size(); ++at) {
    const std::string name =
        std::string("icon").append(std::to_string(IconSides[at])).append(".xpm");
    art.Icons[at] = ReadPicture(folder / name, IconSides[at]);
  }
  return art;
}

}  // namespace cvl::tools
