// A directory of its own for a test, gone with all that is in it at the test's end.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cvl {

class ScratchDirectory {
 public:
  ScratchDirectory();
  ~ScratchDirectory();
  ScratchDirectory(const ScratchDirectory &) = delete;
  ScratchDirectory &operator=(const ScratchDirectory &) = delete;

  std::string PathOf(std::string_view name) const { return Path_ + "/" + std::string(name); }

  void Write(std::string_view name, std::string_view bytes) const;

  /// The bytes of a file, or "(none)".
  std::string Read(std::string_view name) const;

  /// What is in the directory, sorted.
  std::vector<std::string> Names() const;

  const std::string &Path() const { return Path_; }

 private:
  std::string Path_;
};

}  // namespace cvl
