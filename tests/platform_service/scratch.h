// Directories and variables of the environment that a test has for itself.

#pragma once

#include <filesystem>
#include <string>

namespace cvl {

/// An empty directory that goes with its scope.
class ScratchDirectory {
 public:
  ScratchDirectory();
  ~ScratchDirectory();
  ScratchDirectory(const ScratchDirectory &) = delete;
  ScratchDirectory &operator=(const ScratchDirectory &) = delete;

  const std::filesystem::path &Path() const { return Path_; }
  std::string operator/(const std::string &name) const { return (Path_ / name).string(); }

 private:
  std::filesystem::path Path_;
};

/// A variable that has a value, or with nullptr none, until its scope ends.
class ScopedVariable {
 public:
  ScopedVariable(const char *name, const char *value);
  ~ScopedVariable();
  ScopedVariable(const ScopedVariable &) = delete;
  ScopedVariable &operator=(const ScopedVariable &) = delete;

 private:
  std::string Name_;
  std::string Before_;
  bool WasSet_;
};

std::string ReadText(const std::string &path);
void WriteText(const std::string &path, const std::string &text);

/// Makes an executable script of the shell.
void WriteScript(const std::string &path, const std::string &commands);

}  // namespace cvl
