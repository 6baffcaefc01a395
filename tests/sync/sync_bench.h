// The sync room on a network without a kernel, with a clock that stands at 3 October 2002,
// 12:00:00.250, in a zone at UTC. The list is empty, no server is drawn at random and no
// socket is open.
//
//   AddServers(3);                       // 10.0.0.1 to 10.0.0.3, in region NA
//   Exchange.SyncTimeNow();
//   EXPECT_EQ(Net.Sent.at(0).To, At("10.0.0.1", 123));

#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "sync/server_draw.h"
#include "sync/server_list.h"
#include "sync/sync_exchange.h"
#include "sync/sync_schedule.h"
#include "sync/tcp_time.h"
#include "tests/support/expect_error.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_network.h"
#include "tests/support/fake_resolver.h"
#include "tests/support/fake_shell.h"
#include "tests/support/test_loop.h"
#include "tests/support/watched_network.h"
#include "time/base_dates.h"

namespace cvl {

/// 3 October 2002, 12:00:00, in seconds since 1900.
inline constexpr std::uint32_t Noon = 0xC146AFC0;

class SyncTest : public testing::Test {
 protected:
  using Operation = FakeNetwork::Operation;

  SyncTest() {
    SetBaseDates(State.Dates);
    State.RegionCode = "NA";
    State.Sync.SyncStamp = {0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18};
    Window.RandomCheck.SetValue(Tick::Off);
    Schedule.SyncTimeNow = [this] { Exchange.SyncTimeNow(); };
    Exchange.CloseTcpTime = [this] { Tcp.tcpTime().Close(); };
  }

  // What the test does.

  /// Reads a server file with these lines behind its header.
  void ReadLines(const std::string &lines) {
    std::istringstream file("1\n2\n3\n4\n5\n" + lines);
    Servers.Read(file);
    Draw.CalcRandR();
  }
  /// One more server; its picture is 7.
  void AddServer(const std::string &host, const std::string &text) {
    Lines_ += host + ":::" + text + ":::7:::0\n";
    Window.Servers.Clear();
    ReadLines(Lines_);
    Window.Servers.Select(1);
  }
  /// COUNT servers of region NA, 10.0.0.1 and so on, and no others.
  void AddServers(int count) {
    Lines_.clear();
    for (int number = 1; number <= count; ++number) {
      AddServer("10.0.0." + std::to_string(number), "Server " + std::to_string(number) + " NA");
    }
  }

  /// Puts SECONDS between two exchanges.
  void Every(int seconds) {
    Window.SyncN.SetText(std::to_string(seconds));
    Window.SyncIntC.SetText("Second/s");
    Schedule.CalcIntC();
  }

  void ShowWindow(WindowState state = WindowState::Normal) {
    State.Flags.Interactive = true;
    Window.State = state;
    for (Picture &lamp : Window.LED) {
      lamp.Image = LampDarkImage;
    }
  }

  /// Opens the socket of the exchange on port 123. What comes in is taken as the service
  /// takes it, requests of clients left out.
  void OpenUdp123() {
    Udp123.OnDataArrival = [this](std::int32_t bytes_total) {
      NtpPacket datagram{};
      Udp123.GetData(datagram);
      if (bytes_total == 1 && State.Sync.SyncWaiting) Exchange.TakeRefusal();
      if (bytes_total == 48 && Exchange.IsReply(datagram)) Exchange.TakeReply(datagram);
    };
    Udp123.SetLocalPort(123);
    Udp123.Bind();
  }

  // What the test sees.

  /// The server's packet: ECHO in its originate field and a transmit timestamp.
  static NtpPacket ReplyOf(const NtpTimestamp &echo, std::uint32_t seconds,
                           std::uint32_t fraction) {
    NtpPacket reply{};
    std::copy(echo.begin(), echo.end(), reply.begin() + 24);
    for (std::size_t byte = 0; byte < 4; ++byte) {
      const auto shift = static_cast<unsigned>(8 * (3 - byte));
      reply[40 + byte] = static_cast<std::uint8_t>(seconds >> shift);
      reply[44 + byte] = static_cast<std::uint8_t>(fraction >> shift);
    }
    return reply;
  }

  std::string Tip() const { return State.Status.TipText.Text(); }

  TestLoop Loop;
  FakeNetwork Net{Loop};
  CallJournal Journal;
  WatchedNetwork Watched{Net, Journal};
  FakeResolver Resolver{Loop};
  FakeClock Clock;
  FakeShell Tray;

  RunState State;
  MainWindow Window;
  SocketLayer Layer{Loop, Watched, Resolver};
  TimeEngine Time{Clock, State.Dates, State.Zone, Window.svrCurrent};
  Panels Panel{Window, State};
  Lamps LampRow{Window, State.Flags};
  StatusTexts Texts{State, Window, Panel, LampRow, Time, Tray};
  Timer SyncNow{Loop, 1000};
  UdpSocket Udp123{Layer};

  ServerList Servers{Window};
  ServerDraw Draw{Window, State, Servers, Time};
  SyncSchedule Schedule{State, Window, SyncNow, Texts, Panel};
  SyncExchange Exchange{
      {State, Window, Clock, Time, Servers, Draw, Schedule, Texts, Udp123, Layer}};
  TcpTime Tcp{
      {State, Window, Clock, Time, Servers, Draw, Schedule, Exchange, LampRow, Texts, Layer}};

 private:
  std::string Lines_;
};

}  // namespace cvl
