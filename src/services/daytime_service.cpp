#include "services/daytime_service.h"

#include "base/date_patterns.h"
#include "base/failure_modes.h"
#include "base/numbers.h"
#include "time/julian_text.h"

namespace cvl {

DaytimeService::DaytimeService(const ServiceContext &context) : Context_(context) {
  Context_.Sockets.UDP13.OnDataArrival = [this](std::int32_t) { OnUdpArrival(); };
  TcpEvents &events = Context_.Sockets.TCP13.Events;
  events.ConnectionRequest = [this](std::int16_t, RequestId request) { OnTcpRequest(request); };
  events.Close = [this](std::int16_t index) { Context_.Sockets.TCP13[index].Close(); };
}

void DaytimeService::OnTcpRequest(RequestId request) {
  const std::int16_t slot = Context_.TakeConnection(
      Context_.Sockets.TCP13, panel::Daytime, Context_.State.Requests.ReqTCP13,
      [this] { return Context_.Sockets.InitTCP13(); }, request);
  if (slot != 0) SendDS_TCP(slot);
}

void DaytimeService::SendDS_TCP(std::int16_t index) {
  SlotArray &slots = Context_.Sockets.TCP13;
  TcpSocket &slot = slots[index];
  Context_.Lamp.DataOut();
  const std::string text = AnswerText();
  Context_.ShowClient(panel::Daytime, slot.Peer());
  ContinueOnFailure mode;
  if (!mode.Step([&] { slot.SendText(text); })) slot.Close();
  if (Context_.State.Flags.EnableLogging) {
    Context_.Log.CVLWLOG("DayTime Request", slot.Peer(), slots[0].LocalPort(),
                         static_cast<std::int32_t>(text.size()), "DayTime", "TCP", 0);
  }
  Context_.Loop.RunOnePass();
  slot.Close();
  mode.Step([&] { Context_.ShowClient(panel::Daytime, slot.Peer()); });
  mode.Step([&] { Context_.Texts.StatusUp(); });
}

void DaytimeService::OnUdpArrival() {
  RunState &state = Context_.State;
  UdpSocket &socket = Context_.Sockets.UDP13;
  if (state.Flags.ServicePaused) return;
  state.Requests.ReqUDP13 = AddLong(state.Requests.ReqUDP13, 1);
  Context_.Lamp.UDPIn();
  ContinueOnFailure mode;
  std::string received;
  if (!mode.Step([&] { received = socket.GetText(); })) return;
  Context_.Lamp.DataIn();
  const PeerAddress client = socket.Peer();
  socket.SetRemoteHost(client);
  std::string text;
  mode.Step([&] { text = AnswerText(); });
  Context_.ShowClient(panel::Daytime, client);
  if (!state.Flags.TimeSynced) return;
  if (!mode.Step([&] { socket.SendText(text); })) return;
  Context_.Lamp.DataOut();
  if (state.Flags.EnableLogging) {
    Context_.Log.CVLWLOG(received, client, socket.LocalPort(),
                         static_cast<std::int32_t>(text.size()), "DayTime", "UDP", 0);
  }
  mode.Step([&] { Context_.Texts.StatusUp(); });
}

std::string DaytimeService::AnswerText() {
  const RunState &state = Context_.State;
  return state.Flags.UseJulian ? GrabMJulian(Context_.Time, state.Dates, state.Zone) : PlainText();
}

std::string DaytimeService::PlainText() {
  const CivilTime now = PartsOf(Context_.Time.Now());
  std::string text(WeekdayName(now));
  text += ", ";
  text += MonthName(now);
  text += ' ';
  AppendTwoDigits(text, now.Day);
  text += ", ";
  AppendFourDigits(text, now.Year);
  text += ' ';
  AppendTime(text, now);
  text += '-';
  text += Context_.State.Zone.TZName;
  return text;
}

}  // namespace cvl
