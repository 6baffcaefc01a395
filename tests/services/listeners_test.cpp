#include "services/listeners.h"

#include "tests/services/service_bench.h"

namespace cvl {
namespace {

const std::string InUse = "That address is already in use.  Please select a different port than ";

class LoadServers : public ServiceTest {};

TEST_F(LoadServers, OpensTheListenerOfATcpCode) {
  const std::vector<std::pair<const char *, std::uint16_t>> rows = {
      {"1", 13}, {"3", 37}, {"5", 123}, {"7", 519}, {"9", 3777}};
  for (const auto &[code, port] : rows) {
    EXPECT_FALSE(Net.IsListening(port));
    Listening.LoadServers(code);
    EXPECT_TRUE(Net.IsListening(port)) << code;
    EXPECT_FALSE(Net.IsDatagramOpen(port)) << code;
  }
  EXPECT_EQ(Net.OpenCount(), 5U);
  EXPECT_EQ(Sockets.TCP37[0].State(), SocketState::Listening);
}

TEST_F(LoadServers, OpensTheSocketOfAUdpCode) {
  const std::vector<std::pair<const char *, std::uint16_t>> rows = {
      {"0", 13}, {"2", 37}, {"4", 123}, {"8", 3777}};
  for (const auto &[code, port] : rows) {
    EXPECT_FALSE(Net.IsDatagramOpen(port));
    Listening.LoadServers(code);
    EXPECT_TRUE(Net.IsDatagramOpen(port)) << code;
  }
  EXPECT_EQ(Net.OpenCount(), 4U);
}

TEST_F(LoadServers, BindsAStreamThatNeverListensForUnixTimeOverUdp) {
  Listening.LoadServers("6");
  EXPECT_EQ(Sockets.UDP519.State(), SocketState::Open);
  EXPECT_EQ(Sockets.UDP519.LocalPort(), 519);
  EXPECT_FALSE(Net.IsDatagramOpen(519));
  EXPECT_FALSE(Net.IsListening(519));
  EXPECT_EQ(Net.OpenCount(), 1U);
}

TEST_F(LoadServers, DoesNothingForAnyOtherCode) {
  for (const char *code : {"", "10", "a", " 1", "1 ", "-1"}) {
    Listening.LoadServers(code);
  }
  EXPECT_EQ(Net.OpenCount(), 0U);
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(LoadServers, ClosesWhatIsOpenFirst) {
  Listening.LoadServers("3");
  Listening.LoadServers("2");
  Window.NTP_Ptxt.SetText("1037");
  Listening.LoadServers("3");
  EXPECT_TRUE(Net.IsListening(1037));
  EXPECT_FALSE(Net.IsListening(37));
  Listening.LoadServers("2");
  EXPECT_TRUE(Net.IsDatagramOpen(1037));
  EXPECT_FALSE(Net.IsDatagramOpen(37));
}

TEST_F(LoadServers, OpensTheSamePortAnew) {
  Listening.LoadServers("3");
  Listening.LoadServers("3");
  EXPECT_TRUE(Net.IsListening(37));
  EXPECT_EQ(Net.OpenCount(), 1U);
}

TEST_F(LoadServers, PointsAUdpSocketAtItsOwnMachine) {
  for (const char *code : {"0", "2", "4", "6", "8"}) {
    Listening.LoadServers(code);
  }
  for (const Service *service : Services.All) {
    EXPECT_EQ(service->UdpSocket.RemoteHost(), "10.77.0.1") << service->Setting;
  }
}

// The number in the port box.

TEST_F(LoadServers, ReadsTheNumberAtTheStartOfTheText) {
  Window.NTP_Ptxt.SetText("123ab");
  Listening.LoadServers("3");
  EXPECT_EQ(Sockets.TCP37[0].LocalPort(), 123);
}

TEST_F(LoadServers, RoundsToTheNearestWholeNumberAndATieToTheEvenOne) {
  Window.NTP_Ptxt.SetText("36.5");
  Listening.LoadServers("3");
  EXPECT_EQ(Sockets.TCP37[0].LocalPort(), 36);
  Window.NTP_Ptxt.SetText("37.5");
  Listening.LoadServers("3");
  EXPECT_EQ(Sockets.TCP37[0].LocalPort(), 38);
}

TEST_F(LoadServers, TakesAFreePortWhereTheTextIsNoNumber) {
  for (const char *text : {"abc", "", "0"}) {
    Window.NTP_Ptxt.SetText(text);
    Listening.LoadServers("3");
    EXPECT_EQ(Sockets.TCP37[0].State(), SocketState::Listening) << text;
    EXPECT_GT(Sockets.TCP37[0].LocalPort(), 0) << text;
    EXPECT_LE(Sockets.TCP37[0].LocalPort(), 32767) << text;
  }
}

TEST_F(LoadServers, LeavesTheSocketClosedWithoutAWordForANumberAbove32767) {
  Window.NTP_Ptxt.SetText("32767");
  Listening.LoadServers("3");
  Listening.LoadServers("2");
  EXPECT_EQ(Net.OpenCount(), 2U);
  Window.NTP_Ptxt.SetText("32768");
  Listening.LoadServers("3");
  Listening.LoadServers("2");
  EXPECT_EQ(Net.OpenCount(), 0U);
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(LoadServers, LeavesTheSocketClosedWithoutAWordForANegativeNumber) {
  Window.NTP_Ptxt.SetText("-37");
  Listening.LoadServers("3");
  Listening.LoadServers("2");
  EXPECT_EQ(Net.OpenCount(), 0U);
  EXPECT_FALSE(IsStatusUp());
}

// Failures.

TEST_F(LoadServers, ReportsATakenPort) {
  Net.TakenPorts = {37, 123, 519, 3777};
  const std::vector<std::pair<const char *, std::string>> rows = {
      {"2", "37"},  {"3", "37"},  {"4", "123"},  {"5", "123"},
      {"6", "519"}, {"7", "519"}, {"8", "3777"}, {"9", "3777"}};
  for (const auto &[code, port] : rows) {
    State.Status.StatusText.Set("");
    Listening.LoadServers(code);
    EXPECT_EQ(State.Status.StatusText.Text(), InUse + port + ".") << code;
  }
  EXPECT_EQ(Net.OpenCount(), 0U);
}

TEST_F(LoadServers, AddsASentenceForDaytime) {
  Net.TakenPorts = {13};
  Window.DS_Ptxt.SetText("0013x");
  for (const char *code : {"0", "1"}) {
    State.Status.StatusText.Set("");
    Listening.LoadServers(code);
    EXPECT_EQ(State.Status.StatusText.Text(),
              InUse + "13.\rDAYTIME SERVICE SERVER ERROR - PORT: 0013x invalid.");
  }
}

TEST_F(LoadServers, ShowsTheFailureOfDaytimeAtOnceInAWindow) {
  Net.TakenPorts = {13};
  Listening.LoadServers("1");
  EXPECT_EQ(Window.Status.Caption, "Synchronizing CVL Server...please wait.");
  ShowWindow();
  Listening.LoadServers("1");
  EXPECT_EQ(Window.Status.Caption, InUse + "13.\rDAYTIME SERVICE SERVER ERROR - PORT: 13 invalid.");
}

TEST_F(LoadServers, LeavesTheFailuresOfOthersToTheTimer) {
  Net.TakenPorts = {37};
  ShowWindow();
  Listening.LoadServers("3");
  EXPECT_EQ(State.Status.StatusText.Text(), InUse + "37.");
  EXPECT_EQ(Window.Status.Caption, "Synchronizing CVL Server...please wait.");
}

TEST_F(LoadServers, SaysNothingOfAnyOtherFailure) {
  Net.Fail(Operation::OpenStream, error_number::AccessDenied);
  Net.Fail(Operation::OpenDatagram, error_number::AccessDenied);
  Listening.LoadServers("1");
  Listening.LoadServers("0");
  EXPECT_EQ(Net.OpenCount(), 0U);
  EXPECT_FALSE(IsStatusUp());
}

TEST_F(LoadServers, LeavesTheOtherServicesAloneWhenOneFails) {
  Listening.LoadServers("1");
  Net.TakenPorts = {37};
  Listening.LoadServers("3");
  EXPECT_TRUE(Net.IsListening(13));
}

TEST_F(LoadServers, CantOpenUnixTimeOverUdpBesideItsListener) {
  Listening.LoadServers("7");
  Listening.LoadServers("6");
  EXPECT_EQ(State.Status.StatusText.Text(), InUse + "519.");
  EXPECT_EQ(Sockets.UDP519.State(), SocketState::Closed);
  EXPECT_TRUE(Net.IsListening(519));
}

TEST_F(LoadServers, CantOpenTheListenerOfUnixTimeBesideItsUdpSocket) {
  Listening.LoadServers("6");
  EXPECT_FALSE(IsStatusUp());
  Listening.LoadServers("7");
  EXPECT_EQ(State.Status.StatusText.Text(), InUse + "519.");
  EXPECT_FALSE(Net.IsListening(519));
}

}  // namespace
}  // namespace cvl
