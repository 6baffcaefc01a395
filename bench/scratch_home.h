// A program directory that lasts as long as one benchmark.

#pragma once

#include <string>

namespace cvl::bench {

/// The ports of Time and Daytime there. Theirs by right belong to whom they are compared with.
inline constexpr int ScratchTimePort = 1037;
inline constexpr int ScratchDaytimePort = 1013;

/// Makes a directory that holds a server file with one upstream, and settings in which all
/// services are on, NTP on a port of choice, Daytime with its Julian text. It is the program
/// directory of this process and its children. Make it before the platform, which reads the
/// variable once. Raises std::system_error when the system refuses.
class ScratchHome {
 public:
  ScratchHome(const std::string &upstream, const std::string &ntp_port);
  ~ScratchHome();
  ScratchHome(const ScratchHome &) = delete;
  ScratchHome &operator=(const ScratchHome &) = delete;

  const std::string &Directory() const { return Directory_; }

 private:
  std::string Directory_;
};

/// Waits out the end of the present second. Millisecond 999 has no timestamp, and a
/// server that is started in it ends at once.
void AvoidEndOfSecond();

}  // namespace cvl::bench
