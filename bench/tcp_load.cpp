// How many connections a second the server answers with the Time and with the Daytime, its log
// on, and at what cost of processor time, beside inetd with its built-in services in the same
// run. Medians are shown.
//
//   tcp_load_bench [rounds]

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/connection_load.h"
#include "bench/contest.h"
#include "bench/monotonic.h"
#include "bench/own_network.h"
#include "bench/scratch_home.h"
#include "bench/server_process.h"

namespace {

using namespace cvl::bench;

constexpr const char *InetdProgram = "/usr/sbin/inetutils-inetd";

// inetd lets ten connections wait, and the kernel drops what comes beyond.
constexpr std::size_t Depths[] = {1, 8};
constexpr std::int64_t RoundNs = 500000000;
constexpr std::int64_t StartNs = 3000000000;

class TcpContender final : public Contender {
 public:
  TcpContender(std::string name, pid_t process, const ConnectionLoad &load)
      : Contender(std::move(name)), Process_(process), Load_(load) {}

  bool WaitUntilReady() override { return Load_.WaitForAnswer(StartNs); }
  LoadResult Load(std::size_t depth) override { return Load_.Run(depth, RoundNs); }
  std::int64_t ProcessorNs() const override { return ProcessorNsOf(Process_); }

 private:
  pid_t Process_;
  ConnectionLoad Load_;
};

/// inetd as it runs on a server: a daemon that says nothing, since its only way of staying in
/// front makes it write about each connection. It ends with the namespace of processes.
class Inetd {
 public:
  explicit Inetd(const std::string &directory)
      : PidFile_(directory + "/inetd.pid"),
        Starter_({InetdProgram, "-R", "0", "--pidfile=" + PidFile_, WriteConfig(directory)},
                 ServerCore) {}

  /// The daemon's process, 0 when it hasn't come up.
  pid_t Process() const {
    const std::int64_t end = MonotonicNs() + StartNs;
    pid_t process = 0;
    while (process == 0 && MonotonicNs() < end) {
      std::ifstream(PidFile_) >> process;
    }
    return process;
  }

 private:
  static std::string WriteConfig(const std::string &directory) {
    std::string path = directory + "/inetd.conf";
    std::ofstream(path) << "time stream tcp nowait root internal\n"
                           "daytime stream tcp nowait root internal\n";
    return path;
  }

  std::string PidFile_;
  ServerProcess Starter_;
};

struct Service {
  const char *Name;
  std::uint16_t OurPort;
  std::size_t OurLength;
  std::uint16_t InetdPort;
  std::size_t InetdLength;
};

// On 64-bit machines inetd sends the Time with four bytes too many.
constexpr Service Services[] = {{"Time", ScratchTimePort, 4, 37, 8},
                                {"Daytime", ScratchDaytimePort, 50, 13, 26}};

bool Measure(int rounds) {
  const ScratchHome scratch("127.0.0.1", "1123");
  const ServerProcess ours({OwnDirectory() + "/bench_server", "log"}, ServerCore);
  const Inetd inetd(scratch.Directory());
  for (const Service &service : Services) {
    Contenders contenders;
    contenders.push_back(std::make_unique<TcpContender>(
        "cvlserver, log", ours.Id(), ConnectionLoad(service.OurPort, "", service.OurLength)));
    contenders.push_back(std::make_unique<TcpContender>(
        "inetd", inetd.Process(), ConnectionLoad(service.InetdPort, "", service.InetdLength)));
    std::printf("\n%s over TCP", service.Name);
    if (!AllReady(contenders)) return false;
    for (const std::size_t depth : Depths) {
      Compete(contenders, depth, rounds);
    }
  }
  return true;
}

}  // namespace

int main(int count, char **arguments) {
  try {
    if (!std::filesystem::exists(InetdProgram)) {
      std::puts("inetutils-inetd isn't installed: nothing to compare with");
      return EXIT_SUCCESS;
    }
    EnterOwnNetwork(arguments);
    StayOnCore(LoadCore);
    return Measure(RoundsOf(count, arguments)) ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception &error) {
    std::fprintf(stderr, "tcp_load_bench: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
