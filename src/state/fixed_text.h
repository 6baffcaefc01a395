// A text of fixed length.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cvl {

/// Always LENGTH characters: what is stored is cut or padded with blanks.
template <std::size_t Length>
class FixedText {
 public:
  FixedText() : Text_(Length, ' ') {}

  FixedText &operator=(std::string_view text) {
    Text_ = text.substr(0, Length);
    Text_.resize(Length, ' ');
    return *this;
  }

  const std::string &Text() const { return Text_; }

  friend bool operator==(const FixedText &, const FixedText &) = default;

 private:
  std::string Text_;
};

}  // namespace cvl
