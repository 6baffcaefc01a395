// What a form keeps of a control that stands on it: values under names.

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "base/runtime_error.h"
#include "ui/button/button_properties.h"

namespace cvl {

using PropertyValue = std::variant<bool, std::int16_t, std::int32_t, Colour, std::string, RasterRef,
                                   std::optional<ButtonFont>>;

/// The names are exact; case counts.
class PropertyStore {
 public:
  std::map<std::string, PropertyValue, std::less<>> Values;

  /// Stores a value that differs from its default; for one that doesn't, nothing is stored
  /// from here on.
  template <class Value>
  void Write(std::string_view name, const Value &value, const Value &default_value) {
    if (value == default_value) {
      const auto old = Values.find(name);
      if (old != Values.end()) Values.erase(old);
    } else {
      Values.insert_or_assign(std::string(name), PropertyValue(value));
    }
  }

  /// The stored value, or the default where there is none. Raises 13 when what is stored is
  /// of another type.
  template <class Value>
  Value Read(std::string_view name, const Value &default_value) const {
    const auto found = Values.find(name);
    if (found == Values.end()) return default_value;
    const Value *value = std::get_if<Value>(&found->second);
    if (value == nullptr) throw RuntimeError(error_number::TypeMismatch);
    return *value;
  }
};

}  // namespace cvl
