// How many NTP requests a second the server answers over UDP on loopback, and at what cost
// of processor time, beside two others in the same run: a bare echo, which is the floor,
// and chronyd, if it is installed. Each server has one core to itself and the load has the
// other. The servers take turns, round by round, so that whatever else the machine does
// meets them alike; medians are shown.
//
//   ntp_load_bench [rounds]

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/load_generator.h"
#include "bench/own_network.h"
#include "bench/scratch_home.h"
#include "bench/server_process.h"

namespace {

using namespace cvl::bench;

constexpr std::uint16_t OurPort = 1123;
constexpr std::uint16_t EchoPort = 1124;
constexpr std::uint16_t ChronydPort = 1125;

constexpr int LoadCore = 0;
constexpr int ServerCore = 1;
constexpr std::size_t Depths[] = {32, 128};
constexpr int UsualRounds = 13;
constexpr int MostRounds = 40;
constexpr std::int64_t RoundNs = 500000000;
constexpr std::int64_t MostAnswersPerRound = 1000000;
constexpr std::int64_t StartNs = 3000000000;

double MedianOf(std::vector<double> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// What the rounds of one depth have shown of one server.
struct Figures {
  std::vector<double> PerSecond;
  std::vector<double> NsPerAnswer;
  std::vector<double> Busy;  // share of its core that the server used
  LoadResult Total;
};

class Contender {
 public:
  Contender(std::string name, const std::vector<std::string> &command, std::uint16_t port,
            EchoAt echo_at)
      : Name(std::move(name)), Process_(command, ServerCore), Load_(port, echo_at) {}

  const std::string Name;

  bool WaitUntilReady() { return Load_.WaitForAnswer(StartNs) && Process_.IsRunning(); }

  void Round(std::size_t depth, Figures &figures) {
    const std::int64_t used_before = Process_.ProcessorNs();
    const LoadResult result = Load_.Run(depth, MostAnswersPerRound, RoundNs);
    const auto used = static_cast<double>(Process_.ProcessorNs() - used_before);
    const auto elapsed = static_cast<double>(result.ElapsedNs);
    const auto served =
        static_cast<double>(std::max<std::int64_t>(1, result.Answers + result.Late));
    figures.PerSecond.push_back(static_cast<double>(result.Answers) * 1e9 / elapsed);
    figures.NsPerAnswer.push_back(used / served);
    figures.Busy.push_back(used / elapsed);
    figures.Total.Answers += result.Answers;
    figures.Total.Lost += result.Lost;
    figures.Total.Late += result.Late;
    figures.Total.Wrong += result.Wrong;
  }

 private:
  ServerProcess Process_;
  LoadGenerator Load_;
};

using Contenders = std::vector<std::unique_ptr<Contender>>;

/// Writes the settings of a chronyd that serves its own clock and touches nothing.
std::string WriteChronydConfig(const std::string &directory, std::uint16_t port) {
  const std::string path = directory + "/chronyd.conf";
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

/// Our server comes first: the others are compared with it.
Contenders StartAll(const std::string &directory) {
  Contenders all;
  all.push_back(std::make_unique<Contender>(
      "cvlserver", std::vector<std::string>{OwnDirectory() + "/bench_server"}, OurPort,
      EchoAt::Originate));
  all.push_back(std::make_unique<Contender>(
      "bare echo",
      std::vector<std::string>{OwnDirectory() + "/echo_server", std::to_string(EchoPort)}, EchoPort,
      EchoAt::Transmit));
  const std::string chronyd = FindChronyd();
  if (chronyd.empty()) {
    std::puts("chronyd isn't installed and is left out");
  } else {
    all.push_back(std::make_unique<Contender>(
        "chronyd -x",
        std::vector<std::string>{chronyd, "-x", "-u", "root", "-d", "-f",
                                 WriteChronydConfig(directory, ChronydPort)},
        ChronydPort, EchoAt::Originate));
  }
  return all;
}

/// The median of what the rounds gave, ours divided by another's in the same round.
double RatioOf(const std::vector<double> &ours, const std::vector<double> &other) {
  std::vector<double> ratios;
  for (std::size_t round = 0; round < ours.size(); ++round) {
    ratios.push_back(ours[round] / other[round]);
  }
  return MedianOf(std::move(ratios));
}

void Print(std::size_t depth, const Contenders &contenders, const std::vector<Figures> &figures) {
  std::printf("\n%zu requests outstanding\n", depth);
  std::printf("  %-12s %12s %12s %7s %10s %8s %8s %7s\n", "server", "answers/s", "ns/answer",
              "busy", "answers", "lost", "late", "wrong");
  for (std::size_t at = 0; at < contenders.size(); ++at) {
    const Figures &of = figures[at];
    std::printf("  %-12s %12.0f %12.0f %6.0f%% %10lld %8lld %8lld %7lld\n",
                contenders[at]->Name.c_str(), MedianOf(of.PerSecond), MedianOf(of.NsPerAnswer),
                100 * MedianOf(of.Busy), static_cast<long long>(of.Total.Answers),
                static_cast<long long>(of.Total.Lost), static_cast<long long>(of.Total.Late),
                static_cast<long long>(of.Total.Wrong));
  }
  for (std::size_t at = 1; at < contenders.size(); ++at) {
    std::printf("  cvlserver / %-10s answers/s %.2f, processor time per answer %.2f\n",
                contenders[at]->Name.c_str(), RatioOf(figures[0].PerSecond, figures[at].PerSecond),
                RatioOf(figures[0].NsPerAnswer, figures[at].NsPerAnswer));
  }
}

int Measure(int rounds) {
  const ScratchHome scratch("127.0.0.1", std::to_string(OurPort));
  StayOnCore(LoadCore);
  const Contenders contenders = StartAll(scratch.Directory());
  for (const auto &contender : contenders) {
    if (contender->WaitUntilReady()) continue;
    std::fprintf(stderr, "ntp_load_bench: no answer from %s\n", contender->Name.c_str());
    return EXIT_FAILURE;
  }
  for (const std::size_t depth : Depths) {
    std::vector<Figures> figures(contenders.size());
    for (int round = 0; round < rounds; ++round) {
      for (std::size_t at = 0; at < contenders.size(); ++at) {
        contenders[at]->Round(depth, figures[at]);
      }
    }
    Print(depth, contenders, figures);
  }
  return EXIT_SUCCESS;
}

}  // namespace

int main(int count, char **arguments) {
  try {
    EnterOwnNetwork(arguments);
    const int asked = count > 1 ? std::atoi(arguments[1]) : UsualRounds;
    return Measure(std::clamp(asked, 1, MostRounds));
  } catch (const std::exception &error) {
    std::fprintf(stderr, "ntp_load_bench: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
