// A registry in memory. A test puts values there, makes operations fail and sees what the
// program stored, in order.
//
//   FakeRegistry registry;
//   registry.Put(FakeRegistry::SettingsKey, "NTP37", "YES:YES:YES:37");
//   ...
//   registry.Text(FakeRegistry::SettingsKey, "NTP37")
//   registry.Writes  // {"NTP37=YES:NO:NO:37", ...}

#pragma once

#include <algorithm>
#include <cctype>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry_store.h"

namespace cvl {

class FakeRegistry final : public RegistryStore {
 public:
  static constexpr const char *SettingsKey = "HKEY_LOCAL_MACHINE\\Software\\Chronvale Server";
  static constexpr const char *ZoneKey =
      "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\TimeZoneInformation";
  static constexpr const char *RunKey =
      "HKEY_LOCAL_MACHINE\\SOFTWARE\\MICROSOFT\\WINDOWS\\CURRENTVERSION\\RUN";

  /// What each operation fails with from now on, 0 for nothing.
  std::int32_t CreateResult = registry_result::Success;
  std::int32_t OpenResult = registry_result::Success;
  std::int32_t SetResult = registry_result::Success;

  /// Every text that was stored, "name=text", and every key opened for reading, in order.
  std::vector<std::string> Writes;
  std::vector<std::string> Opened;
  /// How often a value was asked for, and how many keys are open.
  int Enumerations = 0;
  int OpenKeys = 0;

  /// Makes a key, and puts a text or bytes there; the name may be there already.
  void MakeKey(const std::string &path) { Find(path, IfMissing::Make); }
  void Put(const std::string &path, const std::string &name, std::string_view text) {
    PutBytes(path, name, std::string(text) + '\0');
  }
  void PutBytes(const std::string &path, const std::string &name, const std::string &bytes) {
    std::vector<RegistryValue> &values = Find(path, IfMissing::Make)->Values;
    for (RegistryValue &value : values) {
      if (!IsSame(value.Name, name)) continue;
      value.Data = bytes;
      return;
    }
    values.push_back({name, bytes});
  }

  bool HasKey(const std::string &path) { return Find(path, IfMissing::Leave) != nullptr; }

  /// A text without its terminator, or "(none)".
  std::string Text(const std::string &path, const std::string &name) {
    const Key *key = Find(path, IfMissing::Leave);
    if (key == nullptr) return "(none)";
    for (const RegistryValue &value : key->Values) {
      if (IsSame(value.Name, name)) return value.Data.substr(0, value.Data.size() - 1);
    }
    return "(none)";
  }

  /// The names of a key's values, in order.
  std::vector<std::string> Names(const std::string &path) {
    std::vector<std::string> names;
    if (const Key *key = Find(path, IfMissing::Leave)) {
      for (const RegistryValue &value : key->Values) {
        names.push_back(value.Name);
      }
    }
    return names;
  }

  // RegistryStore.

  std::int32_t CreateKey(RegistryRoot root, std::string_view path, RegistryKey &key) override {
    return Open(root, path, CreateResult, IfMissing::Make, key);
  }

  std::int32_t OpenKey(RegistryRoot root, std::string_view path, RegistryKey &key) override {
    Opened.push_back(Full(root, path));
    return Open(root, path, OpenResult, IfMissing::Leave, key);
  }

  std::int32_t SetString(RegistryKey key, std::string_view name, std::string_view text) override {
    if (!Handles_.contains(key)) return registry_result::InvalidHandle;
    if (SetResult != registry_result::Success) return SetResult;
    Put(Handles_.at(key), std::string(name), text);
    Writes.push_back(std::string(name) + "=" + std::string(text));
    return registry_result::Success;
  }

  std::int32_t EnumValue(RegistryKey key, std::uint32_t index, ValueBuffer &into) override {
    ++Enumerations;
    if (!Handles_.contains(key)) return registry_result::InvalidHandle;
    const std::vector<RegistryValue> &values = Find(Handles_.at(key), IfMissing::Make)->Values;
    return index < values.size() ? CopyValue(values[index], into) : registry_result::NoMoreItems;
  }

  std::int32_t CloseKey(RegistryKey key) override {
    if (Handles_.erase(key) == 0) return registry_result::InvalidHandle;
    --OpenKeys;
    return registry_result::Success;
  }

 private:
  enum class IfMissing { Leave, Make };
  struct Key {
    std::string Path;
    std::vector<RegistryValue> Values;
  };

  static bool IsSame(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
      return std::tolower(x) == std::tolower(y);
    });
  }

  static std::string Full(RegistryRoot root, std::string_view path) {
    return std::string(RegistryRootName(root)) + "\\" + std::string(path);
  }

  Key *Find(const std::string &path, IfMissing if_missing) {
    for (Key &key : Keys_) {
      if (IsSame(key.Path, path)) return &key;
    }
    if (if_missing == IfMissing::Leave) return nullptr;
    Keys_.push_back({path, {}});
    return &Keys_.back();
  }

  std::int32_t Open(RegistryRoot root, std::string_view path, std::int32_t result,
                    IfMissing if_missing, RegistryKey &key) {
    key = RegistryKey::None;
    if (result != registry_result::Success) return result;
    if (Find(Full(root, path), if_missing) == nullptr) return registry_result::FileNotFound;
    key = RegistryKey{++LastHandle_};
    Handles_[key] = Full(root, path);
    ++OpenKeys;
    return registry_result::Success;
  }

  std::vector<Key> Keys_;
  std::map<RegistryKey, std::string> Handles_;
  std::uintptr_t LastHandle_ = 0;
};

}  // namespace cvl
