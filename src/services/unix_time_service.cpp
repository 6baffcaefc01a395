#include "services/unix_time_service.h"

#include <array>

#include "base/failure_modes.h"
#include "base/numbers.h"

namespace cvl {

namespace {

std::array<std::uint8_t, 4> NetworkOrder(std::int32_t number) {
  const auto bits = static_cast<std::uint32_t>(number);
  return {static_cast<std::uint8_t>(bits >> 24), static_cast<std::uint8_t>(bits >> 16),
          static_cast<std::uint8_t>(bits >> 8), static_cast<std::uint8_t>(bits)};
}

}  // namespace

UnixTimeService::UnixTimeService(const ServiceContext &context) : Context_(context) {
  Context_.Sockets.UDP519Events.DataArrival = [this](std::int16_t, std::int32_t) {
    OnUdpArrival();
  };
  // The slots' Close and Error events have no handlers: a slot is closed by its answer.
  Context_.Sockets.TCP519.Events.ConnectionRequest = [this](std::int16_t, RequestId request) {
    OnTcpRequest(request);
  };
}

void UnixTimeService::OnTcpRequest(RequestId request) {
  if (Context_.IsShut()) return;
  SlotArray &slots = Context_.Sockets.TCP519;
  const std::int16_t slot = AcceptOn(
      slots, [this] { return Context_.Sockets.InitTCP519(); }, request);
  if (slot == 0) return;
  RequestCounters &requests = Context_.State.Requests;
  requests.ReqTCP519 = AddLong(requests.ReqTCP519, 1);
  Context_.Lamp.DataIn();
  Context_.Lamp.TCPIn();
  SendUnixTime(slot, slots[slot].Peer());
}

void UnixTimeService::OnUdpArrival() {
  RunState &state = Context_.State;
  TcpSocket &socket = Context_.Sockets.UDP519;
  if (state.Flags.ServicePaused) return;
  state.Requests.ReqUDP519 = AddLong(state.Requests.ReqUDP519, 1);
  Context_.Lamp.UDPIn();
  ContinueOnFailure mode;
  if (!mode.Step([&] { socket.GetText(); })) return;
  Context_.Lamp.DataIn();
  mode.Step([&] { SendUnixTime(0, socket.Peer()); });
}

void UnixTimeService::SendUnixTime(std::int16_t index, PeerAddress m_host_ip) {
  const double seconds = Context_.Time.SecondsSince(Context_.State.Dates.UnixEpoch);
  Context_.ShowClient(panel::Unix, m_host_ip);
  if (!Context_.State.Flags.TimeSynced) return;
  const bool is_tcp = index != 0;
  TcpSocket &socket = is_tcp ? Context_.Sockets.TCP519[index] : Context_.Sockets.UDP519;
  if (!is_tcp) socket.SetRemoteHost(m_host_ip);
  ContinueOnFailure mode;
  std::array<std::uint8_t, 4> value{};
  mode.Step([&] { value = NetworkOrder(ToLong(seconds)); });
  if (!mode.Step([&] { socket.SendData(value); })) {
    if (is_tcp) socket.Close();
    return;
  }
  if (is_tcp) {
    Context_.Loop.RunOnePass();
    socket.Close();
  }
  if (Context_.State.Flags.EnableLogging) Log(m_host_ip, is_tcp ? "TCP" : "UDP");
  mode.Step([&] { Context_.Texts.StatusUp(); });
  Context_.Lamp.DataOut();
}

void UnixTimeService::Log(PeerAddress client, std::string_view transport) {
  // The port is the listener's for UDP as well.
  Context_.Log.CVLWLOG("UnixTime REQ", client, Context_.Sockets.TCP519[0].LocalPort(), 4,
                       "UnixTime", transport, 0);
}

}  // namespace cvl
