// What a line of the request log costs beside its floor: the same bytes written with the same
// three system calls, and five readings of the clock. Then what a line costs that can't be
// written, since its directory is missing and can't be made.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "bench/median_keeper.h"
#include "bench/scratch_home.h"
#include "controls/text_box.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_files.h"
#include "status/request_log.h"

namespace {

constexpr cvl::Ipv4Address Client = 0x7F000001;
constexpr int LogReadings = 5;

/// A log in DIRECTORY, or in the scratch directory.
class Log {
 public:
  explicit Log(const char *directory = nullptr) {
    if (directory != nullptr) setenv("CHRONVALE_HOME", directory, 1);
    Files_ = std::make_unique<cvl::LinuxFiles>();
    State_.Flags.EnableLogging = true;
    State_.Start = {"5.1.1", "10/3/2002 9:00:00 AM", "hostname", "127.0.0.1", "root"};
    Log_ = std::make_unique<cvl::RequestLog>(State_, Time_, *Files_);
  }

  void WriteLine() { Log_->CVLWLOG("48 Bytes NTP...", Client, 123, 48, "NTPv4", "UDP", 0); }

  /// The one file that it has written.
  std::string Path() const {
    for (const auto &file :
         std::filesystem::directory_iterator(Files_->InProgramDirectory("Logs"))) {
      return file.path();
    }
    return {};
  }

 private:
  cvl::RunState State_;
  cvl::TextBox SvrCurrent_;
  cvl::LinuxClock Clock_;
  cvl::TimeEngine Time_{Clock_, State_.Dates, State_.Zone, SvrCurrent_};
  std::unique_ptr<cvl::LinuxFiles> Files_;
  std::unique_ptr<cvl::RequestLog> Log_;
};

void LogLine(benchmark::State &state) {
  const cvl::bench::ScratchHome home("127.0.0.1", "123");
  Log log;
  for ([[maybe_unused]] auto _ : state) {
    log.WriteLine();
  }
}

void LogLineThatFails(benchmark::State &state) {
  Log log("/nowhere");
  for ([[maybe_unused]] auto _ : state) {
    log.WriteLine();
  }
}

void ThreeCallsAndFiveReadings(benchmark::State &state) {
  const cvl::bench::ScratchHome home("127.0.0.1", "123");
  Log log;
  log.WriteLine();
  const std::string path = log.Path();
  const std::string line(105, 'x');
  timespec now{};
  for ([[maybe_unused]] auto _ : state) {
    for (int reading = 0; reading < LogReadings; ++reading) {
      clock_gettime(CLOCK_REALTIME, &now);
      benchmark::DoNotOptimize(now);
    }
    const int file = open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (file < 0 || write(file, line.data(), line.size()) < 0 || close(file) != 0) {
      state.SkipWithError("no file");
      return;
    }
  }
}

BENCHMARK(ThreeCallsAndFiveReadings)->Repetitions(cvl::bench::Repetitions)->ReportAggregatesOnly();
BENCHMARK(LogLine)->Repetitions(cvl::bench::Repetitions)->ReportAggregatesOnly();
BENCHMARK(LogLineThatFails)->Repetitions(cvl::bench::Repetitions)->ReportAggregatesOnly();

}  // namespace

int main(int count, char **arguments) {
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
  cvl::bench::MedianKeeper medians;
  benchmark::RunSpecifiedBenchmarks(&medians);
  const double line = medians["LogLine"];
  const double floor = medians["ThreeCallsAndFiveReadings"];
  const double failed = medians["LogLineThatFails"];
  if (line <= 0 || floor <= 0 || failed <= 0) return 1;
  std::printf("\na line %.0f ns, its calls and readings %.0f ns, the rest %.0f ns\n", line, floor,
              line - floor);
  std::printf("a line that fails %.2f of a written one\n", failed / line);
  return 0;
}
