// The Linux machine and this process on it.

#pragma once

#include "platform/host.h"

namespace cvl {

class LinuxHost final : public Host {
 public:
  /// PROGRAM_DIRECTORY is what an instance claims for itself.
  explicit LinuxHost(std::string program_directory);
  ~LinuxHost() override;
  LinuxHost(const LinuxHost &) = delete;
  LinuxHost &operator=(const LinuxHost &) = delete;

  [[nodiscard]] bool ClaimSingleInstance() override;
  std::string UserName() override;

 private:
  std::string ProgramDirectory_;
  int Directory_ = -1;  // open, and with it the claim, until the process ends
};

}  // namespace cvl
