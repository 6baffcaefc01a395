#include "tests/platform_service/scratch.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace cvl {

namespace {

void Set(const std::string &name, const char *value) {
  if (value == nullptr) {
    unsetenv(name.c_str());
  } else {
    setenv(name.c_str(), value, 1);
  }
}

}  // namespace

ScratchDirectory::ScratchDirectory() {
  std::string name = (std::filesystem::temp_directory_path() / "cvl-service-XXXXXX").string();
  EXPECT_NE(mkdtemp(name.data()), nullptr);
  Path_ = name;
}

ScratchDirectory::~ScratchDirectory() {
  std::error_code failure;
  std::filesystem::remove_all(Path_, failure);
}

ScopedVariable::ScopedVariable(const char *name, const char *value)
    : Name_(name), WasSet_(std::getenv(name) != nullptr) {
  if (WasSet_) Before_ = std::getenv(name);
  Set(Name_, value);
}

ScopedVariable::~ScopedVariable() {
  Set(Name_, WasSet_ ? Before_.c_str() : nullptr);
}

std::string ReadText(const std::string &path) {
  std::ifstream file(path);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

void WriteText(const std::string &path, const std::string &text) {
  std::ofstream file(path);
  file << text;
}

void WriteScript(const std::string &path, const std::string &commands) {
  WriteText(path, "#!/bin/sh\n" + commands);
  chmod(path.c_str(), 0755);
}

}  // namespace cvl
