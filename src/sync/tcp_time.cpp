#include "sync/tcp_time.h"

#include <array>

#include "base/failure_modes.h"
#include "base/numbers.h"
#include "base/text.h"

namespace cvl {

TcpTime::TcpTime(const Parts &parts) : Parts_(parts), Socket_(parts.Layer, Events_) {
  Events_.DataArrival = [this](std::int16_t, std::int32_t) { OnDataArrival(); };
  Events_.Close = [this](std::int16_t) { OnClose(); };
  Events_.Error = [this](std::int16_t, const Failure &failure) { OnError(failure); };
}

double TcpTime::ReadTimeValue() {
  std::array<std::uint8_t, 4> bytes{};
  if (Socket_.GetData(bytes) != bytes.size()) throw RuntimeError(error_number::InvalidArgument);
  double value = 0;
  for (const std::uint8_t byte : bytes) {
    value = value * 256 + byte;
  }
  return value;
}

void TcpTime::OnDataArrival() {
  Parts_.State.Flags.TimeSynced = true;
  Parts_.Lamp.DataIn();
  ContinueOnFailure mode;
  double seconds = 0;
  if (!mode.Step([&] { seconds = ReadTimeValue(); })) {
    Socket_.Close();
    mode.Step([&] { Parts_.Schedule.Hasten(0); });
    return;
  }
  Parts_.Lamp.DataIn();
  SyncPeerIP_ = Socket_.RemoteHostIP();
  Parts_.Exchange.StoreOctets(SyncPeerIP_);
  Socket_.Close();

  const TimeZoneInformation &zone = Parts_.MachineClock.GetTimeZoneInformation();
  SyncZoneName_ = zone.Period == ZonePeriod::Daylight ? DaylightZoneName : StandardZoneName;
  mode.Step([&] { seconds -= Parts_.Time.GrabBias(); });

  Parts_.State.Dates.NTPEpoch = DateTime::Of(1900, 1, 1);
  std::int32_t offset = 0;
  mode.Step([&] {
    offset = ToLong(seconds - SecondsBetween(Parts_.State.Dates.NTPEpoch, Parts_.Time.Now()));
  });
  if (offset == 0) {
    Parts_.State.Sync.SyncMessage = " Atomically Correct: No Adjustment needed! ";
  } else {
    Adjust(DateTime{(seconds + SecondsTo1900) / SecondsPerDay}, offset);
  }
  const std::string &message = Parts_.State.Sync.SyncMessage;
  Parts_.State.Status.TipText = Joined({" ", message, " ", std::string_view("\0", 1)});
  mode.Step([&] {
    Parts_.Window.Servers.Tip.Set(Joined({" ", GeneralText(Parts_.Time.Now()), " | ", message}));
  });
  mode.Step([&] { Parts_.Texts.UpdateSZTIP(); });
}

void TcpTime::Adjust(DateTime server_time, std::int32_t offset) {
  ContinueOnFailure mode;
  SyncState &sync = Parts_.State.Sync;
  sync.SyncMessage = "Date/Time Adjusted by " + std::to_string(offset) + " second(s)";
  mode.Step([&] { Parts_.MachineClock.SetLocalDate(server_time); });
  mode.Step([&] { Parts_.MachineClock.SetLocalTime(server_time); });
  mode.Step([&] {
    Parts_.Window.Status.Tip.Set(" Last Updated: " + GeneralText(Parts_.Time.Now()) + " ");
  });
  sync.LastSync = Parts_.Time.Now();
  mode.Step([&] { sync.ReferenceStamp = Parts_.Time.GrabTime(); });
  mode.Step([&] { Parts_.Texts.StatusUp(); });
}

void TcpTime::OnClose() {
  if (Parts_.State.Flags.Interactive) Parts_.Window.LED[0].Image = LampDarkImage;
  CloseSocket();
}

void TcpTime::OnError(const Failure &failure) {
  SyncState &sync = Parts_.State.Sync;
  sync.SyncMessage =
      "No Adjustment: " + GeneralText(Parts_.Time.Now()) + " " + Parts_.Servers.CurrentServer;
  Parts_.Window.Servers.Tip.Set(sync.SyncMessage + " " + failure.Description);
  CloseSocket();
  Parts_.Draw.GrabRandom();
  Parts_.Exchange.SyncTimeNow();
}

void TcpTime::CloseSocket() {
  while (Socket_.State() != SocketState::Closed) {
    Parts_.Layer.Loop.RunOnePass();
    Socket_.Close();
  }
}

}  // namespace cvl
