// What several rooms share while the program runs, grouped by what it is about. Each field
// says who writes it; whoever isn't named only reads.

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "base/date_time.h"
#include "state/fixed_text.h"
#include "state/ntp_timestamp.h"
#include "state/status_line.h"

namespace cvl {

/// The base dates against which seconds are counted.
struct BaseDates {
  DateTime DateBase100;  ///< 1 January 100; load step, and the status tick if it was lost
  DateTime Guard;        ///< copy of DateBase100 by which a loss is noticed; the same
  DateTime NTPEpoch;     ///< 1 January 1900; the same, and the TCP sync exchange
  DateTime UnixEpoch;    ///< 1 January 1970; load step, status tick
  DateTime StampEpoch;   ///< 3 August 1978; load step
  DateTime ClientEpoch;  ///< 1 January 2002; load step
  /// GrabTime counts from StampEpoch: true during one call of the load step.
  bool UseStampEpoch = false;
};

/// The zone as svrBIAS saw it last.
struct ZoneState {
  std::int32_t TZBias = 0;  ///< minutes; local time + TZBias = UTC
  std::string TZName;
};

struct RunFlags {
  /// There is a window to draw on. Load step, with -debug or -config.
  bool Interactive = false;
  /// Service events. While it is set, request and timer handlers return at once.
  bool ServicePaused = false;
  /// The first upstream reply has been taken; never cleared. Sync exchange.
  bool TimeSynced = false;
  /// The request log is on. Settings, load step, configuration window.
  bool EnableLogging = false;
  /// Daytime answers in the Julian text. Settings.
  bool UseJulian = false;
};

/// Requests seen by each socket; raised by its handler, never reset.
struct RequestCounters {
  std::int32_t ReqTCP13 = 0;
  std::int32_t ReqUDP13 = 0;
  std::int32_t ReqTCP37 = 0;
  std::int32_t ReqUDP37 = 0;
  std::int32_t ReqTCP123 = 0;
  std::int32_t ReqUDP123 = 0;
  std::int32_t ReqTCP519 = 0;
  std::int32_t ReqUDP519 = 0;
  std::int32_t ReqTCP3777 = 0;
  std::int32_t ReqUDP3777 = 0;  ///< stays 0: no handler raises it
};

/// What the last clock setting left behind for others.
struct SyncState {
  /// The moment of the last clock setting, at first of the start. Load step, exchange.
  DateTime LastSync;
  /// The same as a timestamp, for NTP replies. Load step, exchange.
  NtpTimestamp ReferenceStamp{};
  /// The upstream's address in NTP replies. Only the TCP exchange writes it.
  std::array<std::int16_t, 4> ReferenceOctets{};
  /// The first byte of each NTP reply. Settings.
  std::int16_t ReplyHeaderByte = 0;
  /// A sync request is out and no reply has been taken. Exchange.
  bool SyncWaiting = false;
  /// Identifies this run in sync requests and their replies. Load step.
  NtpTimestamp SyncStamp{};
  /// Text of the last result. Load step, exchange.
  std::string SyncMessage;
};

/// Texts made once at the start, for the log and the update client. Load step.
struct StartTexts {
  std::string ProgramVersion;  ///< "5.1.1"
  std::string StartTimeText;
  std::string LocalHostName;
  std::string LocalIP;
  std::string OSUserName;
  std::string MakerHost{};  ///< the maker's web server
};

/// Texts on their way to the window.
struct StatusState {
  /// What the label Status is to show; the sync tick copies it there. StatusUp, LoadServers.
  StatusLine StatusText;
  /// The tray tip. Sync exchange, load step.
  FixedText<64> TipText;
  /// The tray icon: a number of the image table, 0 for the window's own. UpdateSZTIP.
  int TrayImage = 0;
};

struct RunState {
  BaseDates Dates;
  ZoneState Zone;
  RunFlags Flags;
  RequestCounters Requests;
  SyncState Sync;
  StartTexts Start;
  StatusState Status;
  /// The region that servers are drawn from, two letters. Load step, settings,
  /// configuration window.
  std::string RegionCode;
};

}  // namespace cvl
