// Programs that are started and never run.

#pragma once

#include <string>
#include <vector>

#include "platform/program_starter.h"

namespace cvl {

class FakeProgramStarter final : public ProgramStarter {
 public:
  struct Started {
    std::string Program;
    std::vector<std::string> Arguments;

    friend bool operator==(const Started &, const Started &) = default;
  };

  /// Every start that was asked for, in order.
  std::vector<Started> Programs;

  /// The failure of the next starts, 0 for none.
  int Error = 0;

  [[nodiscard]] int Start(const std::string &program,
                          const std::vector<std::string> &arguments) override {
    Programs.push_back({program, arguments});
    return Error;
  }
};

}  // namespace cvl
