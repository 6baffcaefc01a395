// One piece of a settings file, in the layout that the registry editor exports:
//
//   [HKEY_LOCAL_MACHINE\Software\Chronvale Server]    a key, for the values below it
//   "NTP37"="YES:YES:YES:37"                          a text; \\ and \" stand for \ and "
//   "Start"=dword:00000002                            a number
//   "Data"=hex(2):41,00,\                             bytes, on as many lines as they take
//     00,00
//   "Old"=-                                           a value that isn't there any more
//   @="text"                                          the value without a name
//   ; comment

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cvl {

struct RegistryEntry {
  enum class Kind {
    Other,  ///< a comment or a blank line
    Key,
    Value,
    Deleted,  ///< a value that isn't there any more
  };

  Kind What = Kind::Other;
  std::string Text;  ///< as it stands in the file, with its line end if it has one
  std::string Name;  ///< path of a key, name of a value; UTF-8

  // Of a value.
  std::string Data;      ///< as the registry hands it out: Latin-1 with its terminator, or bytes
  bool IsText = false;   ///< it is a plain text
  std::size_t DataAt{};  ///< where in Text its data stand
  std::size_t DataLength{};
};

/// Reads the piece at AT and moves AT behind it. False when there is none that makes sense.
/// TEXT is UTF-8 and holds no 0; its lines end in LF or CR LF.
[[nodiscard]] bool ReadRegistryEntry(std::string_view text, std::size_t &at, RegistryEntry &entry);

/// A text as the data of a value, and a name as its name; both are given in Latin-1. What
/// can't stand between quotes on one line is written as bytes.
std::string RegistryDataText(std::string_view text);
std::string RegistryNameText(std::string_view name);

}  // namespace cvl
