// The server for the load benchmarks: composed as in the program, with its gate open, and its
// log on if the argument is "log". The benchmark has made its program directory.
//
// It runs in the benchmark's own network alone, where the kernel refuses to set the clock
// and nobody listens on port 123: the sync request goes into the void.

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "bench/own_network.h"
#include "bench/scratch_home.h"
#include "host/cvl_server.h"
#include "platform/platform.h"

int main(int count, char **arguments) {
  if (!cvl::bench::IsInOwnNetwork()) {
    std::fputs("bench_server: to be started by a benchmark\n", stderr);
    return EXIT_FAILURE;
  }
  cvl::NativePlatform native;
  cvl::CVL_Server server(native.Interfaces(), "");
  cvl::bench::AvoidEndOfSecond();
  if (server.Load() != cvl::Loaded::Running) return EXIT_FAILURE;
  // As after the first answer of an upstream.
  server.State.Flags.TimeSynced = true;
  server.State.Sync.SyncWaiting = false;
  server.State.Flags.EnableLogging = count > 1 && std::string_view(arguments[1]) == "log";
  native.Interfaces().Loop.Run();
  return EXIT_SUCCESS;
}
