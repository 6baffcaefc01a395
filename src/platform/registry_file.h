// A settings file as a registry: from its bytes to keys and values, and back. What nobody
// has changed comes back byte by byte: comments, blank lines, keys and values of others,
// the encoding and the ends of lines.
//
//   std::optional<RegistryFile> file = RegistryFile::Parse(bytes);
//   if (!file) ...                                  // damaged: don't write to it
//   file->SetString(path, "NTP37", "YES:YES:YES:37");
//   bytes = file->Bytes();
//
// Paths and names are found without regard to the case of the letters A to Z. Where a file
// names a value twice, the later one counts, as for the editor that imports it.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry_encoding.h"
#include "platform/registry_store.h"
#include "platform/registry_syntax.h"

namespace cvl {

class RegistryFile {
 public:
  /// A new file: a heading, and a comment for whoever opens it.
  RegistryFile();

  /// Reads a file. Nothing when it is damaged, and BAD_LINE then tells where, from 1 on.
  static std::optional<RegistryFile> Parse(std::string_view bytes, std::size_t *bad_line = nullptr);

  std::string Bytes() const;

  /// Whether there is a key of that path, which begins with the name of a tree; or one below.
  bool HasKey(std::string_view path) const;

  /// The values of a key in the order in which they were first written.
  std::vector<RegistryValue> Values(std::string_view path) const;

  enum class Change {
    None,  ///< it was so before
    Made,
    Refused,  ///< the path or the name has characters that the file can't hold
  };

  /// Makes a key if there is none of that path.
  Change AddKey(std::string_view path);

  /// Stores a text. It takes the place of a value of that name, or stands behind the key's
  /// last one; the key is made if there is none.
  Change SetString(std::string_view path, std::string_view name, std::string_view text);

 private:
  explicit RegistryFile(RegistryEncoding encoding) : Encoding_(encoding) {}

  bool Read(std::string_view text, std::size_t &at);
  Change AppendKey(std::string_view path);
  Change Replace(RegistryEntry &entry, std::string_view text);
  Change Insert(std::string_view path, std::string_view name, std::string_view text);
  std::size_t PlaceBehind(std::string_view path) const;
  void EndLine(RegistryEntry &entry);

  RegistryEncoding Encoding_;
  std::string_view LineEnd_ = "\n";
  std::vector<RegistryEntry> Entries_;
};

}  // namespace cvl
