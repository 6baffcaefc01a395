#include "ui/panels.h"

#include <gtest/gtest.h>

namespace cvl {
namespace {

/// A panel: its node of the tree, its boxes and its counters.
struct Row {
  std::int16_t Node;
  CheckBox MainWindow::*Enable;
  CheckBox MainWindow::*Tcp;
  CheckBox MainWindow::*Udp;
  std::int32_t RequestCounters::*TcpCount;
  std::int32_t RequestCounters::*UdpCount;
};

using W = MainWindow;
using C = RequestCounters;

constexpr Row Rows[] = {
    {2, &W::eNTP, &W::eTCP37, &W::eUDP37, &C::ReqTCP37, &C::ReqUDP37},
    {3, &W::eDTS, &W::eTCP13, &W::eUDP13, &C::ReqTCP13, &C::ReqUDP13},
    {4, &W::eSNTP, &W::eTCP123, &W::eUDP123, &C::ReqTCP123, &C::ReqUDP123},
    {5, &W::eUnix, &W::eTCP519, &W::eUDP519, &C::ReqTCP519, &C::ReqUDP519},
    {6, &W::eCVLS, &W::eTCP3777, &W::eUDP3777, &C::ReqTCP3777, &C::ReqUDP3777},
};

constexpr const char *NothingEnabled =
    "Server is: Disabled\r\nTCP: OFF - UDP: OFF\r\nRequests: 0/t - 0/u";

class PanelsTest : public testing::Test {
 protected:
  /// Expects one panel to be up, 0 to 4, and no other.
  void ExpectUp(std::size_t panel) {
    for (std::size_t each = 0; each < 5; ++each) {
      EXPECT_EQ(Window.proto_f[each].Visible, each == panel) << each;
      EXPECT_EQ(Window.CVLRemHost[each].Visible, each == panel) << each;
    }
  }

  RunState State;
  MainWindow Window;
  Panels Panel{Window, State};
};

TEST_F(PanelsTest, EachNodePutsItsPanelUp) {
  for (const Row &row : Rows) {
    Panel.CVLSelected(row.Node);
    EXPECT_EQ(Panel.PanelNode(), row.Node - 1);
    ExpectUp(static_cast<std::size_t>(row.Node - 2));
  }
}

TEST_F(PanelsTest, TheRootPutsTheFirstPanelUp) {
  Panel.CVLSelected(6);
  Panel.CVLSelected(1);
  EXPECT_EQ(Panel.PanelNode(), 1);
  ExpectUp(0);
}

TEST_F(PanelsTest, EachPanelReadsItsOwnBoxesAndCounters) {
  for (const Row &row : Rows) {
    for (const auto box : {row.Enable, row.Tcp, row.Udp}) {
      State = {};
      State.Requests.*row.TcpCount = 12;
      State.Requests.*row.UdpCount = 34;
      (Window.*box).SetValue(Tick::On);
      Panel.CVLSelected(row.Node);
      const std::string expected =
          std::string("Server is: ") + (box == row.Enable ? "Enabled" : "Disabled") +
          (box == row.Tcp ? "\r\nTCP: ON - " : "\r\nTCP: OFF - ") +
          (box == row.Udp ? "UDP: ON" : "UDP: OFF") + "\r\nRequests: 12/t - 34/u";
      EXPECT_EQ(Panel.StatusText(), expected) << row.Node;
      (Window.*box).SetValue(Tick::Off);
    }
  }
}

TEST_F(PanelsTest, AllOnReadsSo) {
  Window.eSNTP.SetValue(Tick::On);
  Window.eTCP123.SetValue(Tick::On);
  Window.eUDP123.SetValue(Tick::On);
  Panel.CVLSelected(4);
  EXPECT_EQ(Panel.StatusText(), "Server is: Enabled\r\nTCP: ON - UDP: ON\r\nRequests: 0/t - 0/u");
}

TEST_F(PanelsTest, TheTextIsShownInAWindow) {
  State.Flags.Interactive = true;
  Panel.CVLSelected(2);
  EXPECT_EQ(Window.svrStatlbl.Caption, NothingEnabled);
}

TEST_F(PanelsTest, WithoutAWindowTheTextIsBuiltAndNotShown) {
  Panel.CVLSelected(2);
  EXPECT_EQ(Panel.StatusText(), NothingEnabled);
  EXPECT_EQ(Window.svrStatlbl.Caption, "Server is: ON");
}

TEST_F(PanelsTest, TheLastTwoNodesOpenWindowsAndChangeNothingElse) {
  State.Flags.Interactive = true;
  int about_boxes = 0;
  int configurations = 0;
  Panel.ShowAboutBox = [&] { ++about_boxes; };
  Panel.ShowConfiguration = [&] { ++configurations; };
  Panel.CVLSelected(4);
  Window.eSNTP.SetValue(Tick::On);
  State.Requests.ReqUDP123 = 5;
  Window.svrStatlbl.Caption = "as it was";

  Panel.CVLSelected(7);
  EXPECT_EQ(about_boxes, 1);
  EXPECT_EQ(configurations, 0);
  Panel.CVLSelected(8);
  EXPECT_EQ(about_boxes, 1);
  EXPECT_EQ(configurations, 1);

  EXPECT_EQ(Panel.PanelNode(), 3);
  ExpectUp(2);
  EXPECT_EQ(Panel.StatusText(), NothingEnabled);
  EXPECT_EQ(Window.svrStatlbl.Caption, "as it was");
}

TEST_F(PanelsTest, WithoutTheirWindowsTheLastTwoNodesAreHarmless) {
  Panel.CVLSelected(7);
  Panel.CVLSelected(8);
  EXPECT_EQ(Panel.PanelNode(), 0);
}

TEST_F(PanelsTest, AnyOtherNumberOnlyRedraws) {
  State.Flags.Interactive = true;
  Panel.CVLSelected(4);
  Window.eSNTP.SetValue(Tick::On);
  State.Requests.ReqUDP123 = 5;
  for (const int node : {0, 9, -1, 32767, -32768}) {
    Window.svrStatlbl.Caption = "old";
    Window.proto_f[0].Visible = true;
    Panel.CVLSelected(static_cast<std::int16_t>(node));
    EXPECT_EQ(Panel.PanelNode(), 3);
    ExpectUp(2);
    EXPECT_EQ(Window.svrStatlbl.Caption, NothingEnabled) << "boxes and counters aren't read";
  }
}

TEST_F(PanelsTest, BeforeTheFirstSelectionARedrawShowsTheFirstPanel) {
  Panel.CVLSelected(0);
  EXPECT_EQ(Panel.PanelNode(), 0);
  ExpectUp(0);
  EXPECT_EQ(Panel.StatusText(), NothingEnabled);
}

TEST_F(PanelsTest, RefreshingCopiesTheCountersAndNotTheBoxes) {
  Panel.CVLSelected(3);
  Window.eDTS.SetValue(Tick::On);
  State.Requests.ReqTCP13 = 8;
  State.Requests.ReqUDP13 = 9;
  Panel.RefreshCounts();
  EXPECT_EQ(Panel.StatusText(),
            "Server is: Disabled\r\nTCP: OFF - UDP: OFF\r\nRequests: 8/t - 9/u");
}

TEST_F(PanelsTest, RefreshingBeforeTheFirstSelectionLeavesTheCounts) {
  State.Requests.ReqTCP37 = 8;
  Panel.RefreshCounts();
  EXPECT_EQ(Panel.StatusText(), NothingEnabled);
}

TEST_F(PanelsTest, RefreshingDrawsNothing) {
  State.Flags.Interactive = true;
  Panel.CVLSelected(2);
  State.Requests.ReqTCP37 = 8;
  Panel.RefreshCounts();
  EXPECT_EQ(Window.svrStatlbl.Caption, NothingEnabled);
}

}  // namespace
}  // namespace cvl
