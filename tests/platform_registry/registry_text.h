// Settings files as tests write them down.

#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/registry_file.h"

namespace cvl {

inline constexpr std::string_view Key = "HKEY_LOCAL_MACHINE\\Software\\Chronvale Server";

inline const std::string Head = "Windows Registry Editor Version 5.00\n\n";
inline const std::string Heading = "[" + std::string(Key) + "]";

/// A file with LINES below the key of the settings.
inline std::string InKey(const std::string &lines) {
  return Head + Heading + "\n" + lines;
}

/// One of everything that a file may hold.
inline const std::string Everything = "; above the heading\n" + Head +
                                      "; a comment\n\n"
                                      "[HKEY_LOCAL_MACHINE\\Software\\Other]\n"
                                      "@=\"x\"\n"
                                      "\"Start\"=dword:00000002\n\n" +
                                      Heading +
                                      "\n"
                                      "; the Time service\n"
                                      "\"NTP37\"=\"YES:YES:YES:37\" ; as it was\n"
                                      "\n"
                                      "  \"Path\"=hex(2):25,00,41,00,\\\n"
                                      "  00,00\n"
                                      "\"Lines\"=\"one\ntwo\"\n"
                                      "\"Gone\"=-\n"
                                      "\"DTS13\"=\"NO:YES:YES:13\"\n"
                                      ";\n\n"
                                      "[-HKEY_CURRENT_USER\\Software\\Gone]\n\n";

/// The same text with CR LF at the end of its lines.
inline std::string WithReturns(std::string_view text) {
  std::string lines;
  for (const char c : text) {
    if (c == '\n') lines += '\r';
    lines += c;
  }
  return lines;
}

/// An ASCII text as the registry editor exports it, least significant byte first and behind a
/// mark.
inline std::string Utf16Of(std::string_view text) {
  std::string bytes = "\xFF\xFE";
  for (const char c : text) {
    bytes += c;
    bytes += '\0';
  }
  return bytes;
}

/// The file of these bytes, which must be sound.
inline RegistryFile Parsed(const std::string &bytes) {
  std::size_t bad_line = 0;
  std::optional<RegistryFile> file = RegistryFile::Parse(bytes, &bad_line);
  EXPECT_TRUE(file) << "damaged in line " << bad_line << " of:\n" << bytes;
  return file ? *std::move(file) : RegistryFile();
}

}  // namespace cvl
