// Plain functions over the registry: one read and one write of a text, and a parser of full
// key paths.
//
//   registry.RegWriteString(RegistryRoot::LocalMachine, key, "OpenMinimized", "NO");
//   registry.RegReadString(key, "OpenMinimized")  // "NO", or empty
//
// Nothing here raises a failure.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/message_box.h"
#include "platform/registry_store.h"

namespace cvl {

class Registry {
 public:
  Registry(RegistryStore &store, MessageBoxes &boxes) : Store_(store), Boxes_(boxes) {}

  /// A value below HKEY_LOCAL_MACHINE; empty when it, or its key, isn't there or can't be
  /// read. Values of other types are read as texts too, less their last byte.
  ///
  /// The key is walked from its first value to its last, and VALUE_NAME is compared letter
  /// by letter. A value of more than 254 characters ends the walk: it and all behind it
  /// read as empty. Both are meant, and RegReadString's tests pin them.
  std::string RegReadString(std::string_view key_path, std::string_view value_name);

  /// Stores a text, and makes its key if there is none. True if it was stored.
  bool RegWriteString(RegistryRoot root, std::string_view key_path, std::string_view value_name,
                      std::string_view value);

  /// Checks the form of a full path and cuts its root off, and no more, despite its name:
  /// keys are made by RegWriteString.
  void RegCreateKeyPath(std::string &path);

  /// Takes a full path apart: ROOT is the tree of its first part, PATH what stands behind
  /// the first backslash. A path that doesn't begin with "HKEY_" or that ends with a
  /// backslash is shown in a message box, and both stay as they are.
  void RegParseKeyPath(std::string &path, RegistryRoot &root);

  /// The tree of that name, compared letter by letter; None for any other name.
  static RegistryRoot RegRootFromName(std::string_view name);

 private:
  RegistryStore &Store_;
  MessageBoxes &Boxes_;
  RegistryRoot RootKey_ = RegistryRoot::None;
  // Where a path was cut, counted from 1; 0 for nowhere.
  std::int32_t LastResult_ = 0;
};

/// The text for a result of the registry, for whoever shows one; empty for one without. No
/// operation here does.
std::string_view RegErrorText(std::int32_t result);

}  // namespace cvl
