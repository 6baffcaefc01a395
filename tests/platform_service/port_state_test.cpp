#include "host/port_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/fake_network.h"
#include "tests/support/fake_resolver.h"
#include "tests/support/test_loop.h"

namespace cvl {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Condition = PortState::Condition;

class PortStateTest : public testing::Test {
 protected:
  std::vector<std::string> Names(Condition condition) const {
    std::vector<std::string> names;
    for (const PortState &port : PortStates(Services, Listening)) {
      if (port.Is == condition) names.push_back(port.Name());
    }
    return names;
  }

  std::vector<std::string> Failures() const {
    std::vector<std::string> failures;
    for (const PortState &port : PortStates(Services, Listening)) {
      if (port.Is == Condition::Failed) {
        failures.push_back(port.Name() + ": " + port.Reason());
      } else {
        EXPECT_EQ(port.Reason(), "") << port.Name();
      }
    }
    return failures;
  }

  TestLoop Loop;
  FakeNetwork Net{Loop};
  FakeResolver Resolver{Loop};
  SocketLayer Layer{Loop, Net, Resolver};
  RunState State;
  MainWindow Window;
  ServiceSockets Sockets{Layer};
  ServiceTable Services{Window, Sockets};
  Listeners Listening{Services, State, Window};
};

TEST_F(PortStateTest, EveryPortIsOffUntilItIsAskedFor) {
  EXPECT_THAT(Names(Condition::Off),
              ElementsAre("Daytime TCP 13", "Daytime UDP 13", "Time TCP 37", "Time UDP 37",
                          "NTP TCP 123", "NTP UDP 123", "Unix time TCP 519", "Unix time UDP 519",
                          "client protocol TCP 3777", "client protocol UDP 3777"));
}

TEST_F(PortStateTest, OpenPortsHaveTheNumberThatTheyReallyHave) {
  Listening.LoadServers("4");
  Window.NTP_Ptxt.SetText("0");
  Listening.LoadServers("3");
  const std::string taken = std::to_string(Sockets.TCP37[0].LocalPort());
  ASSERT_NE(taken, "0");
  EXPECT_THAT(Names(Condition::Open), ElementsAre("Time TCP " + taken, "NTP UDP 123"));
  EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(PortStateTest, ASocketThatTheSyncExchangeOpenedIsNoPortOfTheService) {
  const auto send = [this] {
    Sockets.UDP123.SetRemoteHost("10.77.0.2");
    Sockets.UDP123.SetRemotePort(123);
    Sockets.UDP123.SendData(BytesOf("request"));
    ASSERT_EQ(Sockets.UDP123.State(), SocketState::Open);
  };
  send();
  EXPECT_THAT(Names(Condition::Open), IsEmpty());

  Sockets.UDP123.Close();
  Window.eSNTP.SetValue(Tick::On);
  Net.TakenPorts = {123};
  Listening.LoadServers("4");
  send();
  EXPECT_THAT(Failures(), ElementsAre("NTP UDP 123: the port is in use"));
}

TEST_F(PortStateTest, APortInUseIsNamedAsSuch) {
  Window.eNTP.SetValue(Tick::On);
  Net.TakenPorts = {37};
  Listening.LoadServers("3");
  EXPECT_THAT(Failures(), ElementsAre("Time TCP 37: the port is in use"));
}

TEST_F(PortStateTest, ARightThatIsMissingIsNamedWithTheBoundWhereItLies) {
  Window.eNTP.SetValue(Tick::On);
  Net.Fail(FakeNetwork::Operation::OpenDatagram, error_number::AccessDenied, FakeNetwork::Always);
  Window.NTP_Ptxt.SetText("1023");
  Listening.LoadServers("2");
  EXPECT_THAT(Failures(), ElementsAre("Time UDP 1023: a port below 1024, and no right to take it"));
  Window.NTP_Ptxt.SetText("1024");
  Listening.LoadServers("2");
  EXPECT_THAT(Failures(), ElementsAre("Time UDP 1024: no right to take the port"));
}

TEST_F(PortStateTest, WhatIsNoPortIsNamedAsSuch) {
  Window.eNTP.SetValue(Tick::On);
  for (const char *text : {"32768", "-1"}) {
    Window.NTP_Ptxt.SetText(text);
    Listening.LoadServers("3");
    EXPECT_THAT(Failures(), ElementsAre(std::string("Time TCP ") + text +
                                        ": a port is a number from 0 to 32767"));
  }
}

TEST_F(PortStateTest, AnyOtherFailureHasItsUsualDescription) {
  Window.eNTP.SetValue(Tick::On);
  Net.Fail(FakeNetwork::Operation::OpenStream, error_number::TooManyDescriptors);
  Listening.LoadServers("3");
  EXPECT_THAT(Failures(), ElementsAre(std::string("Time TCP 37: ") +
                                      DescriptionOf(error_number::TooManyDescriptors)));
}

TEST_F(PortStateTest, AFailureIsForgottenWithTheNextOpeningAndWithItsService) {
  Window.eNTP.SetValue(Tick::On);
  Net.TakenPorts = {37};
  Listening.LoadServers("3");
  Window.eNTP.SetValue(Tick::Off);
  EXPECT_THAT(Failures(), IsEmpty()) << "nobody asks for it";
  Window.eNTP.SetValue(Tick::On);
  EXPECT_EQ(Failures().size(), 1U);
  Net.TakenPorts.clear();
  Listening.LoadServers("3");
  EXPECT_THAT(Failures(), IsEmpty());
  EXPECT_EQ(Listening.LastOpening("3"), 0);
}

TEST_F(PortStateTest, ACodeThatNoSocketHasLeavesNoFailure) {
  Listening.LoadServers("");
  Listening.LoadServers("10");
  Listening.LoadServers("x");
  EXPECT_EQ(Listening.LastOpening("x"), std::nullopt);
  EXPECT_THAT(Failures(), IsEmpty());
}

TEST_F(PortStateTest, APortThatTheLoopRefusesToWatchIsNotOpen) {
  Window.eNTP.SetValue(Tick::On);
  Loop.RefusesWatches = error_number::NoBuffers;
  Listening.LoadServers("2");
  Listening.LoadServers("3");
  EXPECT_THAT(Failures(),
              ElementsAre("Time TCP 37: No buffer space", "Time UDP 37: No buffer space"));
}

}  // namespace

}  // namespace cvl
