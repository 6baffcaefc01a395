// What one NTP request costs inside the process: from the datagram's arrival at the
// handler of UDP123 to the reply handed to the network, with the machine's own clock, the
// log off and no system call. In the same run, the floor: as many bare readings of the clock as
// the request makes. The readings are counted, with the log off and on.

#include <benchmark/benchmark.h>
#include <time.h>

#include <array>
#include <cstdio>

#include "bench/counting_clock.h"
#include "bench/idle_platform.h"
#include "bench/median_keeper.h"
#include "bench/scratch_home.h"
#include "host/cvl_server.h"
#include "platform/platform.h"

namespace {

using cvl::bench::IdleLoop;
using cvl::bench::IdleNetwork;

constexpr std::uint16_t NtpPort = 123;
constexpr cvl::Ipv4Address Client = 0x7F000001;

enum class Count { No, Yes };

/// The server on an idle network, synchronised, with its log off.
class IdleServer {
 public:
  /// With COUNT the readings of its clock are counted, which costs time.
  explicit IdleServer(Count count)
      : Clock_(Native_.Interfaces().MachineClock), Server_(OnIdleNetwork(count), "") {
    cvl::bench::AvoidEndOfSecond();
    Server_.Load();
    cvl::RunFlags &flags = Server_.State.Flags;
    flags.TimeSynced = true;
    flags.EnableLogging = false;
    Server_.State.Sync.SyncWaiting = false;
    Request_[0] = 0x23;  // version 4, a client
    Request_[40] = 0xE7;
    Network_.Arriving = {{Client, 40000}, Client, Request_};
    Handler_ = &Loop_.HandlerOf(IdleNetwork::DatagramHandle(NtpPort));
  }

  /// One request, from its arrival to its reply.
  void Answer() { Handler_->OnReady({.Read = true}); }

  const IdleNetwork &Network() const { return Network_; }

  /// How often one request reads the clock.
  int CountReadings(bool with_log) {
    Server_.State.Flags.EnableLogging = with_log;
    cvl::bench::AvoidEndOfSecond();
    Answer();  // the day's file is there from here on
    Clock_.Readings = 0;
    Answer();
    return Clock_.Readings;
  }

 private:
  cvl::Platform OnIdleNetwork(Count count) {
    const cvl::Platform native = Native_.Interfaces();
    return {.MachineClock = count == Count::Yes ? Clock_ : native.MachineClock,
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
  cvl::bench::CountingClock Clock_;
  IdleLoop Loop_;
  IdleNetwork Network_;
  cvl::CVL_Server Server_;
  cvl::ReadyHandler *Handler_ = nullptr;
};

void NtpRequest(benchmark::State &state) {
  IdleServer server(Count::No);
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

void ClockReading(benchmark::State &state) {
  timespec now{};
  for ([[maybe_unused]] auto _ : state) {
    clock_gettime(CLOCK_REALTIME, &now);
    benchmark::DoNotOptimize(now);
  }
}

BENCHMARK(ClockReading)->Repetitions(cvl::bench::Repetitions)->ReportAggregatesOnly();
BENCHMARK(NtpRequest)->Repetitions(cvl::bench::Repetitions)->ReportAggregatesOnly();

}  // namespace

int main(int count, char **arguments) {
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
  cvl::bench::MedianKeeper medians;
  benchmark::RunSpecifiedBenchmarks(&medians);
  const double request = medians["NtpRequest"];
  const double reading = medians["ClockReading"];
  if (request <= 0 || reading <= 0) return 1;
  IdleServer server(Count::Yes);
  const int readings = server.CountReadings(false);
  std::printf("\nreadings of the clock for a request: %d, with the log %d\n", readings,
              server.CountReadings(true));
  std::printf("one request %.1f ns, its readings %.1f ns, ratio %.2f\n", request,
              readings * reading, request / (readings * reading));
  return 0;
}
