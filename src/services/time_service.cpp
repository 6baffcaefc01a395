#include "services/time_service.h"

#include <span>

#include "base/failure_modes.h"
#include "base/numbers.h"
#include "time/timestamp_encoder.h"

namespace cvl {

TimeService::TimeService(const ServiceContext &context) : Context_(context) {
  Context_.Sockets.UDP37.OnDataArrival = [this](std::int32_t) { OnUdpArrival(); };
  TcpEvents &events = Context_.Sockets.TCP37.Events;
  events.ConnectionRequest = [this](std::int16_t, RequestId request) { OnTcpRequest(request); };
  events.Close = [this](std::int16_t index) { Context_.Sockets.TCP37[index].Close(); };
  events.Error = [this](std::int16_t index, const Failure &) {
    Context_.Sockets.TCP37[index].Close();
  };
}

void TimeService::OnTcpRequest(RequestId request) {
  const std::int16_t slot = Context_.TakeConnection(
      Context_.Sockets.TCP37, panel::Time, Context_.State.Requests.ReqTCP37,
      [this] { return Context_.Sockets.InitTCP37(); }, request);
  if (slot != 0) SendNTP_TCP(slot);
}

void TimeService::SendNTP_TCP(std::int16_t index) {
  TcpSocket &slot = Context_.Sockets.TCP37[index];
  const Failure failure = Trap([&] {
    const double seconds = Context_.Time.SecondsSince(Context_.State.Dates.NTPEpoch);
    Context_.ShowClient(panel::Time, slot.Peer());
    // The line is written before anything is sent, and also when nothing will be.
    if (Context_.State.Flags.EnableLogging) Log(slot.Peer(), Context_.Sockets.TCP37[0], "TCP");
    for (const std::uint8_t &byte : EncodeSeconds(seconds)) {
      Context_.Lamp.DataOut();
      slot.SendData(std::span(&byte, 1));
    }
  });
  if (failure) {
    slot.Close();
    return;
  }
  Context_.Loop.RunOnePass();
  slot.Close();
  Context_.Texts.StatusUp();
}

void TimeService::OnUdpArrival() {
  RunState &state = Context_.State;
  UdpSocket &socket = Context_.Sockets.UDP37;
  if (state.Flags.ServicePaused) return;
  Context_.Lamp.UDPIn();
  ContinueOnFailure mode;
  if (!mode.Step([&] { socket.GetText(); })) return;
  Context_.Lamp.DataIn();
  mode.Step([&] { state.Requests.ReqUDP37 = AddLong(state.Requests.ReqUDP37, 1); });
  mode.Step([&] { SendNTP_UDP(socket.Peer()); });
  mode.Step([&] { Context_.Texts.StatusUp(); });
}

void TimeService::SendNTP_UDP(PeerAddress m_host_ip) {
  if (!Context_.State.Flags.TimeSynced) return;
  UdpSocket &socket = Context_.Sockets.UDP37;
  for (const std::uint8_t &byte : Context_.Time.GrabTimeValue()) {
    ContinueOnFailure mode;
    socket.SetRemoteHost(m_host_ip);
    if (!mode.Step([&] { socket.SendData(std::span(&byte, 1)); })) return;
    Context_.Lamp.DataOut();
  }
  Context_.ShowClient(panel::Time, m_host_ip);
  if (Context_.State.Flags.EnableLogging) Log(m_host_ip, socket, "UDP");
}

void TimeService::Log(PeerAddress client, const Socket &local, std::string_view transport) {
  Context_.Log.CVLWLOG("Time 4 Bytes", client, local.LocalPort(), 4, "Time", transport, 0);
}

}  // namespace cvl
