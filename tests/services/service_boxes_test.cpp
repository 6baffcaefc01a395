#include "services/service_boxes.h"

#include "tests/services/service_bench.h"

namespace cvl {
namespace {

void Set(CheckBox &box) {
  box.SetValue(Tick::On);
}

void Clear(CheckBox &box) {
  box.SetValue(Tick::Off);
}

class MasterBox : public ServiceTest {};

TEST_F(MasterBox, OpensWhatItsTwoBoxesSayWhenItIsTicked) {
  for (const Service *service : Services.All) {
    // The boxes are ticked before anybody listens to them, as a form's are at design.
    service->TcpBox.OnClick = nullptr;
    service->UdpBox.OnClick = nullptr;
    Set(service->TcpBox);
    Set(service->UdpBox);
    if (service == &Services.Unix) Clear(service->UdpBox);  // it is in its listener's way
    Set(service->MasterBox);
    EXPECT_EQ(service->TcpSlots[0].State(), SocketState::Listening) << service->Setting;
    EXPECT_EQ(service->UdpSocket.State(),
              service == &Services.Unix ? SocketState::Closed : SocketState::Open)
        << service->Setting;
  }
}

TEST_F(MasterBox, OpensUdpBeforeTcp) {
  Window.eTCP519.OnClick = nullptr;
  Window.eUDP519.OnClick = nullptr;
  Set(Window.eTCP519);
  Set(Window.eUDP519);
  Set(Window.eUnix);
  // The two share a port number, and the first one has it.
  EXPECT_EQ(Sockets.UDP519.State(), SocketState::Open);
  EXPECT_FALSE(Net.IsListening(519));
}

TEST_F(MasterBox, LeavesAloneWhatIsNotTicked) {
  Set(Window.eNTP);
  EXPECT_EQ(Net.OpenCount(), 0U);
}

TEST_F(MasterBox, ShowsTheTwoBoxesAndHidesThem) {
  EXPECT_FALSE(Window.eTCP37.Visible);
  Set(Window.eNTP);
  EXPECT_TRUE(Window.eTCP37.Visible);
  EXPECT_TRUE(Window.eUDP37.Visible);
  Clear(Window.eNTP);
  EXPECT_FALSE(Window.eTCP37.Visible);
  EXPECT_FALSE(Window.eUDP37.Visible);
}

TEST_F(MasterBox, OpensNothingAnewWhileItsListenerListens) {
  Window.eUDP37.OnClick = nullptr;
  Set(Window.eUDP37);
  Listening.LoadServers("3");
  Window.NTP_Ptxt.SetText("1037");
  Set(Window.eNTP);
  EXPECT_TRUE(Net.IsListening(37));
  EXPECT_FALSE(Net.IsDatagramOpen(37));
  EXPECT_EQ(Net.OpenCount(), 1U);
}

TEST_F(MasterBox, ClosesTheListenerAloneWhenItIsUnticked) {
  Set(Window.eTCP37);
  Set(Window.eUDP37);
  Set(Window.eNTP);
  Clear(Window.eNTP);
  EXPECT_EQ(Sockets.TCP37[0].State(), SocketState::Closed);
  EXPECT_TRUE(Dial(37).IsRefused);
  Arrive(37, "any");
  EXPECT_EQ(Net.Sent.size(), 4U);
}

TEST_F(MasterBox, LeavesAcceptedConnectionsAlone) {
  Set(Window.eTCP123);
  Set(Window.eSNTP);
  FakeConnection &client = Dial(123);
  Clear(Window.eSNTP);
  client.Send(Bytes(48));
  Loop.Drain();
  EXPECT_EQ(client.Received.size(), 48U);
}

TEST_F(MasterBox, PutsItsPanelUp) {
  const std::vector<std::int16_t> panels = {2, 1, 3, 4, 5};
  for (std::size_t at = 0; at < panels.size(); ++at) {
    Set(Services.All[at]->MasterBox);
    EXPECT_EQ(Panel.PanelNode(), panels[at]) << Services.All[at]->Setting;
  }
  Clear(Window.eNTP);
  EXPECT_EQ(Panel.PanelNode(), 1);
}

TEST_F(MasterBox, HasTheBoxesOfTheClientProtocolTheRightWay) {
  Window.eTCP3777.OnClick = nullptr;
  Set(Window.eTCP3777);
  Set(Window.eCVLS);
  EXPECT_TRUE(Net.IsListening(3777));
  EXPECT_FALSE(Net.IsDatagramOpen(3777));
}

class TransportBox : public ServiceTest {};

TEST_F(TransportBox, OpensItsSocketWhenItIsTicked) {
  for (const Service *service : {&Services.Daytime, &Services.Time, &Services.Ntp}) {
    Set(service->TcpBox);
    EXPECT_EQ(service->TcpSlots[0].State(), SocketState::Listening) << service->Setting;
    EXPECT_EQ(service->UdpSocket.State(), SocketState::Closed) << service->Setting;
    Set(service->UdpBox);
    EXPECT_EQ(service->UdpSocket.State(), SocketState::Open) << service->Setting;
  }
  Set(Window.eTCP519);
  EXPECT_TRUE(Net.IsListening(519));
}

TEST_F(TransportBox, ClosesNothingWhenItIsUnticked) {
  Set(Window.eTCP37);
  Set(Window.eUDP37);
  Clear(Window.eTCP37);
  Clear(Window.eUDP37);
  EXPECT_TRUE(Net.IsListening(37));
  EXPECT_TRUE(Net.IsDatagramOpen(37));
}

TEST_F(TransportBox, OpensAnewWhatIsOpen) {
  Set(Window.eTCP37);
  Clear(Window.eTCP37);
  Window.NTP_Ptxt.SetText("1037");
  Set(Window.eTCP37);
  EXPECT_TRUE(Net.IsListening(1037));
  EXPECT_FALSE(Net.IsListening(37));
}

TEST_F(TransportBox, PutsItsPanelUpWhicheverWayItIsClicked) {
  Set(Window.eUDP13);
  EXPECT_EQ(Panel.PanelNode(), 2);
  Set(Window.eTCP3777);
  EXPECT_EQ(Panel.PanelNode(), 5);
  Clear(Window.eUDP13);
  EXPECT_EQ(Panel.PanelNode(), 2);
}

TEST_F(TransportBox, OfTheClientProtocolOpensTheOthersSocket) {
  Set(Window.eTCP3777);
  EXPECT_TRUE(Net.IsDatagramOpen(3777));
  EXPECT_FALSE(Net.IsListening(3777));
}

TEST_F(TransportBox, OfTheClientProtocolForUdpOpensTheListener) {
  Set(Window.eUDP3777);
  EXPECT_TRUE(Net.IsListening(3777));
  EXPECT_FALSE(Net.IsDatagramOpen(3777));
}

}  // namespace
}  // namespace cvl
