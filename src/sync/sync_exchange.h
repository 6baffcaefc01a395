// The exchange with a remote time server over UDP, and the setting of the clock.
//
// A request of 48 bytes leaves through the socket on which the NTP service listens, and
// the answer comes back there (SNTP, RFC 4330). Every request of a run carries the same
// transmit timestamp, SyncStamp, by whose echo the answer is known. The clock is set on
// every answer, however near it was.

#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "base/failure_modes.h"
#include "net/name_cache.h"
#include "net/udp_socket.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "status/status_texts.h"
#include "sync/server_draw.h"
#include "sync/server_list.h"
#include "sync/sync_schedule.h"
#include "time/time_engine.h"

namespace cvl {

/// Length of an NTP packet without extensions.
inline constexpr std::size_t NtpLength = 48;
using NtpPacket = std::array<std::uint8_t, NtpLength>;

class SyncExchange {
 public:
  struct Parts {
    RunState &State;
    MainWindow &Window;
    Clock &MachineClock;
    TimeEngine &Time;
    ServerList &Servers;
    ServerDraw &Draw;
    SyncSchedule &Schedule;
    StatusTexts &Texts;
    UdpSocket &UDP123;
    SocketLayer &Layer;
  };

  explicit SyncExchange(const Parts &parts);

  /// Closes the socket tcpTime, whose exchange this one takes the place of.
  std::function<void()> CloseTcpTime;

  /// Asks the server in use, or with RandomCheck a newly drawn one. Where its name must be
  /// looked up first, the request leaves when the answer is there, or fails after
  /// LookupMs; a further call takes the place of one that waits. Failures: continue.
  void SyncTimeNow();

  /// Drops an exchange that waits for a name.
  void Cancel() { NameWait_.Cancel(); }

  /// True when a request is out and DATAGRAM, of 48 bytes, echoes its stamp by three bytes of
  /// eight.
  bool IsReply(std::span<const std::uint8_t> datagram) const;

  /// Takes the answer to a request: sets the clock and opens the services. Failures:
  /// continue.
  void TakeReply(const NtpPacket &datagram);

  /// Takes a datagram of one byte, by which a server refuses: the next tick asks another.
  void TakeRefusal();

  /// Reads eight bytes of THIS_NTP at OFFSET as a timestamp, in milliseconds since 1900.
  /// With U_NOW the clock is set to it and half the round trip, and what others read of the
  /// last setting is brought up to date, whether the clock accepted it or not.
  /// Failures: neither trap nor continue.
  double GoMilli(std::int16_t offset, std::span<const std::uint8_t> this_ntp, bool u_now);

  /// Stores the four octets of an address text. Failures: continue; parts that aren't
  /// there leave their octets as they are.
  void StoreOctets(const std::string &address);

  /// A name that isn't known by then fails the request.
  static constexpr std::int64_t LookupMs = 2000;
  /// The port of every server.
  static constexpr std::uint16_t NtpPort = 123;

 private:
  void FindServer();
  void SendRequest();

  Parts Parts_;
  NameWait NameWait_;
  std::optional<NtpTimestamp> SyncSentTime_;
  // Before the reply the tick count at sending, after it the round trip, in milliseconds.
  std::int32_t SyncTicks_ = 0;
  double SyncSentMs_ = 0;
};

}  // namespace cvl
