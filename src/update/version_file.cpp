#include "update/version_file.h"

#include <vector>

#include "base/text.h"
#include "update/http_answer.h"

namespace cvl {

namespace {

constexpr std::size_t FewestFields = 6;

}  // namespace

std::optional<VersionFile> ReadVersionFile(std::string_view answer) {
  const std::string text = WithoutLineEnds(BehindHeader(answer, HeaderEnd(answer)));
  std::vector<std::string> fields = Split(text, "-:-");
  if (fields.size() < FewestFields) return std::nullopt;
  return VersionFile{std::move(fields[1]), std::move(fields[4])};
}

}  // namespace cvl
