#include "services/client_protocol.h"

#include <algorithm>
#include <string>

#include "base/failure_modes.h"
#include "base/version.h"

namespace cvl {

namespace {

constexpr std::size_t VersionDigit = 4;
constexpr std::size_t Zone = 5;
constexpr std::size_t ClientData = 8;
constexpr std::size_t Seconds = 16;
constexpr std::size_t Fraction = 20;

constexpr std::int32_t MessageBytes = ClientMessageLength;

/// The byte at an index that may lie outside.
std::uint8_t ByteAt(std::span<const std::uint8_t> bytes, std::size_t index) {
  if (index >= bytes.size()) throw RuntimeError(error_number::SubscriptOutOfRange);
  return bytes[index];
}

void Put(ClientMessage &message, std::size_t offset, std::string_view text) {
  std::copy(text.begin(), text.end(), message.begin() + static_cast<std::ptrdiff_t>(offset));
}

/// What both replies begin with.
void PutHead(ClientMessage &message) {
  Put(message, 0, "CVLS");
  Put(message, VersionDigit, std::string_view(VersionText).substr(0, 1));
}

/// Four bytes from OFFSET on as an unsigned number.
double NumberAt(std::span<const std::uint8_t> message, std::size_t offset) {
  double number = 0;
  for (std::size_t at = 0; at < 4; ++at) {
    number = number * 256 + ByteAt(message, offset + at);
  }
  return number;
}

/// The request's code as text, empty where the request doesn't reach so far.
std::string_view CodeOf(std::span<const std::uint8_t> request) {
  if (request.size() <= VersionDigit) return {};
  return {reinterpret_cast<const char *>(&request[VersionDigit]), 1};
}

}  // namespace

bool IsClientRequest(std::span<const std::uint8_t> request) {
  return ByteAt(request, 0) == 'C' && ByteAt(request, 1) == 'V' && ByteAt(request, 3) != 'L';
}

ClientMessage TcpClientReply(std::span<const std::uint8_t> request,
                             const std::optional<NtpTimestamp> &stamp) {
  ClientMessage reply{};
  PutHead(reply);
  Put(reply, Zone, "UTC");
  for (std::size_t at = ClientData; at < std::min(Seconds, request.size()); ++at) {
    reply[at] = request[at];
  }
  if (stamp) {
    std::copy_n(stamp->begin(), 4, reply.begin() + Seconds);
    std::reverse_copy(stamp->begin() + 4, stamp->end(), reply.begin() + Fraction);
  }
  return reply;
}

void MakeUdpClientReply(ClientMessage &request, const std::optional<NtpTimestamp> &stamp) {
  PutHead(request);
  if (stamp) std::copy(stamp->begin(), stamp->end(), request.begin() + Seconds);
}

ClientProtocol::ClientProtocol(const ServiceContext &context) : Context_(context) {
  Context_.Sockets.UDP3777.OnDataArrival = [this](std::int32_t bytes_total) {
    OnUdpArrival(bytes_total);
  };
  TcpEvents &events = Context_.Sockets.TCP3777.Events;
  events.ConnectionRequest = [this](std::int16_t, RequestId request) { OnTcpRequest(request); };
  events.DataArrival = [this](std::int16_t index, std::int32_t bytes_total) {
    OnTcpArrival(index, bytes_total);
  };
  events.Error = [this](std::int16_t index, const Failure &) {
    Context_.Sockets.TCP3777[index].Close();
  };
  // Nothing closes the slot of a client that ends its connection, and such a slot is not
  // used again.
}

void ClientProtocol::OnTcpRequest(RequestId request) {
  SlotArray &slots = Context_.Sockets.TCP3777;
  const std::int16_t slot = Context_.TakeConnection(
      slots, panel::Client, Context_.State.Requests.ReqTCP3777,
      [this] { return Context_.Sockets.InitTCP3777(); }, request);
  // Nothing is answered yet: the client has 24 bytes to send first.
  if (slot != 0) Context_.ShowClientNow(panel::Client, slots[slot].Peer());
}

void ClientProtocol::OnTcpArrival(std::int16_t index, std::int32_t bytes_total) {
  SlotArray &slots = Context_.Sockets.TCP3777;
  ContinueOnFailure mode;
  TcpSocket &slot = slots[index];
  ClientMessage buffer{};
  std::span<const std::uint8_t> request;
  mode.Step([&] { request = std::span(buffer).first(slot.GetData(buffer)); });
  // A request of a wrong length loses its connection, but is judged all the same: with a
  // good head it is logged, and its reply fails on the closed slot.
  if (mode.Number() != 0 || bytes_total != MessageBytes) slot.Close();
  std::optional<NtpTimestamp> stamp;
  mode.Step([&] { stamp = Context_.Time.GrabCVLST(); });
  bool is_request = false;
  mode.Step([&] { is_request = IsClientRequest(request); });
  if (!is_request) return;
  mode.Step([&] { slot.SendData(TcpClientReply(request, stamp)); });
  if (Context_.State.Flags.EnableLogging) {
    Log(Joined({"CVLSC", CodeOf(request)}), slot.Peer(), slots[0], "TCP", bytes_total);
  }
  Context_.Lamp.DataOut();
  mode.Step([&] { Context_.Texts.StatusUp(); });
}

void ClientProtocol::OnUdpArrival(std::int32_t bytes_total) {
  // There is no look at TimeSynced: this service alone answers before the first sync. Nor
  // does it count its requests; ReqUDP3777 stays 0.
  if (Context_.State.Flags.ServicePaused) return;
  UdpSocket &socket = Context_.Sockets.UDP3777;
  ContinueOnFailure mode;
  ClientMessage message{};
  const bool is_read = mode.Step([&] { socket.GetData(message); });
  Context_.Lamp.DataIn();
  Context_.Lamp.UDPIn();
  if (!is_read || bytes_total != MessageBytes) return;
  const PeerAddress client = socket.Peer();
  std::optional<NtpTimestamp> stamp;
  mode.Step([&] { stamp = Context_.Time.GrabCVLST(); });
  Context_.ShowClient(panel::Client, client);
  if (!IsClientRequest(message)) return;
  const std::string code(CodeOf(message));
  MakeUdpClientReply(message, stamp);
  socket.SetRemoteHost(client);
  if (!mode.Step([&] { socket.SendData(message); })) return;
  if (Context_.State.Flags.EnableLogging) {
    Log(Joined({"CVLSP", code}), client, socket, "UDP", bytes_total);
  }
  Context_.Lamp.DataOut();
  mode.Step([&] { Context_.Texts.StatusUp(); });
}

void ClientProtocol::Log(std::string_view bytes_d, PeerAddress client, const Socket &local,
                         std::string_view transport, std::int32_t bytes_total) {
  Context_.Log.CVLWLOG(bytes_d, client, local.LocalPort(), MessageBytes, "CVL Server Client",
                       transport, bytes_total);
}

double ClientProtocol::GetCVLSM(std::int16_t offset) {
  // A negative offset becomes one far beyond the message.
  const auto at = static_cast<std::size_t>(offset);
  const double seconds = NumberAt(ServerMessage, at);
  const double fraction = NumberAt(ServerMessage, at + 4);
  const double since_epoch = (seconds * 1000 + fraction * 1000 / 4294967296.0) / 1000;
  return since_epoch - Context_.Time.GrabBias();
}

}  // namespace cvl
