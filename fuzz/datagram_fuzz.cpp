// The datagram path of port 123: whatever arrives, in whichever state of the exchange, there
// is at most one answer, of 48 bytes, to its sender, and nothing breaks.
//
// An input is a row of datagrams: a byte of circumstances, two of length, the bytes.

#include <algorithm>
#include <cstdint>
#include <span>

#include "fuzz/server_parts.h"
#include "services/ntp_service.h"
#include "sync/sync_exchange.h"

namespace {

constexpr std::uint16_t Port = 123;
/// Most datagrams of a run, more than the exchange has states.
constexpr int MostDatagrams = 3;

using cvl::fuzz::Require;

/// Whether REPLY carries the field of REQUEST that a client knows its own answer by.
bool Echoes(const cvl::Bytes &reply, std::span<const std::uint8_t> request) {
  const std::size_t field = request[24] == 0 ? 40 : 24;
  return std::equal(reply.begin() + 24, reply.begin() + 32,
                    request.begin() + static_cast<std::ptrdiff_t>(field));
}

/// A server that has asked its upstream and waits for the reply.
struct Run : cvl::fuzz::Parts {
  Run() {
    ReadServerFile();
    Sockets.UDP123.SetLocalPort(Port);
    Sockets.UDP123.Bind();
    Keep();
  }

  /// What an earlier run left of the exchange goes with the request.
  void Begin() {
    Reset();
    Exchange.SyncTimeNow();
    Loop.Drain();
    Require(Net.Sent.size() == 1 && State.Sync.SyncWaiting);
  }

  /// A datagram in the circumstances of its first byte: a request is out, the first sync has
  /// been, the service is paused, some time has passed.
  void Take(std::uint8_t circumstances, cvl::Endpoint client,
            std::span<const std::uint8_t> datagram) {
    State.Sync.SyncWaiting = (circumstances & 1) != 0;
    State.Flags.TimeSynced = (circumstances & 2) != 0;
    State.Flags.ServicePaused = (circumstances & 12) == 12;
    Clock.UtcMs += circumstances * 61;
    const bool synced = State.Flags.TimeSynced;

    Net.Sent.clear();
    Require(Net.Arrive(Port, client, datagram));
    Loop.Drain();
    Require(Net.Sent.size() <= 1);
    if (Net.Sent.empty()) return;
    const auto &answer = Net.Sent.back();
    Require(synced && datagram.size() == 48 && answer.Data.size() == 48);
    Require(answer.To == client);
    Require(Echoes(answer.Data, datagram));
  }

  cvl::SyncExchange Exchange{
      {State, Window, Clock, Time, Servers, Draw, Schedule, Texts, Sockets.UDP123, Layer}};
  cvl::NtpService Service{Context, Exchange};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  Run &run = cvl::fuzz::SharedRun<Run>();
  std::span<const std::uint8_t> rest(data, size);
  for (std::uint16_t client = 2000; client < 2000 + MostDatagrams && rest.size() >= 3; ++client) {
    const std::size_t length = std::min(rest[1] * std::size_t{256} + rest[2], rest.size() - 3);
    run.Take(rest[0], {0x0A000007, client}, rest.subspan(3, length));
    rest = rest.subspan(3 + length);
  }
  return 0;
}
