// Other programs of a Linux machine.

#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "platform/program_starter.h"

namespace cvl {

class LinuxProgramStarter final : public ProgramStarter {
 public:
  [[nodiscard]] int Start(const std::string &program,
                          const std::vector<std::string> &arguments) override;

 private:
  void ForgetEnded();

  // Those that may still run. One that has ended leaves the system's table at the next start.
  std::vector<pid_t> Started_;
};

}  // namespace cvl
