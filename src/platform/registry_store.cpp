#include "platform/registry_store.h"

namespace cvl {

std::string_view RegistryRootName(RegistryRoot root) {
  switch (root) {
    case RegistryRoot::None:
      return {};
    case RegistryRoot::ClassesRoot:
      return "HKEY_CLASSES_ROOT";
    case RegistryRoot::CurrentUser:
      return "HKEY_CURRENT_USER";
    case RegistryRoot::LocalMachine:
      return "HKEY_LOCAL_MACHINE";
    case RegistryRoot::Users:
      return "HKEY_USERS";
    case RegistryRoot::PerformanceData:
      return "HKEY_PERFORMANCE_DATA";
    case RegistryRoot::CurrentConfig:
      return "HKEY_CURRENT_CONFIG";
    case RegistryRoot::DynData:
      return "HKEY_DYN_DATA";
  }
  return {};
}

std::int32_t CopyValue(const RegistryValue &value, ValueBuffer &into) {
  if (value.Name.size() + 1 > into.Name.size() || value.Data.size() > into.Data.size()) {
    return registry_result::MoreData;
  }
  into.NameLength = value.Name.copy(into.Name.data(), value.Name.size());
  into.Name[into.NameLength] = '\0';
  into.DataLength = value.Data.copy(into.Data.data(), value.Data.size());
  return registry_result::Success;
}

}  // namespace cvl
