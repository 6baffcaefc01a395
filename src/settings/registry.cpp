#include "settings/registry.h"

#include "base/text.h"

namespace cvl {

namespace {

/// Room for a name and for the data of a value, terminators included.
constexpr std::size_t BufferSize = 255;

/// The text of a value without its terminator. A value of no bytes has none to lose.
std::string_view TextOf(const ValueBuffer &buffer) {
  const std::string_view data(buffer.Data);
  return data.substr(0, buffer.DataLength == 0 ? 0 : buffer.DataLength - 1);
}

}  // namespace

std::string Registry::RegReadString(std::string_view key_path, std::string_view value_name) {
  std::string value;
  RootKey_ = RegistryRoot::LocalMachine;
  RegistryKey key = RegistryKey::None;
  std::int32_t result = Store_.OpenKey(RootKey_, key_path, key);
  for (std::uint32_t index = 0; result == registry_result::Success; ++index) {
    ValueBuffer buffer(BufferSize);
    result = Store_.EnumValue(key, index, buffer);
    if (result != registry_result::Success) break;
    const std::string_view name(buffer.Name.data(), buffer.NameLength);
    if (name == value_name) value = TextOf(buffer);
  }
  static_cast<void>(Store_.CloseKey(key));
  return value;
}

bool Registry::RegWriteString(RegistryRoot root, std::string_view key_path,
                              std::string_view value_name, std::string_view value) {
  RegistryKey key = RegistryKey::None;
  // Into a key that couldn't be opened the write fails by itself.
  static_cast<void>(Store_.CreateKey(root, key_path, key));
  const std::int32_t result = Store_.SetString(key, value_name, value);
  static_cast<void>(Store_.CloseKey(key));
  return result == registry_result::Success;
}

void Registry::RegCreateKeyPath(std::string &path) {
  RootKey_ = RegistryRoot::LocalMachine;
  RegistryRoot root = RegistryRoot::None;
  RegParseKeyPath(path, root);
}

void Registry::RegParseKeyPath(std::string &path, RegistryRoot &root) {
  const std::size_t backslash = path.find('\\');
  LastResult_ = static_cast<std::int32_t>(backslash + 1);
  if (!path.starts_with("HKEY_") || path.ends_with('\\')) {
    Boxes_.Show(BoxOwner::None, BoxStyle::Ok, "Chronvale Server",
                Joined({"Incorrect Format:", "\n\n", path}));
    return;
  }
  root = RegRootFromName(std::string_view(path).substr(0, backslash));
  path = backslash == std::string::npos ? std::string() : path.substr(backslash + 1);
}

RegistryRoot Registry::RegRootFromName(std::string_view name) {
  for (const RegistryRoot root :
       {RegistryRoot::ClassesRoot, RegistryRoot::CurrentUser, RegistryRoot::LocalMachine,
        RegistryRoot::Users, RegistryRoot::PerformanceData, RegistryRoot::CurrentConfig,
        RegistryRoot::DynData}) {
    if (name == RegistryRootName(root)) return root;
  }
  return RegistryRoot::None;
}

std::string_view RegErrorText(std::int32_t result) {
  switch (result) {
    case registry_result::BadKey:
      return "Bad Key Name";
    case registry_result::BadDatabase:
      return "The Registry Database is corrupt!";
    case registry_result::CantOpen:
      return "Can't Open Key";
    case registry_result::CantRead:
      return "Can't Read Key";
    case registry_result::AccessDenied:
      return "Access to this key is denied";
    case registry_result::CantWrite:
      return "Can't Write Key";
    case registry_result::OutOfMemory:
      return "Out of memory";
    case registry_result::InvalidParameter:
      return "Invalid Parameter";
    case registry_result::MoreData:
      return "There is more data than the buffer has been allocated to hold.";
    default:
      return {};
  }
}

}  // namespace cvl
