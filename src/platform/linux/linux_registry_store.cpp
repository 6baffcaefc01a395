#include "platform/linux/linux_registry_store.h"

#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/runtime_error.h"
#include "base/text.h"
#include "platform/linux/durable_file.h"
#include "platform/linux/error_table.h"

namespace cvl {

namespace {

constexpr const char *ZoneKey =
    "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\TimeZoneInformation";

/// A larger file is nobody's settings.
constexpr std::size_t MostBytes = std::size_t{16} << 20;

std::int32_t ResultOf(int system_error) {
  if (system_error == EWOULDBLOCK) return registry_result::SharingViolation;
  switch (FileErrorOf(system_error)) {
    case 0:
      return registry_result::Success;
    case error_number::FileNotFound:
      return registry_result::FileNotFound;
    case error_number::DiskFull:
      return registry_result::DiskFull;
    case error_number::PermissionDenied:
      return registry_result::AccessDenied;
    default:
      return registry_result::InputOutputError;
  }
}

std::string FullPath(RegistryRoot root, std::string_view path) {
  return Joined({RegistryRootName(root), path.empty() ? "" : "\\", path});
}

std::int32_t ResultOf(RegistryFile::Change change) {
  return change == RegistryFile::Change::Refused ? registry_result::InvalidParameter
                                                 : registry_result::Success;
}

RegistryValue ZoneValue(const char *value_name, const ZoneName &zone) {
  return {value_name, TextOf(zone) + '\0'};
}

}  // namespace

std::string LinuxRegistryStore::UsualPath(const Files &files) {
  const char *given = std::getenv("CHRONVALE_REGISTRY");
  return given != nullptr && *given != '\0' ? given : files.InProgramDirectory("registry.reg");
}

/// Reads the file; none at all is as good as a new one.
std::int32_t LinuxRegistryStore::Load(RegistryFile &file) const {
  std::string bytes;
  const int error = ReadWholeFile(Path_, MostBytes, bytes);
  if (error == ENOENT) return registry_result::Success;
  if (error == EINVAL || error == EFBIG) return registry_result::BadDatabase;
  if (error != 0) return ResultOf(error);
  std::optional<RegistryFile> parsed = RegistryFile::Parse(bytes);
  if (!parsed) {
    TraceFailure("registry", EBADMSG);
    return registry_result::BadDatabase;
  }
  file = *std::move(parsed);
  return registry_result::Success;
}

std::int32_t LinuxRegistryStore::Save(const RegistryFile &file) const {
  return ResultOf(ReplaceFile(Path_, file.Bytes()));
}

std::vector<RegistryValue> LinuxRegistryStore::ValuesOf(const RegistryFile &file,
                                                        const std::string &path) const {
  std::vector<RegistryValue> values = file.Values(path);
  if (strcasecmp(path.c_str(), ZoneKey) != 0) return values;
  const TimeZoneInformation &zone = Clock_.GetTimeZoneInformation();
  for (const RegistryValue &known : {ZoneValue("DaylightName", zone.DaylightName),
                                     ZoneValue("StandardName", zone.StandardName)}) {
    const bool is_there =
        std::any_of(values.begin(), values.end(), [&known](const RegistryValue &value) {
          return strcasecmp(value.Name.c_str(), known.Name.c_str()) == 0;
        });
    if (!is_there) values.push_back(known);
  }
  return values;
}

std::int32_t LinuxRegistryStore::Open(const RegistryFile &file, const std::string &path,
                                      Access access, RegistryKey &key) {
  key = RegistryKey{++LastKey_};
  Keys_[key] = {path, access, ValuesOf(file, path)};
  return registry_result::Success;
}

std::int32_t LinuxRegistryStore::CreateKey(RegistryRoot root, std::string_view path,
                                           RegistryKey &key) {
  key = RegistryKey::None;
  if (root == RegistryRoot::None) return registry_result::InvalidHandle;
  const std::string full = FullPath(root, path);
  RegistryFile file;
  if (const std::int32_t result = Load(file); result != registry_result::Success) return result;
  const RegistryFile::Change change = file.AddKey(full);
  std::int32_t result = ResultOf(change);
  if (change == RegistryFile::Change::Made) result = Save(file);
  return result == registry_result::Success ? Open(file, full, Access::Write, key) : result;
}

std::int32_t LinuxRegistryStore::OpenKey(RegistryRoot root, std::string_view path,
                                         RegistryKey &key) {
  key = RegistryKey::None;
  if (root == RegistryRoot::None) return registry_result::InvalidHandle;
  const std::string full = FullPath(root, path);
  RegistryFile file;
  if (const std::int32_t result = Load(file); result != registry_result::Success) return result;
  const bool is_there = path.empty() || file.HasKey(full) || strcasecmp(full.c_str(), ZoneKey) == 0;
  return is_there ? Open(file, full, Access::Read, key) : registry_result::FileNotFound;
}

std::int32_t LinuxRegistryStore::SetString(RegistryKey key, std::string_view name,
                                           std::string_view text) {
  const auto opened = Keys_.find(key);
  if (opened == Keys_.end()) return registry_result::InvalidHandle;
  if (opened->second.May == Access::Read) return registry_result::AccessDenied;
  RegistryFile file;
  if (const std::int32_t result = Load(file); result != registry_result::Success) return result;
  const RegistryFile::Change change = file.SetString(opened->second.Path, name, text);
  std::int32_t result = ResultOf(change);
  if (change == RegistryFile::Change::Made) result = Save(file);
  if (result == registry_result::Success) {
    opened->second.Values = ValuesOf(file, opened->second.Path);
  }
  return result;
}

std::int32_t LinuxRegistryStore::EnumValue(RegistryKey key, std::uint32_t index,
                                           ValueBuffer &into) {
  const auto opened = Keys_.find(key);
  if (opened == Keys_.end()) return registry_result::InvalidHandle;
  const std::vector<RegistryValue> &values = opened->second.Values;
  return index < values.size() ? CopyValue(values[index], into) : registry_result::NoMoreItems;
}

std::int32_t LinuxRegistryStore::CloseKey(RegistryKey key) {
  return Keys_.erase(key) != 0 ? registry_result::Success : registry_result::InvalidHandle;
}

std::string LinuxRegistryStore::Obstacle() const {
  std::string bytes;
  const int error = ReadWholeFile(Path_, MostBytes, bytes);
  if (error == ENOENT) return {};
  if (error != 0) return Joined({Path_, ": ", std::strerror(error)});
  std::size_t bad_line = 0;
  if (RegistryFile::Parse(bytes, &bad_line)) return {};
  return Joined({Path_, ", line ", std::to_string(bad_line), ": no line of a settings file"});
}

}  // namespace cvl
