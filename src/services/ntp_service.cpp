#include "services/ntp_service.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string>

#include "base/failure_modes.h"
#include "base/numbers.h"

namespace cvl {

namespace {

// Fixed fields of every reply (RFC 5905, section 7.3). Intentional: they don't follow the
// machine or its upstream, for compatibility with existing clients.
constexpr std::uint8_t Stratum = 2;
constexpr std::uint8_t Poll = 4;
constexpr std::uint8_t Precision = 0xEF;  // 2^-17 s
constexpr std::array<std::uint8_t, 4> RootDelay = {0x00, 0x00, 0x00, 0x4F};
constexpr std::array<std::uint8_t, 4> RootDispersion = {0x00, 0x00, 0x02, 0xA1};

constexpr std::size_t Originate = 24;
constexpr std::size_t Receive = 32;
constexpr std::size_t Transmit = 40;
constexpr std::size_t TimestampLength = 8;

/// Copies a field of fixed SIZE into PACKET.
template <std::size_t Size>
void Put(NtpPacket &packet, std::size_t offset, std::span<const std::uint8_t, Size> field) {
  std::memcpy(&packet[offset], field.data(), Size);
}

/// The part of PACKET that a message of BYTES_TOTAL fills.
std::span<std::uint8_t> Room(NtpPacket &packet, std::int32_t bytes_total) {
  return std::span(packet).first(std::min(packet.size(), static_cast<std::size_t>(bytes_total)));
}

}  // namespace

NtpService::NtpService(const ServiceContext &context, SyncExchange &exchange)
    : Context_(context), Exchange_(exchange) {
  Context_.Sockets.UDP123.OnAnswersSent = [this] {
    ContinueOnFailure mode;
    mode.Step([this] { Context_.Texts.StatusUp(); });
  };
  Context_.Sockets.UDP123.OnDataArrival = [this](std::int32_t bytes_total) {
    OnUdpArrival(bytes_total);
  };
  Context_.Sockets.UDP123.IsAwaitedReply = [this](std::span<const std::uint8_t> datagram) {
    return Exchange_.IsReply(datagram);
  };
  TcpEvents &events = Context_.Sockets.TCP123.Events;
  events.ConnectionRequest = [this](std::int16_t, RequestId request) { OnTcpRequest(request); };
  events.DataArrival = [this](std::int16_t index, std::int32_t bytes_total) {
    OnTcpArrival(index, bytes_total);
  };
  events.SendComplete = [this](std::int16_t index) { Context_.Sockets.TCP123[index].Close(); };
  // Nothing closes the slot of a client that goes away before it has asked, and such a slot
  // is not used again.
}

void NtpService::OnUdpArrival(std::int32_t bytes_total) {
  RunState &state = Context_.State;
  UdpSocket &socket = Context_.Sockets.UDP123;
  if (state.Flags.ServicePaused) return;
  state.Requests.ReqUDP123 = AddLong(state.Requests.ReqUDP123, 1);
  Context_.Lamp.UDPIn();
  ContinueOnFailure mode;
  NtpPacket request{};
  mode.Step([&] { socket.GetData(Room(request, bytes_total)); });
  if (mode.Number() != 0 || bytes_total != static_cast<std::int32_t>(NtpLength)) {
    if (state.Sync.SyncWaiting && bytes_total == 1) {
      Exchange_.TakeRefusal();
    } else if (state.Flags.EnableLogging) {
      LogRefused(socket.Peer(), socket, "UDP", bytes_total);
    }
    return;
  }
  if (Exchange_.IsReply(request)) {
    Exchange_.TakeReply(request);
    return;
  }
  Context_.Lamp.DataIn();
  std::optional<NtpTimestamp> tor_ntp;
  mode.Step([&] { tor_ntp = Context_.Time.GrabTime(); });
  // Intentional: the box shows the last peer of the Daytime socket.
  Context_.ShowClient(panel::Ntp, Context_.Sockets.UDP13.Peer());
  const PeerAddress client = socket.Peer();
  if (state.Flags.EnableLogging) LogGood(client, socket, "UDP");
  mode.Step([&] { GrabTCP123(request, tor_ntp, 0, client); });
}

void NtpService::OnTcpRequest(RequestId request) {
  if (Context_.IsShut()) return;
  SlotArray &slots = Context_.Sockets.TCP123;
  const std::int16_t slot = AcceptOn(
      slots, [this] { return Context_.Sockets.InitTCP123(); }, request);
  if (slot == 0) return;
  Context_.ShowClientNow(panel::Ntp, slots[slot].Peer());
  Context_.Lamp.DataIn();
  Context_.Lamp.TCPIn();
}

void NtpService::OnTcpArrival(std::int16_t index, std::int32_t bytes_total) {
  RunState &state = Context_.State;
  SlotArray &slots = Context_.Sockets.TCP123;
  state.Requests.ReqTCP123 = AddLong(state.Requests.ReqTCP123, 1);
  ContinueOnFailure mode;
  TcpSocket &socket = slots[index];
  NtpPacket request{};
  mode.Step([&] { socket.GetData(Room(request, bytes_total)); });
  if (mode.Number() != 0 || bytes_total != static_cast<std::int32_t>(NtpLength)) {
    if (state.Flags.EnableLogging) {
      LogRefused(socket.Peer(), slots[0], "TCP", bytes_total);
    }
    socket.Close();
    return;
  }
  Context_.Lamp.DataIn();
  std::optional<NtpTimestamp> tor_ntp;
  mode.Step([&] { tor_ntp = Context_.Time.GrabTime(); });
  if (state.Flags.EnableLogging) LogGood(socket.Peer(), slots[0], "TCP");
  mode.Step([&] { GrabTCP123(request, tor_ntp, index, socket.Peer()); });
}

void NtpService::GrabTCP123(const NtpPacket &data_struc, const std::optional<NtpTimestamp> &tor_ntp,
                            std::int16_t index, PeerAddress mode_ip) {
  const SyncState &sync = Context_.State.Sync;
  NtpPacket reply{};
  reply[0] = ToByte(sync.ReplyHeaderByte);
  reply[1] = Stratum;
  reply[2] = Poll;
  reply[3] = Precision;
  Put(reply, 4, std::span(RootDelay));
  Put(reply, 8, std::span(RootDispersion));
  for (std::size_t at = 0; at < sync.ReferenceOctets.size(); ++at) {
    reply[12 + at] = ToByte(sync.ReferenceOctets[at]);
  }
  Put(reply, 16, std::span(sync.ReferenceStamp));
  // The request's own originate field comes back where the client filled it in; by the book
  // it would be the transmit field always.
  const std::size_t echoed = data_struc[Originate] == 0 ? Transmit : Originate;
  Put(reply, Originate, std::span(data_struc).subspan(echoed).first<TimestampLength>());
  if (!tor_ntp) throw RuntimeError(error_number::SubscriptOutOfRange);
  Put(reply, Receive, std::span(*tor_ntp));
  const NtpTimestamp transmit = Context_.Time.GrabTime();
  Put(reply, Transmit, std::span(transmit));
  Context_.Lamp.DataOut();

  ContinueOnFailure mode;
  if (index != 0) {
    TcpSocket &slot = Context_.Sockets.TCP123[index];
    if (!mode.Step([&] { slot.SendData(reply); })) {
      Context_.Window.CVLRemHost[panel::Ntp].SetText(std::to_string(mode.Number()));
      slot.Close();
      return;
    }
  } else {
    if (!Context_.State.Flags.TimeSynced) return;
    UdpSocket &socket = Context_.Sockets.UDP123;
    socket.SetRemoteHost(mode_ip);
    mode.Step([&] { socket.SendAnswer(reply); });
    return;  // the status follows when the answer has left
  }
  mode.Step([&] { Context_.Texts.StatusUp(); });
}

void NtpService::LogGood(PeerAddress client, const Socket &local, std::string_view transport) {
  Context_.Log.CVLWLOG("48 Bytes NTP...", client, local.LocalPort(), 48, "NTPv4", transport, 0);
}

void NtpService::LogRefused(PeerAddress client, const Socket &local, std::string_view transport,
                            std::int32_t bytes_total) {
  // An NTP line takes the size from bytes_total, so the label is never read.
  Context_.Log.CVLWLOG({}, client, local.LocalPort(), 0, "NTPv4", transport, bytes_total);
}

}  // namespace cvl
