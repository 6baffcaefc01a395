// Small operations on texts. A character is a byte; texts are Latin-1 where it matters.

#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace cvl {

/// TEXT cut at each DELIMITER, into at most LIMIT parts: what is left over stays whole in
/// the last one. LIMIT 0 means no limit. An empty TEXT yields no part at all.
std::vector<std::string> Split(std::string_view text, std::string_view delimiter,
                               std::size_t limit = 0);

/// TEXT without the blanks at both ends.
std::string_view Trim(std::string_view text);

/// PARTS one behind the other.
std::string Joined(std::initializer_list<std::string_view> parts);

/// A flag as the settings hold it, "YES" or "NO".
constexpr const char *FlagText(bool flag) {
  return flag ? "YES" : "NO";
}

}  // namespace cvl
