#include "tests/services/service_bench.h"

namespace cvl {
namespace {

constexpr const char *HitEnter = " Hit Enter to Register the Port Change ";
constexpr const char *Registered = " Change Registered Successfully ";

class PortBox : public ServiceTest {
 protected:
  /// Ticks a master box without any effect of its own.
  void TickMaster(const Service &service) {
    const std::function<void()> on_click = std::move(service.MasterBox.OnClick);
    service.MasterBox.OnClick = nullptr;
    service.MasterBox.SetValue(Tick::On);
    service.MasterBox.OnClick = on_click;
  }
};

TEST_F(PortBox, SaysThatEnterIsWaitedForWhenItsTextChanges) {
  for (TextBox *box : {&Window.DS_Ptxt, &Window.NTP_Ptxt, &Window.SNTP_Ptxt}) {
    box->SetText("1000");
    EXPECT_EQ(box->Tip.Text(), HitEnter);
  }
}

TEST_F(PortBox, OfUnixTimeAndTheClientProtocolSaysNothingOfEnter) {
  for (TextBox *box : {&Window.Unix_Ptxt, &Window.CVLS_Ptxt}) {
    box->SetText("1000");
    EXPECT_EQ(box->Tip.Text(), "");
  }
}

TEST_F(PortBox, OpensBothSocketsOnEnterAlsoUnticked) {
  for (const Service *service : {&Services.Daytime, &Services.Time, &Services.Ntp}) {
    TickMaster(*service);
    service->PortBox.Press(EnterKey);
    EXPECT_EQ(service->TcpSlots[0].State(), SocketState::Listening) << service->Setting;
    EXPECT_EQ(service->UdpSocket.State(), SocketState::Open) << service->Setting;
    EXPECT_EQ(service->PortBox.Tip.Text(), Registered) << service->Setting;
  }
}

TEST_F(PortBox, MovesBothSocketsToTheNewPort) {
  TickMaster(Services.Time);
  Window.NTP_Ptxt.Press(EnterKey);
  Window.NTP_Ptxt.SetText("1037");
  EXPECT_TRUE(Net.IsListening(37));
  Window.NTP_Ptxt.Press(EnterKey);
  EXPECT_TRUE(Net.IsListening(1037));
  EXPECT_TRUE(Net.IsDatagramOpen(1037));
  EXPECT_EQ(Net.OpenCount(), 2U);
}

TEST_F(PortBox, OpensTheUdpSocketFirst) {
  // On port 519 the first of the two takes the other's place.
  TickMaster(Services.Unix);
  Window.Unix_Ptxt.Press(EnterKey);
  EXPECT_EQ(Sockets.UDP519.State(), SocketState::Open);
  EXPECT_FALSE(Net.IsListening(519));
  EXPECT_EQ(Window.Unix_Ptxt.Tip.Text(), Registered);
}

TEST_F(PortBox, DoesNothingOnAnyOtherKey) {
  TickMaster(Services.Time);
  for (const int key : {0, 10, 12, 14, 51}) {
    Window.NTP_Ptxt.Press(key);
  }
  EXPECT_EQ(Net.OpenCount(), 0U);
  EXPECT_EQ(Window.NTP_Ptxt.Tip.Text(), "");
}

TEST_F(PortBox, OpensNothingWithoutItsMasterBoxAndSaysThatItDid) {
  Window.NTP_Ptxt.Press(EnterKey);
  EXPECT_EQ(Net.OpenCount(), 0U);
  EXPECT_EQ(Window.NTP_Ptxt.Tip.Text(), Registered);
}

TEST_F(PortBox, SaysThatItDidAlsoWhereThePortIsTaken) {
  ShowWindow();
  TickMaster(Services.Daytime);
  Net.TakenPorts = {1013};
  Window.DS_Ptxt.SetText("1013");
  Window.DS_Ptxt.Press(EnterKey);
  EXPECT_EQ(Window.Status.Caption,
            "That address is already in use.  Please select a different port than 1013.\r"
            "DAYTIME SERVICE SERVER ERROR - PORT: 1013 invalid.");
  EXPECT_EQ(Window.DS_Ptxt.Tip.Text(), Registered);
  EXPECT_EQ(Net.OpenCount(), 0U);
}

TEST_F(PortBox, OfTheClientProtocolWaitsForTheNextClickOnABox) {
  Window.eUDP3777.SetValue(Tick::On);
  TickMaster(Services.Client);
  Window.CVLS_Ptxt.SetText("4777");
  Window.CVLS_Ptxt.Press(EnterKey);
  EXPECT_TRUE(Net.IsListening(3777));
  EXPECT_EQ(Window.CVLS_Ptxt.Tip.Text(), "");
  Window.eUDP3777.SetValue(Tick::Off);
  EXPECT_TRUE(Net.IsListening(3777));
  Window.eUDP3777.SetValue(Tick::On);
  EXPECT_TRUE(Net.IsListening(4777));
}

TEST_F(PortBox, HoldsFiveCharacters) {
  for (const Service *service : Services.All) {
    service->PortBox.SetText("123456");
    EXPECT_EQ(service->PortBox.Text(), "12345") << service->Setting;
  }
}

}  // namespace
}  // namespace cvl
