// Port 3777: whatever arrives over either transport, there is one reply of 24 bytes to a
// request and none to anything else, and a connection stays open for 24 bytes alone.
//
// An input is a row of messages: a byte of circumstances, one of length, the bytes. Each is
// sent as a datagram and on a connection of its own.

#include <algorithm>
#include <cstdint>
#include <new>
#include <span>
#include <string_view>

#include "fuzz/server_parts.h"
#include "net/socket_layer.h"
#include "services/client_protocol.h"

/// Before a connection is taken, the socket layer allocates and frees the memory that it keeps back
/// from connections, and never touches it. The sanitizer's allocator maps and unmaps pages for a
/// block of that size, which takes longer than the rest of a run.
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
  const bool is_kept_back = size == cvl::SocketLayer::MemoryKeptBack;
  try {
    return ::operator new(is_kept_back ? 1 : size);
  } catch (const std::bad_alloc &) {
    return nullptr;
  }
}

namespace {

constexpr std::uint16_t Port = 3777;
/// Most messages of a run: one, and one that finds the state that the first left.
constexpr int MostMessages = 2;
constexpr cvl::Ipv4Address Client = 0x0A000007;

using cvl::fuzz::Require;

bool IsRequest(std::span<const std::uint8_t> message) {
  return message.size() == 24 && message[0] == 'C' && message[1] == 'V' && message[3] != 'L';
}

/// Whether REPLY begins with HEAD and has the client's own bytes from HEAD's end to byte 15,
/// at the least those from byte 8 on.
bool IsReply(std::span<const std::uint8_t> reply, std::string_view head,
             std::span<const std::uint8_t> request) {
  const auto end_of_head = static_cast<std::ptrdiff_t>(head.size());
  return reply.size() == 24 && std::equal(head.begin(), head.end(), reply.begin()) &&
         std::equal(reply.begin() + end_of_head, reply.begin() + 16, request.begin() + end_of_head);
}

class Run {
 public:
  Run() {
    Parts_.State.Flags.TimeSynced = true;
    Parts_.Sockets.TCP3777[0].SetLocalPort(Port);
    Parts_.Sockets.TCP3777[0].Listen();
    Parts_.Sockets.UDP3777.SetLocalPort(Port);
    Parts_.Sockets.UDP3777.Bind();
    Parts_.Keep();
  }

  /// Closes every slot and connection of an earlier run.
  void Begin() {
    Parts_.Reset();
    ClientPort_ = 2000;
    cvl::SlotArray &slots = Parts_.Sockets.TCP3777;
    for (std::int16_t slot = 1; slot <= slots.Highest(); ++slot) {
      slots[slot].Close();
    }
    Parts_.DropConnections();
  }

  /// Moves the clock, also into millisecond 999, and turns the log on and off.
  void Arrange(std::uint8_t circumstances) {
    Parts_.Clock.UtcMs += circumstances * std::int64_t{61};
    Parts_.State.Flags.EnableLogging = (circumstances & 1) != 0;
  }

  void SendDatagram(std::span<const std::uint8_t> message) {
    const cvl::Endpoint client{Client, ++ClientPort_};
    Parts_.Net.Sent.clear();
    Require(Parts_.Net.Arrive(Port, client, message));
    Parts_.Loop.Drain();
    Require(Parts_.Net.Sent.size() == (IsRequest(message) ? 1 : 0));
    for (const auto &answer : Parts_.Net.Sent) {
      Require(answer.To == client && IsReply(answer.Data, "CVLS5", message));
    }
  }

  void SendOnConnection(std::span<const std::uint8_t> message) {
    cvl::FakeConnection &client = Parts_.Net.Dial(Port, {Client, ++ClientPort_});
    Parts_.Loop.Drain();
    Require(client.IsAccepted);
    if (!message.empty()) client.Send(message);
    Parts_.Loop.Drain();
    Require(client.HasEnded == (!message.empty() && message.size() != 24));
    if (IsRequest(message)) {
      Require(IsReply(client.Received, "CVLS5UTC", message));
    } else {
      Require(client.Received.empty());
    }
    client.End();
    Parts_.Loop.Drain();
  }

 private:
  cvl::fuzz::Parts Parts_;
  cvl::ClientProtocol Protocol_{Parts_.Context};
  std::uint16_t ClientPort_ = 2000;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  Run &run = cvl::fuzz::SharedRun<Run>();
  std::span<const std::uint8_t> rest(data, size);
  for (int messages = 0; messages < MostMessages && rest.size() >= 2; ++messages) {
    const std::size_t length = std::min<std::size_t>(rest[1], rest.size() - 2);
    const std::span<const std::uint8_t> message = rest.subspan(2, length);
    run.Arrange(rest[0]);
    run.SendDatagram(message);
    run.SendOnConnection(message);
    rest = rest.subspan(2 + length);
  }
  return 0;
}
