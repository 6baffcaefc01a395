// The version file of the maker's site: fields with "-:-" between each two, line ends of no
// account.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cvl {

/// The fields that somebody reads.
struct VersionFile {
  std::string LatestVersion;   ///< field 1, the latest version of the program
  std::string ServerFileSize;  ///< field 4, the length of the server file in bytes
};

/// Reads the version file from an answer, header and all. Nothing when it has fewer than
/// six fields.
std::optional<VersionFile> ReadVersionFile(std::string_view answer);

}  // namespace cvl
