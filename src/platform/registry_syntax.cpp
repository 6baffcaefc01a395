#include "platform/registry_syntax.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <system_error>

#include "base/text.h"
#include "platform/registry_encoding.h"

namespace cvl {

namespace {

// Types of values that hold UTF-16.
constexpr std::uint32_t TypeText = 1;
constexpr std::uint32_t TypeExpandedText = 2;
constexpr std::uint32_t TypeTexts = 7;

// The carriage return of a line end counts as a blank, and so the line feed alone ends a line.
constexpr std::string_view Blanks = " \t\r";

/// Reads from the front of a text.
class Reader {
 public:
  Reader(std::string_view text, std::size_t at) : Text_(text), At_(at) {}

  std::size_t At() const { return At_; }
  bool IsAtEnd() const { return At_ == Text_.size(); }

  bool Take(char c) {
    if (IsAtEnd() || Text_[At_] != c) return false;
    ++At_;
    return true;
  }

  /// WORD is in small letters and is found without regard to case.
  bool Take(std::string_view word) {
    const std::string_view found = Text_.substr(At_, word.size());
    if (!std::equal(word.begin(), word.end(), found.begin(), found.end(),
                    [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b - 'A' + 'a' : b); }))
      return false;
    At_ += word.size();
    return true;
  }

  void SkipBlanks() { At_ = std::min(Text_.find_first_not_of(Blanks, At_), Text_.size()); }

  /// A number of at most MOST hexadecimal digits; nothing if there are none or more.
  std::optional<std::uint32_t> TakeHex(std::size_t most) {
    std::uint32_t number = 0;
    const char *first = Text_.data() + At_;
    const char *last = Text_.data() + Text_.size();
    const auto [end, error] = std::from_chars(first, last, number, 16);
    const auto length = static_cast<std::size_t>(end - first);
    if (error != std::errc() || length > most) return std::nullopt;
    At_ += length;
    return number;
  }

  /// What is left of the line: nothing, or a comment. The line end goes with it.
  bool TakeLineEnd() {
    SkipBlanks();
    if (!IsAtEnd() && Text_[At_] == ';') At_ = std::min(Text_.find('\n', At_), Text_.size());
    return IsAtEnd() || Take('\n');
  }

  /// Blanks, and backslashes at the end of lines that go on in the next one. Nothing is
  /// taken of a backslash with something behind it.
  void SkipContinuation() {
    SkipBlanks();
    while (true) {
      Reader ahead = *this;
      if (!ahead.Take('\\')) return;
      ahead.SkipBlanks();
      if (!ahead.Take('\n')) return;
      ahead.SkipBlanks();
      *this = ahead;
    }
  }

  /// A text between quotes. A backslash makes a quote or a backslash behind it plain and
  /// otherwise stands for itself. The editor exports a text of several lines as such.
  bool TakeQuoted(std::string &text) {
    if (!Take('"')) return false;
    while (!IsAtEnd()) {
      char c = Text_[At_++];
      if (c == '"') return true;
      if (c == '\\' && !IsAtEnd() && (Text_[At_] == '"' || Text_[At_] == '\\')) c = Text_[At_++];
      text += c;
    }
    return false;
  }

  /// The path of a heading, behind its bracket. A path may hold brackets itself: the last
  /// one is that behind which the line ends.
  bool TakePath(std::string &path) {
    const std::size_t first = At_;
    for (; !IsAtEnd() && Text_[At_] != '\n'; ++At_) {
      if (Text_[At_] != ']') continue;
      Reader behind(Text_, At_ + 1);
      if (!behind.TakeLineEnd()) continue;
      path = Text_.substr(first, At_ - first);
      *this = behind;
      return !path.empty();
    }
    return false;
  }

 private:
  std::string_view Text_;
  std::size_t At_;
};

/// Reads up to the last byte. What stands behind it is left, a comma with nothing behind too.
std::string ReadBytes(Reader &reader) {
  std::string bytes;
  Reader ahead = reader;
  do {
    ahead.SkipContinuation();
    const std::optional<std::uint32_t> byte = ahead.TakeHex(2);
    if (!byte) break;
    bytes += static_cast<char>(*byte);
    reader = ahead;
    ahead.SkipContinuation();
  } while (ahead.Take(','));
  return bytes;
}

bool ReadTypedBytes(Reader &reader, std::string &data) {
  constexpr std::size_t MostDigits = 8;
  std::uint32_t type = 0;
  if (reader.Take('(')) {
    const std::optional<std::uint32_t> given = reader.TakeHex(MostDigits);
    if (!given || !reader.Take(')')) return false;
    type = *given;
  }
  if (!reader.Take(':')) return false;
  const std::string bytes = ReadBytes(reader);
  const bool is_utf16 = type == TypeText || type == TypeExpandedText || type == TypeTexts;
  data = is_utf16 ? Latin1OfUtf16(bytes) : bytes;
  return true;
}

bool ReadNumber(Reader &reader, std::string &data) {
  constexpr std::size_t MostDigits = 8;
  const std::optional<std::uint32_t> number = reader.TakeHex(MostDigits);
  if (!number) return false;
  for (int byte = 0; byte < 4; ++byte) {
    data += static_cast<char>(*number >> 8 * byte & 0xFF);
  }
  return true;
}

bool ReadData(Reader &reader, RegistryEntry &entry) {
  if (reader.Take('-')) {
    entry.What = RegistryEntry::Kind::Deleted;
    return true;
  }
  if (reader.Take("dword:")) return ReadNumber(reader, entry.Data);
  if (reader.Take("hex")) return ReadTypedBytes(reader, entry.Data);
  std::string text;
  if (!reader.TakeQuoted(text)) return false;
  entry.Data = Latin1Of(text) + '\0';
  entry.IsText = true;
  return true;
}

bool ReadValue(Reader &reader, RegistryEntry &entry) {
  const std::size_t start = reader.At();
  entry.What = RegistryEntry::Kind::Value;
  if (!reader.Take('@') && !reader.TakeQuoted(entry.Name)) return false;
  if (entry.Name.find('\n') != std::string::npos) return false;
  reader.SkipBlanks();
  if (!reader.Take('=')) return false;
  reader.SkipBlanks();
  entry.DataAt = reader.At() - start;
  if (!ReadData(reader, entry)) return false;
  entry.DataLength = reader.At() - start - entry.DataAt;
  return reader.TakeLineEnd();
}

std::string Escaped(std::string_view utf8) {
  std::string quoted = "\"";
  for (const char c : utf8) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string Utf16Bytes(std::string_view latin1) {
  constexpr std::string_view Digits = "0123456789abcdef";
  std::string bytes = "hex(1):";
  for (const char c : latin1) {
    const auto unit = static_cast<std::uint8_t>(c);
    bytes += Digits[unit >> 4];
    bytes += Digits[unit & 0xF];
    bytes += ",00,";
  }
  return bytes + "00,00";
}

}  // namespace

bool ReadRegistryEntry(std::string_view text, std::size_t &at, RegistryEntry &entry) {
  const std::size_t start = at;
  Reader reader(text, at);
  reader.SkipBlanks();
  const std::size_t indent = reader.At() - start;
  entry = {};
  if (reader.Take('[')) {
    entry.What = RegistryEntry::Kind::Key;
    if (!reader.TakePath(entry.Name)) return false;
  } else if (!reader.TakeLineEnd()) {
    if (!ReadValue(reader, entry)) return false;
    entry.DataAt += indent;
  }
  at = reader.At();
  entry.Text = text.substr(start, at - start);
  return true;
}

std::string RegistryDataText(std::string_view text) {
  const bool fits_a_line = std::all_of(text.begin(), text.end(),
                                       [](char c) { return static_cast<std::uint8_t>(c) >= ' '; });
  return fits_a_line ? Escaped(Utf8Of(text)) : Utf16Bytes(text);
}

std::string RegistryNameText(std::string_view name) {
  return name.empty() ? "@" : Escaped(Utf8Of(name));
}

}  // namespace cvl
