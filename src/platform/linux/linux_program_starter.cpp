#include "platform/linux/linux_program_starter.h"

#include <sys/wait.h>

#include <algorithm>

#include "platform/linux/error_table.h"
#include "platform/linux/run_program.h"

namespace cvl {

int LinuxProgramStarter::Start(const std::string &program,
                               const std::vector<std::string> &arguments) {
  ForgetEnded();
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  pid_t process = 0;
  const int error = SpawnProgram(std::move(words), process);
  if (error != 0) return FileErrorOf(error);
  Started_.push_back(process);
  return 0;
}

void LinuxProgramStarter::ForgetEnded() {
  const auto has_ended = [](pid_t process) { return waitpid(process, nullptr, WNOHANG) != 0; };
  Started_.erase(std::remove_if(Started_.begin(), Started_.end(), has_ended), Started_.end());
}

}  // namespace cvl
