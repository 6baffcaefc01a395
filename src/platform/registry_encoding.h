// The characters of a settings file: as bytes, as the UTF-8 that it is worked on in, and as
// the Latin-1 that the registry hands out.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cvl {

enum class RegistryEncoding {
  Utf8,
  MarkedUtf8,  ///< behind a byte order mark
  Utf16,       ///< least significant byte first, behind a byte order mark
};

struct RegistryText {
  std::string Utf8;
  RegistryEncoding Encoding = RegistryEncoding::Utf8;
};

/// The text of a file. Nothing for half a character of UTF-16.
///
/// Whatever isn't well formed comes back from EncodeRegistry as it was: stray bytes of UTF-8
/// are left alone, and single surrogates of UTF-16 become three bytes each.
std::optional<RegistryText> DecodeRegistry(std::string_view bytes);

/// The bytes of a text.
std::string EncodeRegistry(const RegistryText &text);

/// Each character as a byte, those that Latin-1 lacks as '?'. A stray byte stands for itself.
std::string Latin1Of(std::string_view utf8);

/// The same for UTF-16 in bytes, as values of some types hold it; half a character is dropped.
std::string Latin1OfUtf16(std::string_view bytes);

std::string Utf8Of(std::string_view latin1);

}  // namespace cvl
