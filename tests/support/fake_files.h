// A program directory in memory, /program. A test puts files there, makes operations fail
// and sees what the program left.
//
//   FakeFiles files;
//   files.Contents["/program/QRB_CVLS4.CVL"] = "...";
//   ...                                                 // the program writes its log
//   files.Contents.at("/program/Logs/CVLS031002.LOG")

#pragma once

#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>

#include "base/runtime_error.h"
#include "platform/files.h"

namespace cvl {

class FakeFiles final : public Files {
 public:
  /// Every file by its path, and the directories beside /program.
  std::map<std::string, std::string> Contents;
  std::set<std::string> Directories;

  /// The failure of each operation from now on, 0 for none.
  int OpenError = 0;
  int BinaryError = 0;
  int WriteError = 0;
  int AppendError = 0;
  int AppendWriteError = 0;
  int DirectoryError = 0;

  /// How often each was asked for, the failed ones included.
  int BinaryOpens = 0;
  int Appends = 0;
  int DirectoriesMade = 0;

  /// How many files are open for writing now.
  int OpenOutputs = 0;

  /// The files that are open for appending, by handle.
  std::map<std::intptr_t, std::string> Appended;

  /// Called at the beginning of each OpenForAppend.
  std::function<void()> OnAppend;

  std::string InProgramDirectory(std::string_view name) const override {
    return "/program/" + std::string(name);
  }

  char Separator() const override { return '/'; }

  bool Exists(const std::string &path) const override { return Contents.contains(path); }

  std::optional<std::int64_t> Length(const std::string &path) const override {
    const auto file = Contents.find(path);
    if (file == Contents.end()) return std::nullopt;
    return static_cast<std::int64_t>(file->second.size());
  }

  std::unique_ptr<std::istream> OpenForInput(const std::string &path) const override {
    if (OpenError != 0) throw RuntimeError(OpenError);
    if (!Exists(path)) throw RuntimeError(error_number::FileNotFound);
    return std::make_unique<std::istringstream>(Contents.at(path));
  }

  std::unique_ptr<OutputFile> OpenForBinary(const std::string &path) override {
    ++BinaryOpens;
    if (BinaryError != 0) throw RuntimeError(BinaryError);
    if (!IsDirectory(path.substr(0, path.rfind('/')))) {
      throw RuntimeError(error_number::FileNotFound);
    }
    Contents.try_emplace(path);
    return std::make_unique<Output>(*this, path);
  }

  [[nodiscard]] Opened OpenForAppend(const std::string &path, IfMissing if_missing) override {
    ++Appends;
    if (OnAppend) OnAppend();
    if (AppendError != 0) return {AppendError, FileHandle::None};
    const bool has_directory = IsDirectory(path.substr(0, path.rfind('/')));
    if (!has_directory || (if_missing == IfMissing::Fail && !Exists(path))) {
      return {error_number::FileNotFound, FileHandle::None};
    }
    Contents.try_emplace(path);
    Appended[++LastHandle_] = path;
    return {0, FileHandle{LastHandle_}};
  }

  [[nodiscard]] int AppendTo(FileHandle file, std::string_view bytes) override {
    if (AppendWriteError != 0) return AppendWriteError;
    Contents[Appended.at(static_cast<std::intptr_t>(file))] += bytes;
    return 0;
  }

  void Close(FileHandle file) override { Appended.erase(static_cast<std::intptr_t>(file)); }

  [[nodiscard]] int MakeDirectory(const std::string &path) override {
    ++DirectoriesMade;
    if (DirectoryError != 0) return DirectoryError;
    Directories.insert(path);
    return 0;
  }

 private:
  class Output final : public OutputFile {
   public:
    Output(FakeFiles &files, std::string path) : Files_(files), Path_(std::move(path)) {
      ++Files_.OpenOutputs;
    }
    ~Output() override { --Files_.OpenOutputs; }
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    [[nodiscard]] int Write(std::string_view bytes) override {
      if (Files_.WriteError != 0) return Files_.WriteError;
      std::string &contents = Files_.Contents[Path_];
      const std::size_t end = At_ + bytes.size();
      if (contents.size() < end) contents.resize(end, '\0');
      contents.replace(At_, bytes.size(), bytes);
      At_ = end;
      return 0;
    }

   private:
    FakeFiles &Files_;
    std::string Path_;
    std::size_t At_ = 0;
  };

  std::intptr_t LastHandle_ = 0;

  bool IsDirectory(const std::string &path) const {
    return path == "/program" || Directories.contains(path);
  }
};

}  // namespace cvl
