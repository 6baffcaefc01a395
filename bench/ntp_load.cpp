// How many NTP requests a second the server answers over UDP on loopback, and at what cost
// of processor time, beside others in the same run. With the log off they are a bare echo,
// which is the floor, and chronyd, if it is installed; with the log on, an echo that opens,
// extends and closes a file for each datagram. Medians are shown.
//
//   ntp_load_bench [rounds]

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/contest.h"
#include "bench/load_generator.h"
#include "bench/own_network.h"
#include "bench/scratch_home.h"
#include "bench/server_process.h"

namespace {

using namespace cvl::bench;

constexpr std::uint16_t OurPort = 1123;
constexpr std::uint16_t EchoPort = 1124;
constexpr std::uint16_t ChronydPort = 1125;

constexpr std::size_t Depths[] = {32, 128};
constexpr std::int64_t RoundNs = 500000000;
constexpr std::int64_t MostAnswersPerRound = 1000000;
constexpr std::int64_t StartNs = 3000000000;

class UdpContender final : public Contender {
 public:
  UdpContender(std::string name, const std::vector<std::string> &command, std::uint16_t port,
               EchoAt echo_at)
      : Contender(std::move(name)), Process_(command, ServerCore), Load_(port, echo_at) {}

  bool WaitUntilReady() override { return Load_.WaitForAnswer(StartNs) && Process_.IsRunning(); }

  LoadResult Load(std::size_t depth) override {
    return Load_.Run(depth, MostAnswersPerRound, RoundNs);
  }

  std::int64_t ProcessorNs() const override { return Process_.ProcessorNs(); }

 private:
  ServerProcess Process_;
  LoadGenerator Load_;
};

/// Writes the settings of a chronyd that serves its own clock and touches nothing.
std::string WriteChronydConfig(const std::string &directory, std::uint16_t port) {
  std::string path = directory + "/chronyd.conf";
  std::ofstream(path) << "local stratum 8\nallow\nport " << port << "\ncmdport 0\n"
                      << "bindcmdaddress /\npidfile " << directory << "/chronyd.pid\n";
  return path;
}

std::string FindChronyd() {
  for (const char *path : {"/usr/sbin/chronyd", "/usr/local/sbin/chronyd", "/usr/bin/chronyd"}) {
    if (std::filesystem::exists(path)) return path;
  }
  return {};
}

using Command = std::vector<std::string>;

/// Our server comes first: the others are compared with it.
Contenders StartAll(const std::string &directory) {
  Contenders all;
  all.push_back(std::make_unique<UdpContender>(
      "cvlserver", Command{OwnDirectory() + "/bench_server"}, OurPort, EchoAt::Originate));
  all.push_back(std::make_unique<UdpContender>(
      "bare echo", Command{OwnDirectory() + "/echo_server", std::to_string(EchoPort)}, EchoPort,
      EchoAt::Transmit));
  const std::string chronyd = FindChronyd();
  if (chronyd.empty()) {
    std::puts("chronyd isn't installed and is left out");
  } else {
    all.push_back(
        std::make_unique<UdpContender>("chronyd -x",
                                       Command{chronyd, "-x", "-u", "root", "-d", "-f",
                                               WriteChronydConfig(directory, ChronydPort)},
                                       ChronydPort, EchoAt::Originate));
  }
  return all;
}

Contenders StartLogging(const std::string &directory) {
  Contenders all;
  all.push_back(std::make_unique<UdpContender>("cvlserver, log",
                                               Command{OwnDirectory() + "/bench_server", "log"},
                                               OurPort, EchoAt::Originate));
  all.push_back(std::make_unique<UdpContender>(
      "echo, file",
      Command{OwnDirectory() + "/echo_server", std::to_string(EchoPort), directory + "/echo.log"},
      EchoPort, EchoAt::Transmit));
  return all;
}

bool Measure(Contenders (*start)(const std::string &directory), int rounds) {
  const ScratchHome scratch("127.0.0.1", std::to_string(OurPort));
  const Contenders contenders = start(scratch.Directory());
  if (!AllReady(contenders)) return false;
  for (const std::size_t depth : Depths) {
    Compete(contenders, depth, rounds);
  }
  return true;
}

}  // namespace

int main(int count, char **arguments) {
  try {
    EnterOwnNetwork(arguments);
    StayOnCore(LoadCore);
    const int rounds = RoundsOf(count, arguments);
    if (!Measure(StartAll, rounds)) return EXIT_FAILURE;
    std::puts("\nWith a line in a file for each request");
    return Measure(StartLogging, rounds) ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (const std::exception &error) {
    std::fprintf(stderr, "ntp_load_bench: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
