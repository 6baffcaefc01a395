// The registry of Linux: one text file in the layout of the registry editor, so that any
// editor changes it and Windows takes it over.
//
// The file is read anew by each opening of a key and each write, so that what an operator
// changes meanwhile isn't lost. A damaged file is never written: all openings fail with 1009
// until somebody mends it.

#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/registry_file.h"
#include "platform/registry_store.h"

namespace cvl {

class LinuxRegistryStore final : public RegistryStore {
 public:
  /// PATH is the file; it need not be there yet. CLOCK knows the zone, whose two names are
  /// found below the time-zone key where the file lacks them.
  LinuxRegistryStore(std::string path, Clock &clock) : Path_(std::move(path)), Clock_(clock) {}

  /// CHRONVALE_REGISTRY, or registry.reg in the program directory.
  static std::string UsualPath(const Files &files);

  std::int32_t CreateKey(RegistryRoot root, std::string_view path, RegistryKey &key) override;
  std::int32_t OpenKey(RegistryRoot root, std::string_view path, RegistryKey &key) override;
  std::int32_t SetString(RegistryKey key, std::string_view name, std::string_view text) override;
  std::int32_t EnumValue(RegistryKey key, std::uint32_t index, ValueBuffer &into) override;
  std::int32_t CloseKey(RegistryKey key) override;

  /// What keeps the file from being read, in one line for the operator; empty if nothing does.
  std::string Obstacle() const;

 private:
  enum class Access { Read, Write };
  struct Opened {
    std::string Path;
    Access May;
    std::vector<RegistryValue> Values;
  };

  std::int32_t Load(RegistryFile &file) const;
  std::int32_t Save(const RegistryFile &file) const;
  std::vector<RegistryValue> ValuesOf(const RegistryFile &file, const std::string &path) const;
  std::int32_t Open(const RegistryFile &file, const std::string &path, Access access,
                    RegistryKey &key);

  std::string Path_;
  Clock &Clock_;
  std::map<RegistryKey, Opened> Keys_;
  std::uintptr_t LastKey_ = 0;
};

}  // namespace cvl
