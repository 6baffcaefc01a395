#include "status/tray_entry.h"

#include <gtest/gtest.h>

#include "tests/status/status_bench.h"
#include "tests/support/fake_shell.h"

namespace cvl {
namespace {

class TrayEntryTest : public StatusTest {
 protected:
  TrayEntryTest() {
    State.Flags.Interactive = true;
    Window.Visible = true;
    State.Status.TipText = "Chronvale SERVER";
    Panel.CVLSelected(4);
    Window.mnuMain.OnPopUp = [this] {
      ++Menus;
      ForegroundCallsBeforeTheMenu = Tray.ForegroundCalls;
    };
  }

  std::string PaddedTip() const { return State.Status.TipText.Text(); }

  int Menus = 0;
  int ForegroundCallsBeforeTheMenu = 0;
  TrayEntry Entry{Window, State, Panel, Texts, Tray};
};

TEST_F(TrayEntryTest, MinimisingTakesTheWindowOffTheScreenAndAddsTheEntry) {
  Entry.OnResize(WindowState::Minimized);
  EXPECT_FALSE(Window.Visible);
  EXPECT_EQ(Window.State, WindowState::Minimized);
  ASSERT_FALSE(Tray.Calls.empty());
  EXPECT_EQ(Tray.Calls.back(), (FakeShell::Call{TrayMessage::Add, 0, PaddedTip()}));
}

TEST_F(TrayEntryTest, TheTipIsBroughtUpToDateBeforeTheEntryIsAdded) {
  State.Status.TipText = "Time Adjusted";
  Entry.OnResize(WindowState::Minimized);
  ASSERT_EQ(Tray.Calls.size(), 2u);
  EXPECT_EQ(Tray.Calls[0], (FakeShell::Call{TrayMessage::Modify, 1, PaddedTip()}));
  EXPECT_EQ(Tray.Calls[1], (FakeShell::Call{TrayMessage::Add, 1, PaddedTip()}));
}

TEST_F(TrayEntryTest, EveryOtherResizeRemovesTheEntryWhetherItIsThereOrNot) {
  for (const WindowState state : {WindowState::Normal, WindowState::Maximized}) {
    Tray.Calls.clear();
    Entry.OnResize(state);
    EXPECT_EQ(Window.State, state);
    EXPECT_TRUE(Window.Visible);
    ASSERT_EQ(Tray.Calls.size(), 1u);
    EXPECT_EQ(Tray.Calls[0].Message, TrayMessage::Remove);
  }
}

TEST_F(TrayEntryTest, AResizeRefreshesThePanelThatIsUp) {
  State.Requests.ReqUDP123 = 7;
  Entry.OnResize(WindowState::Normal);
  EXPECT_EQ(Panel.PanelNode(), 3);
  EXPECT_EQ(Window.svrStatlbl.Caption,
            "Server is: Disabled\r\nTCP: OFF - UDP: OFF\r\nRequests: 0/t - 7/u");
}

TEST_F(TrayEntryTest, AResizeBeforeTheFirstSelectionPutsTheFirstPanelUp) {
  Panels fresh{Window, State};
  TrayEntry entry{Window, State, fresh, Texts, Tray};
  entry.OnResize(WindowState::Normal);
  EXPECT_EQ(fresh.PanelNode(), 1);
}

TEST_F(TrayEntryTest, ALeftClickOnTheEntryBringsTheWindowBack) {
  for (const TrayEvent event : {TrayEvent::LeftUp, TrayEvent::LeftDoubleClick}) {
    Entry.OnResize(WindowState::Minimized);
    Tray.Calls.clear();
    Entry.OnTrayEvent(event);
    EXPECT_TRUE(Window.Visible);
    EXPECT_EQ(Window.State, WindowState::Normal);
    ASSERT_EQ(Tray.Calls.size(), 1u);
    EXPECT_EQ(Tray.Calls[0].Message, TrayMessage::Remove);
    EXPECT_EQ(Menus, 0);
  }
}

TEST_F(TrayEntryTest, ARightClickOpensTheMenuWithTheWindowHidden) {
  Entry.OnResize(WindowState::Minimized);
  Entry.OnTrayEvent(TrayEvent::RightUp);
  EXPECT_EQ(Menus, 1);
  EXPECT_EQ(ForegroundCallsBeforeTheMenu, 1);
  EXPECT_FALSE(Window.Visible);
  EXPECT_EQ(Window.State, WindowState::Minimized);
}

TEST_F(TrayEntryTest, AnyOtherMessageDoesNothing) {
  Entry.OnResize(WindowState::Minimized);
  Tray.Calls.clear();
  for (const int message : {0, 512, 513, 516, 518}) {
    Entry.OnTrayEvent(static_cast<TrayEvent>(message));
  }
  EXPECT_TRUE(Tray.Calls.empty());
  EXPECT_EQ(Menus, 0);
  EXPECT_FALSE(Window.Visible);
}

TEST_F(TrayEntryTest, AMinimisedWindowLeavesTheLampsAlone) {
  Window.LED[1].Image = LampLitImage;
  Entry.OnResize(WindowState::Minimized);
  LampRow.DataInC();
  EXPECT_EQ(Window.LED[1].Image, LampLitImage);
}

}  // namespace
}  // namespace cvl
