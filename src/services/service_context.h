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

  /// Shows a client in the box of the last one, with the moment as its tip.
  void ShowClient(std::size_t box, const std::string &address) const {
    Window.CVLRemHost[box].SetText(address);
    Window.CVLRemHost[box].Tip.SetMoment(Time.Now());
  }

  /// What most services do with a request for a connection, unless they are shut: shows the
  /// client, accepts it on a slot from INIT, counts it and lights the lamps. Returns the slot;
  /// 0 when there is none, and then nothing is counted. Raises 6 when the counter is full.
  template <class Init>
  std::int16_t TakeConnection(SlotArray &slots, std::size_t box, std::int32_t &requests,
                              Init &&init, RequestId request) const {
    if (IsShut()) return 0;
    ShowClient(box, slots[0].RemoteHostIP());
    const std::int16_t slot = AcceptOn(slots, std::forward<Init>(init), request);
    if (slot == 0) return 0;
    requests = AddLong(requests, 1);
    Lamp.DataIn();
    Lamp.TCPIn();
    return slot;
  }
};

}  // namespace cvl
