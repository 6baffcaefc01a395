#include "scratch_art.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace cvl::tools {

ScratchArt::ScratchArt() {
  std::string folder = testing::TempDir() + "cvl-art-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no scratch folder");
  Path_ = folder;
  std::filesystem::create_directory(Path_ / "iml");
  for (int number = 1; number <= 35; ++number) {
    std::ostringstream name;
    name << "iml/" << std::setw(2) << std::setfill('0') << number << "_x.xpm";
    Write(name.str(), Xpm(16, 16, ColourOf(number)));
  }
  Write("logo.xpm", Xpm(56, 56, 0x00FF00));
  for (const int side : {16, 32, 48}) {
    Write("icon" + std::to_string(side) + ".xpm", Xpm(side, side, 0x0000FF));
  }
}

ScratchArt::~ScratchArt() {
  std::filesystem::remove_all(Path_);
}

void ScratchArt::Write(const std::string &name, const std::string &text) const {
  std::ofstream(Path_ / name) << text;
}

std::string ScratchArt::Xpm(int width, int height, std::uint32_t colour) {
  std::ostringstream text;
  text << "/* XPM */\nstatic const char *const x[] = {\n\"" << width << " " << height
       << " 2 1\",\n\"  c None\",\n\"# c #" << std::hex << std::setw(6) << std::setfill('0')
       << colour << "\",\n";
  for (int row = 0; row < height; ++row) {
    std::string pixels(static_cast<std::size_t>(width), '#');
    if (row == 0) pixels[0] = ' ';
    text << '"' << pixels << "\",\n";
  }
  text << "};\n";
  return text.str();
}

}  // namespace cvl::tools
