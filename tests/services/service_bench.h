// The five services on a network without a kernel, with a clock that stands at
// 3 October 2002, 12:00:00.250, in a zone at UTC. The first sync has been and the log is
// off; no socket is open.
//
//   class TimeServiceTest : public ServiceTest {};
//   ...
//   Listening.LoadServers("3");
//   FakeConnection &client = Dial(37);
//   EXPECT_EQ(client.Received, ...);

#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "services/client_protocol.h"
#include "services/daytime_service.h"
#include "services/listeners.h"
#include "services/ntp_service.h"
#include "services/service_boxes.h"
#include "services/service_context.h"
#include "services/service_table.h"
#include "services/time_service.h"
#include "services/unix_time_service.h"
#include "sync/sync_exchange.h"
#include "tests/support/expect_error.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_files.h"
#include "tests/support/fake_network.h"
#include "tests/support/fake_resolver.h"
#include "tests/support/fake_shell.h"
#include "tests/support/test_loop.h"
#include "time/base_dates.h"

namespace cvl {

class ServiceTest : public testing::Test {
 protected:
  using Operation = FakeNetwork::Operation;

  /// The lamps by their place in LED.
  enum Lamp { Received = 1, Sent = 2, Udp = 3, Tcp = 4 };

  ServiceTest() {
    SetBaseDates(State.Dates);
    State.Dates.ClientEpoch = DateTime::Of(2002, 1, 1);
    State.Flags.TimeSynced = true;
    State.Start = {"5.1.1", "10/3/2002 9:00:00 AM", "TIMEHOST", "192.0.2.1", "SYSTEM"};
    State.Sync.ReplyHeaderByte = 36;
  }

  // What the test does.

  /// Sends a datagram to our PORT and lets the program come to rest.
  template <class Message>
  void Arrive(std::uint16_t port, const Message &message) {
    ASSERT_TRUE(Net.Arrive(port, Alice, message)) << "nothing is bound to port " << port;
    Loop.Drain();
  }

  /// Connects to our PORT and lets the program come to rest.
  FakeConnection &Dial(std::uint16_t port) { return Dial(port, Alice); }
  FakeConnection &Dial(std::uint16_t port, Endpoint client) {
    FakeConnection &connection = Net.Dial(port, client);
    Loop.Drain();
    return connection;
  }

  /// Shows the window, so that lamps and status texts are kept.
  void ShowWindow() {
    State.Flags.Interactive = true;
    for (Picture &lamp : Window.LED) {
      lamp.Image = LampDarkImage;
    }
  }

  /// Puts the machine eight hours west of UTC, in daylight time, at a local time.
  void StandInLosAngeles(DateTime local, int milliseconds) {
    Clock.Zone.Period = ZonePeriod::Daylight;
    Clock.Zone.Bias = 480;
    Clock.Zone.DaylightBias = -60;
    Clock.Zone.StandardName = ZoneNameOf(u"Pacific Standard Time");
    Clock.Zone.DaylightName = ZoneNameOf(u"Pacific Daylight Time");
    Clock.StandAtLocal(local, milliseconds);
    Time.svrBIAS();
  }

  // What the test sees.

  bool IsLit(Lamp lamp) const { return Window.LED[lamp].Image == LampLitImage; }

  /// Whether StatusUp has been since the window was shown.
  bool IsStatusUp() const { return !State.Status.StatusText.Text().empty(); }

  /// The lines of the log of 3 October 2002, without its header.
  std::vector<std::string> LogLines() const {
    std::vector<std::string> lines;
    const auto file = Files.Contents.find("/program/Logs/CVLS031002.LOG");
    if (file == Files.Contents.end()) return lines;
    for (const std::string &line : Split(file->second, "\r\n")) {
      if (!line.empty() && line.front() != '#') lines.push_back(line);
    }
    return lines;
  }

  /// A line of the log at 12:00:00 from Alice, from the bytes sent on.
  static std::string LogLine(const std::string &rest) {
    return "2002-10-03 12:00:00 10.0.0.7 - CVLS5 TIMEHOST SYSTEM 192.0.2.1 GET TIME - 0 0 " + rest;
  }

  /// All datagrams that were sent, one behind the other.
  Bytes SentBytes() const {
    Bytes bytes;
    for (const FakeNetwork::SentDatagram &datagram : Net.Sent) {
      bytes.insert(bytes.end(), datagram.Data.begin(), datagram.Data.end());
    }
    return bytes;
  }

  const Endpoint Alice = At("10.0.0.7", 40001);
  const Endpoint Bob = At("10.0.0.8", 40002);
  /// How a client box shows the moment at which the clock stands.
  const std::string NoonTip = " 10/3/2002 12:00:00 PM ";

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
  ServiceTable Services{Window, Sockets};
  Listeners Listening{Services, State, Window};
  ServiceBoxes Boxes{Services, Listening, Panel};

  ServerList Servers{Window};
  ServerDraw Draw{Window, State, Servers, Time};
  Timer SyncNow{Loop, 1000};
  SyncSchedule Schedule{State, Window, SyncNow, Texts, Panel};
  SyncExchange Exchange{
      {State, Window, Clock, Time, Servers, Draw, Schedule, Texts, Sockets.UDP123, Layer}};

  ServiceContext Context{State, Window, Sockets, Time, LampRow, Texts, Log, Loop};
  DaytimeService Daytime{Context};
  TimeService TimeOfDay{Context};
  NtpService Ntp{Context, Exchange};
  UnixTimeService UnixTime{Context};
  ClientProtocol Client{Context};
};

}  // namespace cvl
