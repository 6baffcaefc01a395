#include "tools/art/xpm.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <map>
#include <optional>
#include <string>

namespace cvl::tools {

namespace {

constexpr std::string_view Mark = "/* XPM */";
constexpr std::string_view Blanks = " \t";
constexpr int MaxSide = 256;
constexpr int MaxColours = 4096;
constexpr int MaxKeyLength = 2;
constexpr std::uint32_t Opaque = 0xFF000000;

struct Literal {
  std::string_view Text;
  int Line;
};

/// The numbers of the first string.
struct Header {
  int Width;
  int Height;
  int Colours;
  int KeyLength;
};

std::string Quoted(std::string_view text) {
  return std::string("\"").append(text).append("\"");
}

class XpmReader {
 public:
  XpmReader(std::string_view text, std::string_view name) : Text_(text), Name_(name) {}

  XpmPicture Read() {
    if (!Text_.starts_with(Mark)) Refuse(1, std::string("doesn't begin with ").append(Mark));
    CollectLiterals();
    ReadHeader();
    for (int colour = 0; colour < Header_.Colours; ++colour)
      ReadColour(Next());
    XpmPicture picture{Header_.Width, Header_.Height, {}};
    for (int row = 0; row < Header_.Height; ++row)
      ReadRow(Next(), picture);
    return picture;
  }

 private:
  [[noreturn]] void Refuse(int line, std::string_view why) const {
    throw ArtError(
        std::string(Name_).append(":").append(std::to_string(line)).append(": ").append(why));
  }

  void CollectLiterals() {
    int line = 1;
    std::size_t at = 0;
    while (at < Text_.size()) {
      std::size_t end = at + 1;
      if (Text_.substr(at).starts_with("/*")) {
        end = Text_.find("*/", at);
        if (end == std::string_view::npos) Refuse(line, "a comment isn't closed");
        end += 2;
      } else if (Text_[at] == '"') {
        end = Text_.find_first_of("\"\\\n", at + 1);
        if (end == std::string_view::npos || Text_[end] != '"') {
          Refuse(line, "a string isn't closed, or has a backslash in it");
        }
        Literals_.push_back({Text_.substr(at + 1, end - at - 1), line});
        ++end;
      }
      line += static_cast<int>(std::ranges::count(Text_.substr(at, end - at), '\n'));
      at = end;
    }
  }

  Literal Next() { return Literals_[Position_++]; }

  void ReadHeader() {
    if (Literals_.empty()) Refuse(1, "has no strings");
    const Literal first = Next();
    const std::vector<std::string_view> words = Words(first.Text);
    if (words.size() != 4) {
      Refuse(first.Line, "wants four numbers: width, height, colours, characters a pixel");
    }
    Header_.Width = Number(first, words[0], MaxSide);
    Header_.Height = Number(first, words[1], MaxSide);
    Header_.Colours = Number(first, words[2], MaxColours);
    Header_.KeyLength = Number(first, words[3], MaxKeyLength);
    const int wanted = 1 + Header_.Colours + Header_.Height;
    if (Literals_.size() != static_cast<std::size_t>(wanted)) {
      Refuse(first.Line, std::string("promises ")
                             .append(std::to_string(wanted - 1))
                             .append(" colours and rows, and ")
                             .append(std::to_string(Literals_.size() - 1))
                             .append(" follow"));
    }
  }

  void ReadColour(const Literal &literal) {
    const auto key_length = static_cast<std::size_t>(Header_.KeyLength);
    if (literal.Text.size() < key_length) Refuse(literal.Line, "a colour without its character");
    const std::string_view key = literal.Text.substr(0, key_length);
    const std::vector<std::string_view> words = Words(literal.Text.substr(key_length));
    const std::optional<std::uint32_t> colour =
        words.size() == 2 && words[0] == "c" ? Colour(words[1]) : std::nullopt;
    if (!colour) {
      Refuse(literal.Line, std::string("colour ")
                               .append(Quoted(key))
                               .append(" is neither \"c None\" nor \"c #RRGGBB\""));
    }
    if (!Colours_.emplace(key, *colour).second) {
      Refuse(literal.Line, std::string("colour ").append(Quoted(key)).append(" stands here twice"));
    }
  }

  void ReadRow(const Literal &literal, XpmPicture &picture) const {
    const auto key_length = static_cast<std::size_t>(Header_.KeyLength);
    const std::size_t length = static_cast<std::size_t>(Header_.Width) * key_length;
    if (literal.Text.size() != length) {
      Refuse(literal.Line, std::string("a row of ")
                               .append(std::to_string(literal.Text.size()))
                               .append(" characters in place of ")
                               .append(std::to_string(length)));
    }
    for (std::size_t at = 0; at < length; at += key_length) {
      const std::string_view key = literal.Text.substr(at, key_length);
      const auto colour = Colours_.find(key);
      if (colour == Colours_.end()) {
        Refuse(literal.Line, Quoted(key).append(" is none of the colours"));
      }
      picture.Pixels.push_back(colour->second);
    }
  }

  int Number(const Literal &literal, std::string_view word, int most) const {
    int number = 0;
    const char *const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number);
    if (error != std::errc{} || stop != end || number < 1 || number > most) {
      Refuse(literal.Line,
             Quoted(word).append(" isn't a number from 1 to ").append(std::to_string(most)));
    }
    return number;
  }

  static std::vector<std::string_view> Words(std::string_view text) {
    std::vector<std::string_view> words;
    while (true) {
      text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
      if (text.empty()) return words;
      const std::size_t length = std::min(text.find_first_of(Blanks), text.size());
      words.push_back(text.substr(0, length));
      text.remove_prefix(length);
    }
  }

  static std::optional<std::uint32_t> Colour(std::string_view word) {
    if (word == "None") return 0;
    if (word.size() != 7 || word[0] != '#') return std::nullopt;
    std::uint32_t colour = 0;
    const char *const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data() + 1, end, colour, 16);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return Opaque | colour;
  }

  std::string_view Text_;
  std::string_view Name_;
  std::vector<Literal> Literals_;
  std::size_t Position_ = 0;
  Header Header_{};
  std::map<std::string_view, std::uint32_t> Colours_;
};

}  // namespace

XpmPicture ReadXpm(std::string_view text, std::string_view name) {
  return XpmReader(text, name).Read();
}

}  // namespace cvl::tools
