// The Linux machine and this process on it.

#pragma once

#include <string>

#include "platform/host.h"

namespace cvl {

/// The claim is an exclusive flock on cvlserver.lock in the program directory, a file of mode
/// 600, so that only its owner can take the lock. Where the file can't be created (a read-only
/// directory), the lock is on the directory itself, which any reader of it can take as well.
class LinuxHost final : public Host {
 public:
  /// PROGRAM_DIRECTORY is the directory to claim.
  explicit LinuxHost(std::string program_directory);
  ~LinuxHost() override;
  LinuxHost(const LinuxHost &) = delete;
  LinuxHost &operator=(const LinuxHost &) = delete;

  [[nodiscard]] bool ClaimSingleInstance() override;
  std::string ClaimObstacle() const override { return ClaimObstacle_; }
  std::string UserName() override;

 private:
  bool ClaimFile(const std::string &path);
  bool ClaimDirectory();
  bool TakeLock();

  std::string ProgramDirectory_;
  std::string ClaimObstacle_;
  int Lock_ = -1;  // open, and with it the claim, until the process ends
};

}  // namespace cvl
