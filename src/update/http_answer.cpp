#include "update/http_answer.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/numbers.h"

namespace cvl {

namespace {

constexpr std::string_view LengthHeader = "Content-Length: ";
constexpr std::string_view EmptyLine = "\r\n\r\n";
constexpr std::string_view LineEnd = "\r\n";
constexpr std::size_t LengthCharacters = 7;

std::size_t PositionOf(std::string_view data, std::string_view what) {
  const std::size_t at = data.find(what);
  return at == std::string_view::npos ? 0 : at + 1;
}

/// DATA from a position on, which may lie behind its end.
std::string_view From(std::string_view data, std::size_t position) {
  return data.substr(std::min(position - 1, data.size()));
}

}  // namespace

std::size_t LengthPosition(std::string_view data) {
  return PositionOf(data, LengthHeader);
}

std::size_t HeaderEnd(std::string_view data) {
  return PositionOf(data, EmptyLine);
}

std::int32_t ContentLengthAt(std::string_view data, std::size_t position) {
  const std::string_view value = From(data, position + LengthHeader.size());
  return ToLong(Val(WithoutLineEnds(value.substr(0, LengthCharacters))));
}

std::string_view BehindHeader(std::string_view data, std::size_t header_end) {
  return From(data, header_end + EmptyLine.size());
}

std::string WithoutLineEnds(std::string_view text) {
  std::string rest;
  rest.reserve(text.size());
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(LineEnd), text.size());
    rest += text.substr(0, end);
    text = text.substr(std::min(end + LineEnd.size(), text.size()));
  }
  return rest;
}

}  // namespace cvl
