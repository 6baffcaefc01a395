// The zones that a test puts the process into.

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/clock.h"

namespace cvl {

/// Puts the process into a zone for its own lifetime: a value of TZ, or none at all.
class ZoneSetting {
 public:
  explicit ZoneSetting(const std::optional<std::string> &zone);
  ~ZoneSetting();
  ZoneSetting(const ZoneSetting &) = delete;
  ZoneSetting &operator=(const ZoneSetting &) = delete;

 private:
  static void Set(const std::optional<std::string> &zone);

  std::optional<std::string> Before_;
};

/// The characters of a name up to its terminator; those of the database are ASCII.
std::string NameText(const ZoneName &name);

/// One file of each distinct content in the zone database. Most zones have several names.
std::vector<std::filesystem::path> DistinctZoneFiles();

}  // namespace cvl
