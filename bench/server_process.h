// A server that is measured: a child process on a core of its own.

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace cvl::bench {

/// Processor time that PROCESS has used so far, in nanoseconds; 0 when there is no such.
std::int64_t ProcessorNsOf(pid_t process);

class ServerProcess {
 public:
  /// Starts COMMAND, whose output is thrown away, on the processor CORE alone. Raises
  /// std::system_error when there can be no process.
  ServerProcess(const std::vector<std::string> &command, int core);
  /// Ends it and waits for its end.
  ~ServerProcess();
  ServerProcess(const ServerProcess &) = delete;
  ServerProcess &operator=(const ServerProcess &) = delete;

  /// False once it has ended by itself.
  bool IsRunning();

  pid_t Id() const { return Process_; }

  /// Processor time that it has used so far, in nanoseconds.
  std::int64_t ProcessorNs() const { return ProcessorNsOf(Process_); }

 private:
  pid_t Process_;
};

/// Keeps the calling thread on the processor CORE.
void StayOnCore(int core);

/// The directory of this program, where the servers stand as well.
std::string OwnDirectory();

}  // namespace cvl::bench
