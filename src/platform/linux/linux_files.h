// The program directory of Linux: the directory of the executable, or CHRONVALE_HOME.

#pragma once

#include "platform/files.h"

namespace cvl {

class LinuxFiles final : public Files {
 public:
  LinuxFiles();

  std::string InProgramDirectory(std::string_view name) const override;
  char Separator() const override { return '/'; }
  bool Exists(const std::string &path) const override;
  std::optional<std::int64_t> Length(const std::string &path) const override;
  std::unique_ptr<std::istream> OpenForInput(const std::string &path) const override;
  std::unique_ptr<OutputFile> OpenForBinary(const std::string &path) override;
  [[nodiscard]] Opened OpenForAppend(const std::string &path, IfMissing if_missing) override;
  [[nodiscard]] int AppendTo(FileHandle file, std::string_view bytes) override;
  void Close(FileHandle file) override;
  [[nodiscard]] int MakeDirectory(const std::string &path) override;

  const std::string &ProgramDirectory() const { return ProgramDirectory_; }

 private:
  std::string ProgramDirectory_;
};

}  // namespace cvl
