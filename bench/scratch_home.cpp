#include "bench/scratch_home.h"

#include <time.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace cvl::bench {

ScratchHome::ScratchHome(const std::string &upstream, const std::string &ntp_port)
    : Directory_((std::filesystem::temp_directory_path() / "chronvale-bench-XXXXXX").string()) {
  if (mkdtemp(Directory_.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), Directory_);
  }
  // Five lines of heading come first.
  std::ofstream(Directory_ + "/QRB_CVLS4.CVL") << "1\n2\n3\n4\n5\n"
                                               << upstream << ":::Bench NA:::7:::0\n";
  std::ofstream(Directory_ + "/registry.reg")
      << "Windows Registry Editor Version 5.00\n\n"
         "[HKEY_LOCAL_MACHINE\\Software\\Chronvale Server]\n"
         "\"Settings\"=\"NO:59:Minutes/s:NA:36\"\n"
         "\"UseJulian\"=\"YES\"\n"
         "\"NTP37\"=\"YES:YES:YES:1037\"\n"
         "\"SNTP123\"=\"YES:YES:YES:"
      << ntp_port
      << "\"\n"
         "\"UNIX519\"=\"YES:YES:NO:519\"\n"
         "\"CVL3777\"=\"YES:YES:YES:3777\"\n"
         "\"DTS13\"=\"YES:YES:YES:1013\"\n";
  setenv("CHRONVALE_HOME", Directory_.c_str(), 1);
}

ScratchHome::~ScratchHome() {
  std::error_code unheard;
  std::filesystem::remove_all(Directory_, unheard);
}

void AvoidEndOfSecond() {
  constexpr long Late = 900000000;
  timespec now{};
  do {
    clock_gettime(CLOCK_REALTIME, &now);
    if (now.tv_nsec >= Late) {
      const timespec rest{0, 1000000000 - now.tv_nsec};
      nanosleep(&rest, nullptr);
    }
  } while (now.tv_nsec >= Late);
}

}  // namespace cvl::bench
