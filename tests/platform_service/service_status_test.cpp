#include "host/service_status.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "tests/support/fake_network.h"
#include "tests/support/fake_resolver.h"
#include "tests/support/test_loop.h"

namespace cvl {

namespace {

using testing::ElementsAre;
using Condition = PortState::Condition;

PortState Port(PortState::Condition condition, int failure) {
  return {"NTP", "UDP", "123", condition, failure};
}

TEST(ServiceStatusText, TellsTheLastSynchronisationAndTheTotals) {
  RunState state;
  state.Sync.LastSync = DateTime::Of(2002, 11, 14, 9, 26, 13);
  EXPECT_EQ(ServiceStatusText(state, {}), "Not synchronised yet; 0 requests (0 UDP, 0 TCP)");
  state.Flags.TimeSynced = true;
  state.Requests = {.ReqTCP13 = 1,
                    .ReqUDP13 = 10,
                    .ReqTCP37 = 2,
                    .ReqUDP37 = 20,
                    .ReqTCP123 = 3,
                    .ReqUDP123 = 30,
                    .ReqTCP519 = 4,
                    .ReqUDP519 = 40,
                    .ReqTCP3777 = 5,
                    .ReqUDP3777 = 50};
  EXPECT_EQ(ServiceStatusText(state, {}),
            "Synchronised 11/14/2002 9:26:13 AM; 165 requests (150 UDP, 15 TCP)");
}

TEST(ServiceStatusText, OutlivesCountersAtTheirEnd) {
  RunState state;
  state.Requests.ReqUDP123 = std::numeric_limits<std::int32_t>::max();
  state.Requests.ReqUDP37 = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(ServiceStatusText(state, {}),
            "Not synchronised yet; 4294967294 requests (4294967294 UDP, 0 TCP)");
}

TEST(ServiceStatusText, NamesPortsThatCouldNotBeOpenedAndNoOthers) {
  const RunState state;
  EXPECT_EQ(ServiceStatusText(state, {Port(Condition::Open, 0),
                                      Port(Condition::Failed, error_number::AddressInUse),
                                      Port(Condition::Off, error_number::AddressInUse),
                                      Port(Condition::Failed, error_number::Overflow)}),
            "Not synchronised yet; 0 requests (0 UDP, 0 TCP); not open: "
            "NTP UDP 123 (the port is in use), "
            "NTP UDP 123 (a port is a number from 0 to 32767)");
}

TEST(ServiceStatusText, BeginsWithThePause) {
  RunState state;
  state.Flags.ServicePaused = true;
  EXPECT_EQ(ServiceStatusText(state, {}),
            "Paused; Not synchronised yet; 0 requests (0 UDP, 0 TCP)");
}

class RecordingManager final : public ServiceHost {
 public:
  void SaveSetting(std::string_view, std::string_view, std::string_view) override {}
  bool Install() override { return false; }
  bool Uninstall() override { return false; }
  void LogEvent(int, int, std::string_view) override {}
  void StartService() override {}
  void ReportStatus(std::string_view text) override { Told.emplace_back(text); }

  std::vector<std::string> Told;
};

TEST(ServiceStatus, TellsTheManagerWhatIsNewAndNothingTwice) {
  TestLoop loop;
  FakeNetwork net(loop);
  FakeResolver resolver(loop);
  SocketLayer layer(loop, net, resolver);
  RunState state;
  MainWindow window;
  ServiceSockets sockets(layer);
  ServiceTable services(window, sockets);
  Listeners listeners(services, state, window);
  RecordingManager manager;
  ServiceStatus status(state, services, listeners, manager);

  status.Report();
  status.Report();
  EXPECT_THAT(manager.Told, ElementsAre("Not synchronised yet; 0 requests (0 UDP, 0 TCP)"));

  manager.Told.clear();
  ++state.Requests.ReqUDP123;
  net.TakenPorts = {37};
  window.eNTP.SetValue(Tick::On);
  listeners.LoadServers("3");
  status.Report();
  EXPECT_THAT(manager.Told, ElementsAre("Not synchronised yet; 1 request (1 UDP, 0 TCP); not open: "
                                        "Time TCP 37 (the port is in use)"));
}

}  // namespace

}  // namespace cvl
