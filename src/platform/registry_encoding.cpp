#include "platform/registry_encoding.h"

#include <cstdint>

namespace cvl {

namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view Utf16Mark = "\xFF\xFE";

constexpr char32_t LastLatin1 = 0xFF;
constexpr char32_t FirstHighSurrogate = 0xD800;
constexpr char32_t FirstLowSurrogate = 0xDC00;
constexpr char32_t BehindSurrogates = 0xE000;
constexpr char32_t FirstOfTwoUnits = 0x10000;
constexpr char32_t LastCharacter = 0x10FFFF;

std::uint8_t ByteAt(std::string_view text, std::size_t at) {
  return static_cast<std::uint8_t>(text[at]);
}

void AppendUtf8(std::string &text, char32_t c) {
  const auto continued = [&](unsigned shift) {
    text += static_cast<char>(0x80 | (c >> shift & 0x3F));
  };
  if (c < 0x80) {
    text += static_cast<char>(c);
  } else if (c < 0x800) {
    text += static_cast<char>(0xC0 | c >> 6);
    continued(0);
  } else if (c < FirstOfTwoUnits) {
    text += static_cast<char>(0xE0 | c >> 12);
    continued(6);
    continued(0);
  } else {
    text += static_cast<char>(0xF0 | c >> 18);
    continued(12);
    continued(6);
    continued(0);
  }
}

/// The character at AT, which moves behind it. A byte that begins none is one by itself.
char32_t NextCharacter(std::string_view text, std::size_t &at) {
  const std::uint8_t first = ByteAt(text, at++);
  const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC2 ? 1 : 0;
  if (more == 0 || first > 0xF4 || text.size() - at < more) return first;
  char32_t c = first & (0x3FU >> more);
  for (std::size_t next = at; next < at + more; ++next) {
    if ((ByteAt(text, next) & 0xC0) != 0x80) return first;
    c = c << 6 | (ByteAt(text, next) & 0x3F);
  }
  constexpr char32_t Least[] = {0, 0x80, 0x800, FirstOfTwoUnits};
  if (c < Least[more] || c > LastCharacter) return first;
  at += more;
  return c;
}

char32_t UnitAt(std::string_view bytes, std::size_t at) {
  return static_cast<char32_t>(ByteAt(bytes, at) | ByteAt(bytes, at + 1) << 8);
}

void AppendUnit(std::string &bytes, char32_t unit) {
  bytes += static_cast<char>(unit & 0xFF);
  bytes += static_cast<char>(unit >> 8);
}

std::string Utf8OfUtf16(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    char32_t c = UnitAt(bytes, at);
    if (c >= FirstHighSurrogate && c < FirstLowSurrogate && at + 3 < bytes.size()) {
      const char32_t low = UnitAt(bytes, at + 2);
      if (low >= FirstLowSurrogate && low < BehindSurrogates) {
        c = FirstOfTwoUnits + ((c - FirstHighSurrogate) << 10) + (low - FirstLowSurrogate);
        at += 2;
      }
    }
    AppendUtf8(text, c);
  }
  return text;
}

std::string Utf16OfUtf8(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = NextCharacter(text, at);
    if (c < FirstOfTwoUnits) {
      AppendUnit(bytes, c);
    } else {
      AppendUnit(bytes, FirstHighSurrogate + ((c - FirstOfTwoUnits) >> 10));
      AppendUnit(bytes, FirstLowSurrogate + ((c - FirstOfTwoUnits) & 0x3FF));
    }
  }
  return bytes;
}

char NarrowOf(char32_t c) {
  return c <= LastLatin1 ? static_cast<char>(c) : '?';
}

}  // namespace

std::optional<RegistryText> DecodeRegistry(std::string_view bytes) {
  if (bytes.starts_with(Utf16Mark)) {
    if (bytes.size() % 2 != 0) return std::nullopt;
    return RegistryText{Utf8OfUtf16(bytes.substr(Utf16Mark.size())), RegistryEncoding::Utf16};
  }
  if (bytes.starts_with(Utf8Mark)) {
    return RegistryText{std::string(bytes.substr(Utf8Mark.size())), RegistryEncoding::MarkedUtf8};
  }
  return RegistryText{std::string(bytes), RegistryEncoding::Utf8};
}

std::string EncodeRegistry(const RegistryText &text) {
  switch (text.Encoding) {
    case RegistryEncoding::Utf8:
      break;
    case RegistryEncoding::MarkedUtf8:
      return std::string(Utf8Mark) + text.Utf8;
    case RegistryEncoding::Utf16:
      return std::string(Utf16Mark) + Utf16OfUtf8(text.Utf8);
  }
  return text.Utf8;
}

std::string Latin1Of(std::string_view utf8) {
  std::string latin1;
  latin1.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    latin1 += NarrowOf(NextCharacter(utf8, at));
  }
  return latin1;
}

std::string Latin1OfUtf16(std::string_view bytes) {
  std::string latin1;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    latin1 += NarrowOf(UnitAt(bytes, at));
  }
  return latin1;
}

std::string Utf8Of(std::string_view latin1) {
  std::string text;
  text.reserve(latin1.size());
  for (const char c : latin1) {
    AppendUtf8(text, static_cast<std::uint8_t>(c));
  }
  return text;
}

}  // namespace cvl
