// The caption of a button: the text as it is read, and its access key.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cvl {

/// A caption as it is shown. A single "&" isn't part of it, a doubled one is one "&".
struct ShownCaption {
  static constexpr std::size_t Nothing = static_cast<std::size_t>(-1);

  std::string Text;
  /// Which character of Text is underlined: the one behind the first single "&".
  std::size_t Underlined = Nothing;
};

ShownCaption ShowCaption(std::string_view caption);

/// The character behind the first "&" that isn't doubled, in lower case; empty without one.
std::string AccessKeyOf(std::string_view caption);

}  // namespace cvl
