// How many NTP requests a second the server on a port of 127.0.0.1 answers.
//
//   ntp_rate PORT DEPTH MILLISECONDS
//
// Keeps DEPTH requests outstanding and prints the answers and the nanoseconds that they took.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "bench/load_generator.h"

int main(int count, char **arguments) {
  if (count != 4) {
    std::fputs("usage: ntp_rate PORT DEPTH MILLISECONDS\n", stderr);
    return 2;
  }
  try {
    const auto port = static_cast<std::uint16_t>(std::stoi(arguments[1]));
    const auto depth = static_cast<std::size_t>(std::stoi(arguments[2]));
    const std::int64_t span_ns = std::stoll(arguments[3]) * 1000000;
    cvl::bench::LoadGenerator load(port, cvl::bench::EchoAt::Originate);
    const cvl::bench::LoadResult result = load.Run(depth, INT64_MAX, span_ns);
    std::printf("%lld %lld\n", static_cast<long long>(result.Answers),
                static_cast<long long>(result.ElapsedNs));
  } catch (const std::exception &error) {
    std::fprintf(stderr, "ntp_rate: %s\n", error.what());
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
