// Files whose every operation is written down. Paths stand in the journal by their name
// inside the program directory.

#pragma once

#include <string>

#include "platform/files.h"
#include "tests/support/call_journal.h"

namespace cvl {

class WatchedFiles final : public Files {
 public:
  /// Passes everything on to FILES.
  WatchedFiles(Files &files, CallJournal &journal) : Files_(files), Journal_(journal) {}

  std::string InProgramDirectory(std::string_view name) const override {
    return Files_.InProgramDirectory(name);
  }
  char Separator() const override { return Files_.Separator(); }

  bool Exists(const std::string &path) const override {
    Journal_.Add("exists " + Short(path));
    return Files_.Exists(path);
  }
  std::optional<std::int64_t> Length(const std::string &path) const override {
    Journal_.Add("length " + Short(path));
    return Files_.Length(path);
  }
  std::unique_ptr<std::istream> OpenForInput(const std::string &path) const override {
    Journal_.Add("open " + Short(path));
    return Files_.OpenForInput(path);
  }
  std::unique_ptr<OutputFile> OpenForBinary(const std::string &path) override {
    Journal_.Add("open for binary " + Short(path));
    return Files_.OpenForBinary(path);
  }
  [[nodiscard]] Opened OpenForAppend(const std::string &path, IfMissing if_missing) override {
    Journal_.Add((if_missing == IfMissing::Create ? "append or create " : "append ") + Short(path));
    return Files_.OpenForAppend(path, if_missing);
  }
  [[nodiscard]] int AppendTo(FileHandle file, std::string_view bytes) override {
    Journal_.Add("write");
    return Files_.AppendTo(file, bytes);
  }
  void Close(FileHandle file) override {
    Journal_.Add("close");
    Files_.Close(file);
  }
  [[nodiscard]] int MakeDirectory(const std::string &path) override {
    Journal_.Add("make directory " + Short(path));
    return Files_.MakeDirectory(path);
  }

 private:
  std::string Short(const std::string &path) const {
    const std::string home = Files_.InProgramDirectory("");
    return path.starts_with(home) ? path.substr(home.size()) : path;
  }

  Files &Files_;
  CallJournal &Journal_;
};

}  // namespace cvl
