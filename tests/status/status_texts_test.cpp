#include "status/status_texts.h"

#include "tests/status/status_bench.h"

namespace cvl {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int32_t Most = 2147483647;

// StatusUp.

class StatusUpTest : public StatusTest {
 protected:
  StatusUpTest() {
    State.Sync.LastSync = DateTime::Of(2002, 11, 14, 9, 20, 0);
    ShowWindow();
  }

  const std::string &Text() const { return State.Status.StatusText.Text(); }
};

TEST_F(StatusUpTest, TheTextSumsUpTheRequests) {
  RequestCounters &requests = State.Requests;
  requests.ReqTCP37 = 4;
  requests.ReqUDP37 = 6;
  requests.ReqTCP13 = 12;
  requests.ReqUDP13 = 8;
  requests.ReqTCP123 = 4;
  requests.ReqUDP123 = 1196;
  requests.ReqTCP519 = 4;
  Texts.StatusUp();
  EXPECT_EQ(Text(),
            "Server Status: 11/14/2002 9:26:13 AM\r"
            "# 1234 | /T 10 | /D 20 | /S 1200 | /U 4 | /CVL 0\r"
            "# UDP: 1210 --- # TCP: 24\r"
            "Last Atomic Update: 11/14/2002 9:20:00 AM");
}

TEST_F(StatusUpTest, EachCounterHasItsPlaces) {
  State.Requests = {.ReqTCP13 = 1,
                    .ReqUDP13 = 2,
                    .ReqTCP37 = 10,
                    .ReqUDP37 = 20,
                    .ReqTCP123 = 100,
                    .ReqUDP123 = 200,
                    .ReqTCP519 = 1000,
                    .ReqUDP519 = 2000,
                    .ReqTCP3777 = 10000,
                    .ReqUDP3777 = 20000};
  Texts.StatusUp();
  EXPECT_NE(Text().find("# 33333 | /T 30 | /D 3 | /S 300 | /U 3000 | /CVL 30000\r"
                        "# UDP: 22222 --- # TCP: 11111\r"),
            std::string::npos)
      << Text();
}

TEST_F(StatusUpTest, WithoutAWindowNoTextIsBuilt) {
  State.Flags.Interactive = false;
  State.Requests.ReqTCP37 = Most;
  State.Requests.ReqUDP37 = 1;
  EXPECT_NO_THROW(Texts.StatusUp());
  EXPECT_EQ(Text(), "");
  EXPECT_EQ(Panel.StatusText(), "");
}

TEST_F(StatusUpTest, ASumBeyond32BitsRaises6) {
  struct Row {
    std::int32_t RequestCounters::*One;
    std::int32_t RequestCounters::*Other;
  };
  using C = RequestCounters;
  for (const Row &row : {Row{&C::ReqTCP37, &C::ReqUDP37}, Row{&C::ReqTCP13, &C::ReqUDP13},
                         Row{&C::ReqTCP123, &C::ReqUDP123}, Row{&C::ReqTCP519, &C::ReqUDP519},
                         Row{&C::ReqTCP3777, &C::ReqUDP3777}, Row{&C::ReqUDP37, &C::ReqUDP13},
                         Row{&C::ReqTCP37, &C::ReqTCP519}, Row{&C::ReqUDP123, &C::ReqTCP13}}) {
    State.Requests = {};
    State.Requests.*row.One = Most;
    EXPECT_NO_THROW(Texts.StatusUp());
    State.Status.StatusText.Set("old");
    State.Requests.*row.Other = 1;
    ExpectRuntimeError(6, [&] { Texts.StatusUp(); });
    EXPECT_EQ(Text(), "old");
  }
}

TEST_F(StatusUpTest, ThePanelsCountsAndTextFollow) {
  Panel.CVLSelected(4);
  State.Requests.ReqTCP123 = 7;
  State.Requests.ReqUDP123 = 9;
  Texts.StatusUp();
  EXPECT_TRUE(Panel.StatusText().ends_with("\r\nRequests: 7/t - 9/u")) << Panel.StatusText();
}

TEST_F(StatusUpTest, NothingIsDrawn) {
  Panel.CVLSelected(1);
  const std::string label = Window.svrStatlbl.Caption;
  State.Requests.ReqTCP37 = 7;
  Texts.StatusUp();
  EXPECT_EQ(Window.svrStatlbl.Caption, label);
  EXPECT_EQ(Window.Status.Caption, "Synchronizing CVL Server...please wait.");
}

// UpdateSZTIP.

class UpdateSztipTest : public StatusTest {
 protected:
  UpdateSztipTest() {
    Window.Servers.Add("One NA", 5);
    Window.Servers.Add("Two NA", 9);
    Window.Servers.Select(2);
  }

  void ShowTip(const char *tip) {
    State.Status.TipText = tip;
    Texts.UpdateSZTIP();
  }
};

TEST_F(UpdateSztipTest, WithoutAWindowNothingHappens) {
  Window.State = WindowState::Minimized;
  Window.LED[0].Image = LampLitImage;
  ShowTip("Checking");
  Window.State = WindowState::Normal;
  ShowTip("Checking");
  EXPECT_THAT(Tray.Calls, IsEmpty());
  EXPECT_EQ(Window.LED[0].Image, LampLitImage);
}

TEST_F(UpdateSztipTest, AnOpenWindowGetsItsLampsPutOutAndNoTray) {
  ShowWindow();
  Window.LED[0].Image = LampLitImage;
  Window.LED[1].Image = LampLitImage;
  Window.LED[2].Image = LampLitImage;
  ShowTip("Checking");
  EXPECT_EQ(Window.LED[0].Image, LampDarkImage);
  EXPECT_EQ(Window.LED[1].Image, LampDarkImage);
  EXPECT_EQ(Window.LED[2].Image, LampLitImage);
  EXPECT_THAT(Tray.Calls, IsEmpty());
}

TEST_F(UpdateSztipTest, AMaximisedWindowHasTheSourceLampPutOutAlone) {
  ShowWindow(WindowState::Maximized);
  Window.LED[0].Image = LampLitImage;
  Window.LED[1].Image = LampLitImage;
  ShowTip("Checking");
  EXPECT_EQ(Window.LED[0].Image, LampDarkImage);
  EXPECT_EQ(Window.LED[1].Image, LampLitImage);
}

TEST_F(UpdateSztipTest, AMinimisedWindowLeavesItsLamps) {
  ShowWindow(WindowState::Minimized);
  Window.LED[0].Image = LampLitImage;
  ShowTip("Checking");
  EXPECT_EQ(Window.LED[0].Image, LampLitImage);
}

TEST_F(UpdateSztipTest, TheWordInTheTipChoosesTheIcon) {
  ShowWindow(WindowState::Minimized);
  struct Row {
    const char *Tip;
    int Icon;
  };
  for (const Row &row :
       {Row{"No Adjustment, Adjusted, Checking", 0}, Row{"Checking Adjusted", 1},
        Row{"now Checking x", 9}, Row{"an Adjusted x", 1}, Row{"No Adjustment needed", 0}}) {
    ShowTip(row.Tip);
    EXPECT_EQ(Tray.Calls.back().Message, TrayMessage::Modify);
    EXPECT_EQ(Tray.Calls.back().Icon, row.Icon) << row.Tip;
    EXPECT_EQ(State.Status.TrayImage, row.Icon) << row.Tip;
  }
  EXPECT_THAT(Tray.Calls, SizeIs(5));
}

TEST_F(UpdateSztipTest, ATipWithoutAWordKeepsTheIconAndShowsTheText) {
  ShowWindow(WindowState::Minimized);
  ShowTip("Adjusted");
  for (const char *tip : {"hello", "adjusted", "CHECKING", "no adjustment"}) {
    ShowTip(tip);
    EXPECT_EQ(Tray.Calls.back().Icon, 1) << tip;
    EXPECT_TRUE(Tray.Calls.back().Tip.starts_with(tip));
  }
  EXPECT_THAT(Tray.Calls, SizeIs(5));
}

TEST_F(UpdateSztipTest, TheTipIsHandedOverInAll64Characters) {
  ShowWindow(WindowState::Minimized);
  ShowTip("hello");
  EXPECT_EQ(Tray.Calls.at(0).Tip, "hello" + std::string(59, ' '));
}

TEST_F(UpdateSztipTest, TheSameTipMakesNoSecondCall) {
  ShowWindow(WindowState::Minimized);
  ShowTip("Checking");
  ShowTip("Checking");
  EXPECT_THAT(Tray.Calls, SizeIs(1));
  ShowTip("Adjusted");
  EXPECT_THAT(Tray.Calls, SizeIs(2));
}

TEST_F(UpdateSztipTest, ATipThatAnOpenWindowSawIsNewToTheTray) {
  ShowWindow();
  ShowTip("Checking");
  Window.State = WindowState::Minimized;
  ShowTip("Checking");
  EXPECT_THAT(Tray.Calls, SizeIs(1));
}

TEST_F(UpdateSztipTest, CheckingWithoutASelectedServerLeavesTheIcon) {
  ShowWindow(WindowState::Minimized);
  ShowTip("Adjusted");
  Window.Servers.Clear();
  ShowTip("Checking");
  ASSERT_THAT(Tray.Calls, SizeIs(2));
  EXPECT_EQ(Tray.Calls[1].Icon, Tray.Calls[0].Icon);
}

}  // namespace
}  // namespace cvl
