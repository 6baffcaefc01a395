// What every service works with.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "base/numbers.h"
#include "platform/event_loop.h"
#include "services/service_sockets.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "state/service_controls.h"
#include "status/lamps.h"
#include "status/request_log.h"
#include "status/status_texts.h"
#include "time/time_engine.h"

namespace cvl {

struct ServiceContext {
  RunState &State;
  MainWindow &Window;
  ServiceSockets &Sockets;
  TimeEngine &Time;
  Lamps &Lamp;
  StatusTexts &Texts;
  RequestLog &Log;
  EventLoop &Loop;

  /// True while no connection is accepted: in a pause, and until the first sync.
  bool IsShut() const { return State.Flags.ServicePaused || !State.Flags.TimeSynced; }

  /// Shows a client in its service's box, with the moment of the clock's last reading as the
  /// tip. An arrival whose handler reads the clock for its answer needs no reading for the tip:
  /// it shows the client after that reading.
  void ShowClient(std::size_t box, PeerAddress client) const {
    Window.CVLRemHost[box].SetAddress(client);
    Window.CVLRemHost[box].Tip.SetMoment(Time.LastNow());
  }

  /// The same for an arrival that has read no clock: reads it.
  void ShowClientNow(std::size_t box, PeerAddress client) const {
    Time.Now();
    ShowClient(box, client);
  }

  /// Handles a request for a connection, unless the service is shut: accepts it on a slot from
  /// INIT, counts it and lights the lamps. Returns the slot, and the caller shows the client
  /// after its first reading of the clock. Returns 0 when there is no slot, and then nothing is
  /// counted and the client is shown. Fails with Overflow (6) when the counter is full.
  template <class Init>
  std::int16_t TakeConnection(SlotArray &slots, std::size_t box, std::int32_t &requests,
                              Init &&init, RequestId request) const {
    if (IsShut()) return 0;
    const PeerAddress client = slots[0].Peer();
    const std::int16_t slot = AcceptOn(slots, std::forward<Init>(init), request);
    if (slot == 0) {
      ShowClientNow(box, client);
      return 0;
    }
    requests = AddLong(requests, 1);
    Lamp.DataIn();
    Lamp.TCPIn();
    return slot;
  }
};

}  // namespace cvl
