// The stored values of the five services, and what they open.

#include "tests/settings/settings_bench.h"

namespace cvl {
namespace {

class StoredServices : public SettingsTest {
 protected:
  StoredServices() { Store("Settings", "YES:59:Minutes/s:NA:36"); }

  void ReadService(const std::string &name, const std::string &text) {
    Store(name, text);
    Settings.ReadCVLFile();
  }
};

TEST_F(StoredServices, OpenTheirSockets) {
  Store("NTP37", "YES:YES:YES:37");
  Store("SNTP123", "YES:YES:YES:123");
  Store("DTS13", "YES:YES:YES:13");
  Settings.ReadCVLFile();
  for (const std::uint16_t port : {std::uint16_t{37}, std::uint16_t{123}, std::uint16_t{13}}) {
    EXPECT_TRUE(Net.IsListening(port)) << port;
    EXPECT_TRUE(Net.IsDatagramOpen(port)) << port;
  }
  EXPECT_EQ(Net.OpenCount(), 6U);
}

TEST_F(StoredServices, OpenOnTheStoredPort) {
  ReadService("SNTP123", "YES:YES:YES:1123");
  EXPECT_EQ(Window.SNTP_Ptxt.Text(), "1123");
  EXPECT_TRUE(Net.IsListening(1123));
  EXPECT_TRUE(Net.IsDatagramOpen(1123));
  EXPECT_EQ(Net.OpenCount(), 2U);
}

TEST_F(StoredServices, TickAndShowTheirBoxes) {
  ReadService("NTP37", "YES:YES:NO:37");
  EXPECT_TRUE(Window.eNTP.IsTicked());
  EXPECT_TRUE(Window.eTCP37.IsTicked());
  EXPECT_FALSE(Window.eUDP37.IsTicked());
  EXPECT_TRUE(Window.eTCP37.Visible);
  EXPECT_TRUE(Window.eUDP37.Visible);
  EXPECT_TRUE(Net.IsListening(37));
  EXPECT_FALSE(Net.IsDatagramOpen(37));
}

TEST_F(StoredServices, ShowTheirBoxesAndOpenNothingWithBothTransportsOff) {
  ReadService("NTP37", "YES:NO:NO:37");
  EXPECT_TRUE(Window.eTCP37.Visible);
  EXPECT_TRUE(Window.eUDP37.Visible);
  EXPECT_FALSE(Window.eTCP37.IsTicked());
  EXPECT_EQ(Net.OpenCount(), 0U);
}

TEST_F(StoredServices, AreIgnoredWithTheirPortWhenTheyAreOff) {
  ReadService("NTP37", "NO:NO:NO:1234");
  EXPECT_FALSE(Window.eNTP.IsTicked());
  EXPECT_EQ(Window.NTP_Ptxt.Text(), "37");
  Settings.WriteSettings();
  EXPECT_EQ(Stored("NTP37"), "NO:NO:NO:37");
}

TEST_F(StoredServices, AreOffWithYesInSmallLetters) {
  ReadService("NTP37", "yes:YES:YES:37");
  EXPECT_FALSE(Window.eNTP.IsTicked());
  ReadService("NTP37", "YES:yes:Yes:37");
  EXPECT_TRUE(Window.eNTP.IsTicked());
  EXPECT_FALSE(Window.eTCP37.IsTicked());
  EXPECT_FALSE(Window.eUDP37.IsTicked());
}

TEST_F(StoredServices, AreOffWithFewerThanFourFields) {
  for (const char *text : {"", "YES", "YES:YES:YES"}) {
    ReadService("NTP37", text);
    EXPECT_FALSE(Window.eNTP.IsTicked()) << text;
    EXPECT_EQ(Window.NTP_Ptxt.Text(), "37") << text;
  }
  ReadService("NTP37", "YES:YES:YES:");
  EXPECT_TRUE(Window.eNTP.IsTicked());
  EXPECT_EQ(Window.NTP_Ptxt.Text(), "");
}

TEST_F(StoredServices, KeepWhatIsBehindTheFourthFieldInThePort) {
  ReadService("NTP37", "YES:NO:NO:3:7");
  EXPECT_EQ(Window.NTP_Ptxt.Text(), "3:7");
}

TEST_F(StoredServices, KeepAPortThatIsNoNumber) {
  ReadService("DTS13", "YES:NO:NO:abc");
  EXPECT_EQ(Window.DS_Ptxt.Text(), "abc");
  Settings.WriteSettings();
  EXPECT_EQ(Stored("DTS13"), "YES:NO:NO:abc");
}

TEST_F(StoredServices, CutAPortAtTheLimitOfItsBox) {
  ReadService("DTS13", "YES:NO:NO:1234567");
  EXPECT_EQ(Window.DS_Ptxt.Text(), "12345");
}

TEST_F(StoredServices, OfTheClientProtocolOpenBothSocketsWithTcpAlone) {
  ReadService("CVL3777", "YES:YES:NO:3777");
  EXPECT_TRUE(Window.eTCP3777.IsTicked());
  EXPECT_FALSE(Window.eUDP3777.IsTicked());
  EXPECT_TRUE(Net.IsListening(3777));
  EXPECT_TRUE(Net.IsDatagramOpen(3777));
}

TEST_F(StoredServices, OpenEachSocketTwice) {
  int opened = 0;
  const auto count = [&] {
    opened = 0;
    for (const TestLoop::WatchCall &call : Loop.Calls) {
      if (call.What == TestLoop::WatchCall::Kind::Unwatch) ++opened;
    }
    return opened;
  };
  ReadService("NTP37", "YES:YES:YES:37");
  EXPECT_EQ(count(), 2);  // the first of each was closed again
  EXPECT_EQ(Net.OpenCount(), 2U);
}

TEST_F(StoredServices, OfUnixTimeOpenTcpFirstSoThatItListens) {
  ReadService("UNIX519", "YES:YES:YES:519");
  EXPECT_TRUE(Net.IsListening(519));
  EXPECT_EQ(Sockets.UDP519.State(), SocketState::Closed);
  EXPECT_TRUE(State.Status.StatusText.Text().starts_with("That address is already in use."));
}

TEST_F(StoredServices, OpenInTheirOrderSoThatTheEarlierOneGetsASharedPort) {
  const std::pair<const char *, SlotArray *> in_order[] = {{"NTP37", &Sockets.TCP37},
                                                           {"SNTP123", &Sockets.TCP123},
                                                           {"UNIX519", &Sockets.TCP519},
                                                           {"CVL3777", &Sockets.TCP3777},
                                                           {"DTS13", &Sockets.TCP13}};
  for (const auto &[name, slots] : in_order) {
    Store(name, "YES:YES:NO:4000");
  }
  for (const auto &[name, slots] : in_order) {
    Settings.ReadCVLFile();
    EXPECT_EQ((*slots)[0].State(), SocketState::Listening) << name;
    // With the earliest out of the way the next one gets the port.
    Store(name, "NO:NO:NO:4000");
    (*slots)[0].Close();
  }
}

TEST_F(StoredServices, OpenOnceMoreWhenTheyAreReadAgain) {
  ReadService("NTP37", "YES:YES:YES:37");
  int clicks = 0;
  Window.eNTP.OnClick = [&clicks] { ++clicks; };
  Window.eTCP37.OnClick = [&clicks] { ++clicks; };
  ReadService("NTP37", "YES:YES:YES:1037");
  EXPECT_EQ(clicks, 0);
  EXPECT_TRUE(Net.IsListening(1037));
  EXPECT_TRUE(Net.IsDatagramOpen(1037));
  EXPECT_EQ(Net.OpenCount(), 2U);
}

TEST_F(StoredServices, LeaveTheOthersOpenWhenAPortIsTaken) {
  Net.TakenPorts = {37};
  Store("NTP37", "YES:YES:YES:37");
  ReadService("DTS13", "YES:YES:YES:13");
  EXPECT_FALSE(Net.IsListening(37));
  EXPECT_TRUE(Net.IsListening(13));
  EXPECT_TRUE(Net.IsDatagramOpen(13));
  EXPECT_TRUE(State.Status.StatusText.Text().starts_with("That address is already in use."));
}

}  // namespace
}  // namespace cvl
