// Files of the program directory.

#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace cvl {

/// What to do about a file that isn't there.
enum class IfMissing { Fail, Create };

/// A file of the operating system that is open for appending.
enum class FileHandle : std::intptr_t { None = -1 };

/// A file that stays open for writing. Destroying it closes it.
class OutputFile {
 public:
  virtual ~OutputFile() = default;

  /// Writes at the present position, which is at first the beginning of the file. Returns 0,
  /// or the number of the failure.
  [[nodiscard]] virtual int Write(std::string_view bytes) = 0;
};

class Files {
 public:
  virtual ~Files() = default;

  /// The path of a name inside the program directory. NAME may have folders in front of
  /// it, with the system's own separator between them.
  virtual std::string InProgramDirectory(std::string_view name) const = 0;

  /// The system's path separator.
  virtual char Separator() const = 0;

  /// Whether there is a file of that path.
  virtual bool Exists(const std::string &path) const = 0;

  /// Its length in bytes, or nothing when there is no such file.
  virtual std::optional<std::int64_t> Length(const std::string &path) const = 0;

  /// Opens a file for reading. Raises FileNotFound (53) when there is none, PermissionDenied
  /// (70) when it can't be read, PathFileAccess (75) for what isn't a regular file and for a
  /// file of more than 16 MiB.
  virtual std::unique_ptr<std::istream> OpenForInput(const std::string &path) const = 0;

  /// Opens a file for writing from its beginning, and creates it if there is none. Nothing is
  /// cut off: writing over a longer file leaves its tail. Raises FileNotFound (53) when the
  /// directory is missing, PermissionDenied (70) when the file can't be written, and
  /// PathFileAccess (75) for a link, a file with a second name, and what isn't a regular file.
  virtual std::unique_ptr<OutputFile> OpenForBinary(const std::string &path) = 0;

  /// A file that takes bytes at its end, or why there is none.
  struct Opened {
    int Error = 0;
    FileHandle File = FileHandle::None;
  };

  /// Opens a file for AppendTo; close it with Close. The error is FileNotFound (53) when the
  /// file or its directory is missing. A symbolic link isn't followed, and nothing is waited
  /// for.
  [[nodiscard]] virtual Opened OpenForAppend(const std::string &path, IfMissing if_missing) = 0;

  /// Writes BYTES to the end of FILE with one system call. Where there is no room for all of
  /// them none is left. Returns 0, or the number of the failure: PathFileAccess (75) for what
  /// isn't a regular file.
  [[nodiscard]] virtual int AppendTo(FileHandle file, std::string_view bytes) = 0;

  virtual void Close(FileHandle file) = 0;

  /// Makes a directory. Returns 0, or the number of the failure.
  [[nodiscard]] virtual int MakeDirectory(const std::string &path) = 0;
};

}  // namespace cvl
