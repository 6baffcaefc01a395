#include "tests/platform_registry/scratch_directory.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace cvl {

ScratchDirectory::ScratchDirectory() : Path_(testing::TempDir() + "registry.XXXXXX") {
  if (mkdtemp(Path_.data()) == nullptr) throw std::runtime_error("no scratch directory");
}

ScratchDirectory::~ScratchDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(Path_, ignored);
}

void ScratchDirectory::Write(std::string_view name, std::string_view bytes) const {
  std::ofstream(PathOf(name), std::ios::binary) << bytes;
}

std::string ScratchDirectory::Read(std::string_view name) const {
  std::ifstream file(PathOf(name), std::ios::binary);
  if (!file) return "(none)";
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

std::vector<std::string> ScratchDirectory::Names() const {
  std::vector<std::string> names;
  for (const auto &entry : std::filesystem::directory_iterator(Path_)) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace cvl
