// A second exchange, over the Time protocol on TCP (RFC 868). Nothing connects its socket:
// it lies idle, and SyncTimeNow only closes it. Whoever connects it to port 37 of a server
// gets the clock set in whole seconds, when it differs at all.

#pragma once

#include <cstdint>
#include <string>

#include "net/tcp_socket.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "status/lamps.h"
#include "status/status_texts.h"
#include "sync/server_draw.h"
#include "sync/server_list.h"
#include "sync/sync_exchange.h"
#include "sync/sync_schedule.h"
#include "time/time_engine.h"

namespace cvl {

class TcpTime {
 public:
  struct Parts {
    RunState &State;
    MainWindow &Window;
    Clock &MachineClock;
    TimeEngine &Time;
    ServerList &Servers;
    ServerDraw &Draw;
    SyncSchedule &Schedule;
    SyncExchange &Exchange;
    Lamps &Lamp;
    StatusTexts &Texts;
    SocketLayer &Layer;
  };

  explicit TcpTime(const Parts &parts);

  /// The socket, for whoever wants to connect it.
  TcpSocket &tcpTime() { return Socket_; }

  /// Names of the zone in its two periods. Settings.
  std::string StandardZoneName;
  std::string DaylightZoneName;

  /// The name of the zone that the last answer was put into. Nothing in this program reads
  /// it.
  const std::string &SyncZoneName() const { return SyncZoneName_; }

 private:
  void OnDataArrival();
  void OnClose();
  void OnError(const Failure &failure);
  double ReadTimeValue();
  void CloseSocket();
  void Adjust(DateTime server_time, std::int32_t offset);

  Parts Parts_;
  TcpEvents Events_;
  TcpSocket Socket_;
  std::string SyncPeerIP_;
  std::string SyncZoneName_;
};

}  // namespace cvl
