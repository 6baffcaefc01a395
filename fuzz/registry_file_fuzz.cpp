// Settings files of any content: what parses comes back byte by byte, and what is stored in
// it is found again without anything else having changed.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry_file.h"

namespace {

constexpr std::string_view Key = "HKEY_LOCAL_MACHINE\\Software\\Chronvale Server";
constexpr std::string_view OtherKey = "HKEY_LOCAL_MACHINE\\Software";
constexpr std::string_view Name = "NTP37";

void Require(bool holds) {
  if (!holds) std::abort();
}

cvl::RegistryFile Reread(const cvl::RegistryFile &file) {
  const std::optional<cvl::RegistryFile> again = cvl::RegistryFile::Parse(file.Bytes());
  Require(again.has_value());
  return *again;
}

void RequireSame(const cvl::RegistryFile &a, const cvl::RegistryFile &b) {
  Require(a.Bytes() == b.Bytes());
  for (const std::string_view key : {Key, OtherKey}) {
    Require(a.HasKey(key) == b.HasKey(key));
    Require(a.Values(key) == b.Values(key));
  }
}

/// All but the value of Name, which goes by that name in any case.
std::vector<cvl::RegistryValue> Others(std::vector<cvl::RegistryValue> values) {
  const auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  std::erase_if(values, [fold](const cvl::RegistryValue &value) {
    return std::equal(value.Name.begin(), value.Name.end(), Name.begin(), Name.end(),
                      [fold](char a, char b) { return fold(a) == fold(b); });
  });
  return values;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char *>(data), size);
  std::size_t bad_line = 0;
  std::optional<cvl::RegistryFile> file = cvl::RegistryFile::Parse(bytes, &bad_line);
  if (!file) {
    Require(bad_line >= 1);
    return 0;
  }
  // So reading what would be written gives the same file again.
  Require(file->Bytes() == bytes);

  // Any text can be stored, and the input is any text.
  const std::string_view text = bytes.substr(0, std::min<std::size_t>(size, 300));
  const std::vector<cvl::RegistryValue> others = Others(file->Values(Key));
  Require(file->SetString(Key, Name, text) != cvl::RegistryFile::Change::Refused);
  RequireSame(*file, Reread(*file));
  Require(Others(file->Values(Key)) == others);
  const std::vector<cvl::RegistryValue> values = file->Values(Key);
  Require(values.size() == others.size() + 1);
  Require(std::any_of(values.begin(), values.end(), [text](const cvl::RegistryValue &value) {
    return value.Data == std::string(text) + '\0';
  }));
  return 0;
}
