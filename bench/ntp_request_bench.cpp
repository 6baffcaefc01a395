// What one NTP request costs inside the process: from the datagram's arrival at the
// handler of UDP123 to the reply handed to the network, with the machine's own clock, the
// log off and no system call. Beside it, in the same run, the floor that no change can go
// below: the five bare readings of the clock and the copy of 48 bytes.

#include <benchmark/benchmark.h>
#include <time.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "bench/idle_platform.h"
#include "bench/scratch_home.h"
#include "host/cvl_server.h"
#include "platform/platform.h"

namespace {

using cvl::bench::IdleLoop;
using cvl::bench::IdleNetwork;

constexpr std::uint16_t NtpPort = 123;
constexpr cvl::Ipv4Address Client = 0x7F000001;

/// The server on an idle network, synchronised, with its log off.
class IdleServer {
 public:
  IdleServer() : Server_(OnIdleNetwork(), "") {
    cvl::bench::AvoidEndOfSecond();
    Server_.Load();
    cvl::RunFlags &flags = Server_.State.Flags;
    flags.TimeSynced = true;
    flags.EnableLogging = false;
    Server_.State.Sync.SyncWaiting = false;
    Request_[0] = 0x23;  // version 4, a client
    Request_[40] = 0xE7;
    Network_.Arriving = {{Client, 40000}, Client, Request_};
  }

  /// One request, from its arrival to its reply.
  void Answer() { Loop_.HandlerOf(IdleNetwork::DatagramHandle(NtpPort)).OnReady({.Read = true}); }

  const IdleNetwork &Network() const { return Network_; }

 private:
  cvl::Platform OnIdleNetwork() {
    const cvl::Platform native = Native_.Interfaces();
    return {.MachineClock = native.MachineClock,
            .Loop = Loop_,
            .Sockets = Network_,
            .Names = native.Names,
            .ProgramFiles = native.ProgramFiles,
            .Machine = native.Machine,
            .CVLService = native.CVLService,
            .Tray = native.Tray,
            .Screen = native.Screen,
            .Store = native.Store,
            .Boxes = native.Boxes,
            .Programs = native.Programs};
  }

  std::array<std::uint8_t, 48> Request_{};
  cvl::bench::ScratchHome Home_{"127.0.0.1", "123"};
  cvl::NativePlatform Native_;
  IdleLoop Loop_;
  IdleNetwork Network_;
  cvl::CVL_Server Server_;
};

void NtpRequest(benchmark::State &state) {
  IdleServer server;
  cvl::bench::AvoidEndOfSecond();
  server.Answer();
  if (server.Network().LastSent[0] != 0x24) {
    state.SkipWithError("no reply");
    return;
  }
  for ([[maybe_unused]] auto _ : state) {
    server.Answer();
  }
}

void FiveClockReadings(benchmark::State &state) {
  timespec now{};
  for ([[maybe_unused]] auto _ : state) {
    for (int reading = 0; reading < 5; ++reading) {
      clock_gettime(CLOCK_REALTIME, &now);
      benchmark::DoNotOptimize(now);
    }
  }
}

void CopyOf48Bytes(benchmark::State &state) {
  std::array<std::uint8_t, 48> from{};
  std::array<std::uint8_t, 48> to{};
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(from);
    std::memcpy(to.data(), from.data(), to.size());
    benchmark::DoNotOptimize(to);
  }
}

constexpr int Repetitions = 9;
BENCHMARK(FiveClockReadings)->Repetitions(Repetitions)->ReportAggregatesOnly();
BENCHMARK(CopyOf48Bytes)->Repetitions(Repetitions)->ReportAggregatesOnly();
BENCHMARK(NtpRequest)->Repetitions(Repetitions)->ReportAggregatesOnly();

/// Shows what the console shows and keeps the medians.
class MedianKeeper : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run> &runs) override {
    for (const Run &run : runs) {
      if (run.aggregate_name == "median")
        Medians[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }
    ConsoleReporter::ReportRuns(runs);
  }

  std::map<std::string, double> Medians;
};

}  // namespace

int main(int count, char **arguments) {
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
  MedianKeeper medians;
  benchmark::RunSpecifiedBenchmarks(&medians);
  const double request = medians.Medians["NtpRequest"];
  const double floor = medians.Medians["FiveClockReadings"] + medians.Medians["CopyOf48Bytes"];
  if (request <= 0 || floor <= 0) return 1;
  std::printf("\none request %.1f ns, floor %.1f ns, ratio %.2f\n", request, floor,
              request / floor);
  return 0;
}
