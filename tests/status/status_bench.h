// The status room with a clock that stands at 14 November 2002, 09:26:13.250, in a zone at
// UTC.

#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "status/lamps.h"
#include "status/status_texts.h"
#include "tests/support/expect_error.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_shell.h"
#include "tests/support/test_loop.h"
#include "time/base_dates.h"
#include "ui/panels.h"

namespace cvl {

class StatusTest : public testing::Test {
 protected:
  StatusTest() {
    SetBaseDates(State.Dates);
    State.Dates.Guard = State.Dates.DateBase100;
    Clock.StandAtUtc(DateTime::Of(2002, 11, 14, 9, 26, 13), 250);
  }

  void ShowWindow(WindowState state = WindowState::Normal) {
    State.Flags.Interactive = true;
    Window.State = state;
    for (Picture &lamp : Window.LED) {
      lamp.Image = LampDarkImage;
    }
  }

  TestLoop Loop;
  FakeClock Clock;
  FakeShell Tray;
  RunState State;
  MainWindow Window;
  TimeEngine Time{Clock, State.Dates, State.Zone, Window.svrCurrent};
  Panels Panel{Window, State};
  Lamps LampRow{Window, State.Flags};
  StatusTexts Texts{State, Window, Panel, LampRow, Time, Tray};
};

}  // namespace cvl
