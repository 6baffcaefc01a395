#include "tools/wire/bytes.h"

#include <algorithm>
#include <cassert>

namespace cvl::tools {

namespace {

constexpr std::size_t BytesPerLine = 16;
constexpr std::size_t MostBytesShown = 1024;
constexpr std::size_t OffsetWidth = 6;

void AppendHex(std::string &text, std::uint8_t byte) {
  constexpr char Digits[] = "0123456789abcdef";
  text += Digits[byte >> 4];
  text += Digits[byte & 0x0F];
}

void AppendLine(std::string &text, ByteView line, std::size_t offset) {
  const std::string number = std::to_string(offset);
  text.append(OffsetWidth - std::min(OffsetWidth, number.size()), ' ');
  text += number;
  text += ' ';
  for (const std::uint8_t byte : line) {
    text += ' ';
    AppendHex(text, byte);
  }
  text += '\n';
}

}  // namespace

std::uint32_t Big32(ByteView bytes, std::size_t offset) {
  assert(offset + 4 <= bytes.size());
  std::uint32_t value = 0;
  for (const std::uint8_t byte : bytes.subspan(offset, 4)) {
    value = (value << 8) | byte;
  }
  return value;
}

std::uint32_t Little32(ByteView bytes, std::size_t offset) {
  assert(offset + 4 <= bytes.size());
  std::uint32_t value = 0;
  for (std::size_t i = 4; i > 0; --i) {
    value = (value << 8) | bytes[offset + i - 1];
  }
  return value;
}

void PutBig32(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value) {
  assert(offset + 4 <= bytes.size());
  for (std::size_t i = 0; i < 4; ++i) {
    bytes[offset + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
  }
}

std::string Hex(ByteView bytes) {
  std::string text;
  text.reserve(2 * bytes.size());
  for (const std::uint8_t byte : bytes) {
    AppendHex(text, byte);
  }
  return text;
}

std::string HexDump(ByteView bytes) {
  if (bytes.empty()) {
    return "  (empty)\n";
  }
  const ByteView shown = bytes.first(std::min(bytes.size(), MostBytesShown));
  std::string text;
  for (std::size_t offset = 0; offset < shown.size(); offset += BytesPerLine) {
    const std::size_t length = std::min(BytesPerLine, shown.size() - offset);
    AppendLine(text, shown.subspan(offset, length), offset);
  }
  if (bytes.size() > shown.size()) {
    text += "  and " + std::to_string(bytes.size() - shown.size()) + " bytes more\n";
  }
  return text;
}

std::string Printable(ByteView bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (byte == '\\') {
      text += "\\\\";
    } else if (byte >= 0x20 && byte < 0x7F) {
      text += static_cast<char>(byte);
    } else {
      text += "\\x";
      AppendHex(text, byte);
    }
  }
  return text;
}

}  // namespace cvl::tools
