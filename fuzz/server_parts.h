// The parts of a server that the fuzz targets of its services share, on a system without a
// kernel. A run resets those of the run before it, so that a failure depends on its input alone.
//
//   Parts parts;
//   ClientProtocol protocol(parts.Context);
//   ...
//   parts.Reset();

#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <sstream>

#include "services/service_context.h"
#include "sync/server_draw.h"
#include "sync/server_list.h"
#include "sync/sync_schedule.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_files.h"
#include "tests/support/fake_network.h"
#include "tests/support/fake_resolver.h"
#include "tests/support/fake_shell.h"
#include "tests/support/test_loop.h"
#include "time/base_dates.h"

namespace cvl::fuzz {

inline void Require(bool holds) {
  if (!holds) std::abort();
}

/// A server after its load step, without any service: the clock is at 3 October 2002,
/// 12:00:00.250, in UTC; the log is on; no socket is open.
struct Parts {
  Parts() {
    // The fakes report misuse as a failed expectation; end the run there.
    GTEST_FLAG_SET(break_on_failure, true);
    SetBaseDates(State.Dates);
    State.Dates.ClientEpoch = DateTime::Of(2002, 1, 1);
    State.Dates.StampEpoch = DateTime::Of(1978, 8, 3);
    State.Dates.UseStampEpoch = true;
    State.Sync.SyncStamp = Time.GrabTime();
    State.Dates.UseStampEpoch = false;
    State.Sync.ReferenceStamp = Time.GrabTime();
    State.Sync.ReplyHeaderByte = 36;
    State.Flags.EnableLogging = true;
    State.RegionCode = "NA";
    SyncNow.SetEnabled(false);
  }

  /// Reset goes back to the state and the window as they are now.
  void Keep() {
    KeptState_ = State;
    KeptWindow_ = Window;
  }

  /// Undoes what a run does to state, window, clock and files, and drops the records of the
  /// fakes. Sockets stay open and connections stay as they are.
  void Reset() {
    State = KeptState_;
    Window = KeptWindow_;
    Clock.UtcMs = FakeClock().UtcMs;
    Files.Contents.clear();
    Files.Directories.clear();
    Servers.CurrentServer.clear();
    Schedule.Hasten(Schedule.SyncSeconds());
    Net.Sent.clear();
    Loop.Calls.clear();
  }

  /// Makes the server list and what depends on it again, as the constructor left them.
  void ForgetServers() {
    Rebuild(Schedule, State, Window, SyncNow, Texts, Panel);
    Rebuild(Draw, Window, State, Servers, Time);
    Rebuild(Servers, Window);
    SyncNow.SetEnabled(false);
  }

  /// Ends the peers' side of all connections, whose sockets the program has closed, and
  /// forgets them.
  void DropConnections() {
    if (Layer.Lingering.Count() > 0) {
      for (FakeConnection &connection : Net.Connections) {
        connection.End();
      }
      Loop.Advance(LingeringCloses::LookMs);
      Require(Layer.Lingering.Count() == 0);
    }
    Net.Connections.clear();
  }

  /// Reads a server file with one server, 10.0.0.1.
  void ReadServerFile() {
    std::istringstream file("h\nh\nh\nh\nh\n10.0.0.1:::A NA:::2:::\n");
    Servers.Read(file);
    Draw.CalcRandR();
  }

  TestLoop Loop;
  FakeNetwork Net{Loop};
  FakeResolver Resolver{Loop};
  FakeClock Clock;
  FakeFiles Files;
  FakeShell Tray;

  RunState State;
  MainWindow Window;
  SocketLayer Layer{Loop, Net, Resolver};
  TimeEngine Time{Clock, State.Dates, State.Zone, Window.svrCurrent};
  Panels Panel{Window, State};
  Lamps LampRow{Window, State.Flags};
  StatusTexts Texts{State, Window, Panel, LampRow, Time, Tray};
  RequestLog Log{State, Time, Files};
  ServiceSockets Sockets{Layer};
  ServerList Servers{Window};
  ServerDraw Draw{Window, State, Servers, Time};
  Timer SyncNow{Loop, 1000};
  SyncSchedule Schedule{State, Window, SyncNow, Texts, Panel};
  ServiceContext Context{State, Window, Sockets, Time, LampRow, Texts, Log, Loop};

 private:
  /// Other parts keep their references to PART.
  template <class Part, class... Arguments>
  static void Rebuild(Part &part, Arguments &...arguments) {
    std::destroy_at(&part);
    std::construct_at(&part, arguments...);
  }

  RunState KeptState_;
  MainWindow KeptWindow_;
};

/// The parts of type RUN that the runs of this process share, after their Begin. They are made
/// again once in a while, because the fakes remember every socket that was closed.
template <class Run>
Run &SharedRun() {
  constexpr int RunsOfOne = 1000;
  static std::unique_ptr<Run> &run = *new std::unique_ptr<Run>;
  static int runs = 0;
  if (runs++ % RunsOfOne == 0) run = std::make_unique<Run>();
  run->Begin();
  return *run;
}

}  // namespace cvl::fuzz
