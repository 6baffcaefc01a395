#include "base/text.h"

#include <cassert>

namespace cvl {

std::vector<std::string> Split(std::string_view text, std::string_view delimiter,
                               std::size_t limit) {
  assert(!delimiter.empty());
  std::vector<std::string> parts;
  if (text.empty()) return parts;
  while (limit == 0 || parts.size() + 1 < limit) {
    const std::size_t at = text.find(delimiter);
    if (at == std::string_view::npos) break;
    parts.emplace_back(text.substr(0, at));
    text.remove_prefix(at + delimiter.size());
  }
  parts.emplace_back(text);
  return parts;
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string Joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) {
    text += part;
  }
  return text;
}

}  // namespace cvl
