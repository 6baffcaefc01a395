// The datagram path of port 123: whatever arrives, in whichever state of the exchange, there
// is at most one answer, of 48 bytes, to its sender, and nothing breaks.
//
// An input is a row of datagrams: a byte of circumstances, two of length, the bytes.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "host/cvl_server.h"
#include "tests/support/test_platform.h"

namespace {

constexpr std::uint16_t Port = 123;

void Require(bool holds) {
  if (!holds) std::abort();
}

/// Whether REPLY carries the field of REQUEST that a client knows its own answer by.
bool Echoes(const cvl::Bytes &reply, std::span<const std::uint8_t> request) {
  const std::size_t field = request[24] == 0 ? 40 : 24;
  return std::equal(reply.begin() + 24, reply.begin() + 32,
                    request.begin() + static_cast<std::ptrdiff_t>(field));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  cvl::TestPlatform platform;
  platform.Files.Contents["/program/QRB_CVLS4.CVL"] = "h\nh\nh\nh\nh\n10.0.0.1:::A NA:::2:::\n";
  cvl::CVL_Server server(platform.Interfaces(), "");
  server.Load();
  server.Window.eUDP123.SetValue(cvl::Tick::On);
  platform.Loop.Drain();

  std::span<const std::uint8_t> rest(data, size);
  for (std::uint16_t client = 2000; rest.size() >= 3; ++client) {
    const std::uint8_t circumstances = rest[0];
    const std::size_t length = std::min(rest[1] * std::size_t{256} + rest[2], rest.size() - 3);
    const std::span<const std::uint8_t> datagram = rest.subspan(3, length);
    rest = rest.subspan(3 + length);

    server.State.Sync.SyncWaiting = (circumstances & 1) != 0;
    server.State.Flags.TimeSynced = (circumstances & 2) != 0;
    server.State.Flags.ServicePaused = (circumstances & 12) == 12;
    platform.Clock.UtcMs += circumstances * 61;
    const bool synced = server.State.Flags.TimeSynced;

    const std::size_t sent = platform.Net.Sent.size();
    Require(platform.Net.Arrive(Port, {0x0A000007, client}, datagram));
    platform.Loop.Drain();
    Require(platform.Net.Sent.size() <= sent + 1);
    if (platform.Net.Sent.size() == sent) continue;
    const auto &answer = platform.Net.Sent.back();
    Require(synced && datagram.size() == 48 && answer.Data.size() == 48);
    Require(answer.To == cvl::Endpoint{0x0A000007, client});
    Require(Echoes(answer.Data, datagram));
  }
  server.Unload(cvl::UnloadMode::FromCode);
  return 0;
}
