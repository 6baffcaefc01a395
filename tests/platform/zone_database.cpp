#include "tests/platform/zone_database.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <map>

namespace cvl {

namespace {

std::string Content(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

ZoneSetting::ZoneSetting(const std::optional<std::string> &zone) {
  if (const char *before = std::getenv("TZ")) Before_ = before;
  Set(zone);
}

ZoneSetting::~ZoneSetting() {
  Set(Before_);
}

void ZoneSetting::Set(const std::optional<std::string> &zone) {
  if (zone) {
    setenv("TZ", zone->c_str(), 1);
  } else {
    unsetenv("TZ");
  }
  tzset();
}

std::string NameText(const ZoneName &name) {
  return {name.begin(), std::find(name.begin(), name.end(), u'\0')};
}

std::vector<std::filesystem::path> DistinctZoneFiles() {
  std::map<std::string, std::filesystem::path> by_content;
  for (const auto &entry : std::filesystem::recursive_directory_iterator("/usr/share/zoneinfo")) {
    if (!entry.is_regular_file()) continue;
    std::string content = Content(entry.path());
    if (content.starts_with("TZif")) by_content.emplace(std::move(content), entry.path());
  }
  std::vector<std::filesystem::path> files;
  std::transform(by_content.begin(), by_content.end(), std::back_inserter(files),
                 [](const auto &each) { return each.second; });
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace cvl
