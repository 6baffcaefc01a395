// A registry whose openings and writes are written down.

#pragma once

#include <string>

#include "platform/registry_store.h"
#include "tests/support/call_journal.h"

namespace cvl {

class WatchedRegistry final : public RegistryStore {
 public:
  /// Passes everything on to STORE.
  WatchedRegistry(RegistryStore &store, CallJournal &journal) : Store_(store), Journal_(journal) {}

  std::int32_t CreateKey(RegistryRoot root, std::string_view path, RegistryKey &key) override {
    return Store_.CreateKey(root, path, key);
  }
  std::int32_t OpenKey(RegistryRoot root, std::string_view path, RegistryKey &key) override {
    Journal_.Add("read key " + std::string(path));
    return Store_.OpenKey(root, path, key);
  }
  std::int32_t SetString(RegistryKey key, std::string_view name, std::string_view text) override {
    Journal_.Add("store " + std::string(name));
    return Store_.SetString(key, name, text);
  }
  std::int32_t EnumValue(RegistryKey key, std::uint32_t index, ValueBuffer &into) override {
    return Store_.EnumValue(key, index, into);
  }
  std::int32_t CloseKey(RegistryKey key) override { return Store_.CloseKey(key); }

 private:
  RegistryStore &Store_;
  CallJournal &Journal_;
};

}  // namespace cvl
