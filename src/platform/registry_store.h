// The registry: keys in a tree, each with named values in the order in which they were
// first written.
//
// Every operation tells how it went by one of the registry's own numbers, the same on every
// platform. A text is Latin-1, a character a byte.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace cvl {

/// The numbers that the operations return and that somebody tells apart.
namespace registry_result {
inline constexpr std::int32_t Success = 0;
inline constexpr std::int32_t FileNotFound = 2;  ///< no such key, or no directory for the store
inline constexpr std::int32_t AccessDenied = 5;
inline constexpr std::int32_t InvalidHandle = 6;
inline constexpr std::int32_t OutOfMemory = 14;
inline constexpr std::int32_t SharingViolation = 32;  ///< somebody else is writing the store
inline constexpr std::int32_t InvalidParameter = 87;
inline constexpr std::int32_t DiskFull = 112;
inline constexpr std::int32_t MoreData = 234;  ///< a buffer is too small for a value
inline constexpr std::int32_t NoMoreItems = 259;
inline constexpr std::int32_t BadDatabase = 1009;  ///< the store is damaged
inline constexpr std::int32_t BadKey = 1010;
inline constexpr std::int32_t CantOpen = 1011;
inline constexpr std::int32_t CantRead = 1012;
inline constexpr std::int32_t CantWrite = 1013;
inline constexpr std::int32_t InputOutputError = 1016;
}  // namespace registry_result

/// The trees. None is no tree at all.
enum class RegistryRoot : std::uint32_t {
  None = 0,
  ClassesRoot = 0x80000000,
  CurrentUser = 0x80000001,
  LocalMachine = 0x80000002,
  Users = 0x80000003,
  PerformanceData = 0x80000004,
  CurrentConfig = 0x80000005,
  DynData = 0x80000006,
};

/// An open key. None is what a failed opening leaves.
enum class RegistryKey : std::uintptr_t { None = 0 };

/// A value as it was stored: a text with its terminator, or the bytes of another type.
struct RegistryValue {
  std::string Name;
  std::string Data;

  friend bool operator==(const RegistryValue &, const RegistryValue &) = default;
};

/// Where a value is read to. The name gets a terminator behind it, which its length doesn't
/// count; the data are as stored, so the length of a text does count its terminator.
struct ValueBuffer {
  explicit ValueBuffer(std::size_t size)
      : Name(size, ' '), Data(size, ' '), NameLength(size), DataLength(size) {}

  std::string Name;
  std::string Data;
  std::size_t NameLength;
  std::size_t DataLength;
};

class RegistryStore {
 public:
  virtual ~RegistryStore() = default;

  /// Opens a key for reading and writing, and makes it if there is none. PATH stands below
  /// ROOT, its parts with a backslash between each two; it is found without regard to case.
  virtual std::int32_t CreateKey(RegistryRoot root, std::string_view path, RegistryKey &key) = 0;

  /// Opens a key for reading. 2 when there is none.
  virtual std::int32_t OpenKey(RegistryRoot root, std::string_view path, RegistryKey &key) = 0;

  /// Stores a text with its terminator. A value of that name, in whatever case, keeps its
  /// place and its case. What is reported as stored stays so, whatever happens to the
  /// process or to the machine's power.
  virtual std::int32_t SetString(RegistryKey key, std::string_view name, std::string_view text) = 0;

  /// Reads the value at INDEX; the first is 0. 234 when the name with its terminator or the
  /// data are larger than the buffer, 259 behind the last value; both leave INTO alone.
  virtual std::int32_t EnumValue(RegistryKey key, std::uint32_t index, ValueBuffer &into) = 0;

  /// Closes a key. 6 when it isn't open, as one that failed to open.
  virtual std::int32_t CloseKey(RegistryKey key) = 0;
};

/// The name of a tree, "HKEY_LOCAL_MACHINE"; empty for None.
std::string_view RegistryRootName(RegistryRoot root);

/// Reads VALUE, with the bounds of EnumValue.
std::int32_t CopyValue(const RegistryValue &value, ValueBuffer &into);

}  // namespace cvl
