#include "sync/sync_exchange.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/numbers.h"
#include "base/text.h"
#include "sync/go_milli.h"

namespace cvl {

namespace {

// Leap indicator 0, version 3, mode 3: a client (RFC 5905, section 7.3).
constexpr std::uint8_t ClientRequest = 27;
constexpr std::size_t OriginateField = 24;
constexpr std::size_t TransmitField = 40;

}  // namespace

SyncExchange::SyncExchange(const Parts &parts)
    : Parts_(parts), NameWait_(parts.Layer.Loop, parts.Layer.Names) {}

void SyncExchange::SyncTimeNow() {
  if (Parts_.Window.Servers.Count() == 0) return;
  ContinueOnFailure mode;
  mode.Step([&] {
    if (CloseTcpTime) CloseTcpTime();
  });
  if (Parts_.Window.RandomCheck.IsTicked()) mode.Step([&] { Parts_.Draw.GrabRandom(); });
  std::string &server = Parts_.Servers.CurrentServer;
  if (server.empty()) mode.Step([&] { server = Parts_.Servers.Host(1); });
  FindServer();
}

void SyncExchange::FindServer() {
  const std::string server = Parts_.Servers.CurrentServer;
  if (server.empty() || Parts_.Layer.Names.Find(server)) {
    NameWait_.Cancel();
    SendRequest();
    return;
  }
  NameWait_.Start(server, LookupMs, [this, server] {
    // Another server may have been chosen while the name was looked up.
    if (server == Parts_.Servers.CurrentServer) {
      SendRequest();
    } else {
      FindServer();
    }
  });
}

void SyncExchange::SendRequest() {
  ContinueOnFailure mode;
  SyncState &sync = Parts_.State.Sync;
  Parts_.UDP123.SetRemotePort(NtpPort);
  Parts_.UDP123.SetRemoteHost(Parts_.Servers.CurrentServer);
  NtpPacket request{};
  std::copy(sync.SyncStamp.begin(), sync.SyncStamp.end(), request.begin() + TransmitField);
  request[0] = ClientRequest;
  // Before the sending, so that an answer that comes at once is known for one.
  sync.SyncWaiting = true;
  mode.Step([&] { SyncSentTime_ = Parts_.Time.GrabTime(); });
  mode.Step([&] { SyncTicks_ = Parts_.MachineClock.GetTickCount(); });
  if (!mode.Step([&] { Parts_.UDP123.SendData(request); })) {
    mode.Step([&] { Parts_.Draw.GrabRandom(); });
    mode.Step([&] { Parts_.Schedule.Hasten(0); });
  }
  mode.Step([&] {
    Parts_.State.Status.TipText = Joined(
        {" Checking Time Server: ", Parts_.Window.Servers.Text(), " ", std::string_view("\0", 1)});
  });
  mode.Step([&] { Parts_.Texts.UpdateSZTIP(); });
  mode.Step([&] { Parts_.Layer.Loop.RunOnePass(); });
  if (Parts_.State.Flags.Interactive) Parts_.Window.LED[0].Image = LampLitImage;
}

bool SyncExchange::IsReply(std::span<const std::uint8_t> datagram) const {
  const SyncState &sync = Parts_.State.Sync;
  return sync.SyncWaiting && datagram.size() == NtpLength &&
         datagram[OriginateField] == sync.SyncStamp[0] &&
         datagram[OriginateField + 3] == sync.SyncStamp[3] &&
         datagram[OriginateField + 7] == sync.SyncStamp[7];
}

void SyncExchange::TakeReply(const NtpPacket &datagram) {
  ContinueOnFailure mode;
  RequestCounters &requests = Parts_.State.Requests;
  mode.Step([&] { requests.ReqUDP123 = SubtractLong(requests.ReqUDP123, 1); });
  Parts_.State.Sync.SyncWaiting = false;
  mode.Step([&] { SyncTicks_ = SubtractLong(Parts_.MachineClock.GetTickCount(), SyncTicks_); });
  mode.Step([&] {
    if (!SyncSentTime_) throw RuntimeError(error_number::SubscriptOutOfRange);
    GoMilli(0, *SyncSentTime_, false);
  });
  mode.Step([&] { GoMilli(TransmitField, datagram, true); });
  Parts_.State.Flags.TimeSynced = true;
  // The peer's address is not noted on this path: replies name 0.0.0.0 as their reference, for
  // compatibility with existing clients.
  StoreOctets(std::string());
}

void SyncExchange::TakeRefusal() {
  ContinueOnFailure mode;
  mode.Step([&] { Parts_.Draw.GrabRandom(); });
  mode.Step([&] { Parts_.Schedule.Hasten(1); });
}

double SyncExchange::GoMilli(std::int16_t offset, std::span<const std::uint8_t> this_ntp,
                             bool u_now) {
  const double milliseconds = MillisecondsOf(static_cast<std::size_t>(offset), this_ntp);
  if (!u_now) {
    SyncSentMs_ = milliseconds;
    return milliseconds;
  }
  const SystemTime fields = ClockFieldsOf(milliseconds, SyncTicks_);
  // A refusal goes unnoticed: the run counts as synchronised either way.
  static_cast<void>(Parts_.MachineClock.SetSystemTime(fields));
  SyncState &sync = Parts_.State.Sync;
  sync.SyncMessage = "CVL Server is now Synchronized to Atomic Time.";
  sync.LastSync = Parts_.Time.Now();
  sync.ReferenceStamp = Parts_.Time.GrabTime();
  return milliseconds;
}

void SyncExchange::StoreOctets(const std::string &address) {
  ContinueOnFailure mode;
  const std::vector<std::string> octets = Split(address, ".");
  for (std::size_t at = 0; at < Parts_.State.Sync.ReferenceOctets.size(); ++at) {
    mode.Step([&] {
      if (at >= octets.size()) throw RuntimeError(error_number::SubscriptOutOfRange);
      Parts_.State.Sync.ReferenceOctets[at] = ToInteger(Val(octets[at]));
    });
  }
}

}  // namespace cvl
