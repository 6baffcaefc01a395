#include "sync/sync_schedule.h"

#include "tests/sync/sync_bench.h"

namespace cvl {
namespace {

class SyncScheduleTest : public SyncTest {
 protected:
  SyncScheduleTest() {
    Schedule.SyncTimeNow = [this] { ++Exchanges; };
    Window.SyncN.OnChange = [this] { Schedule.FilterSyncN(); };
    SyncNow.OnTimer = [this] { Schedule.Tick(); };
  }

  /// The interval that NUMBER and UNIT make.
  std::int32_t SecondsOf(const char *number, const char *unit) {
    Window.SyncN.SetText(number);
    Window.SyncIntC.SetText(unit);
    Schedule.CalcIntC();
    return Schedule.SyncSeconds();
  }

  void TickTimes(int count) {
    for (int tick = 0; tick < count; ++tick) {
      Schedule.Tick();
    }
  }

  int Exchanges = 0;
};

// CalcIntC.

TEST_F(SyncScheduleTest, TheIntervalIsTheNumberTimesTheUnit) {
  EXPECT_EQ(SecondsOf("59", "Second/s"), 59);
  EXPECT_EQ(SecondsOf("59", "Minute/s"), 3540);
  EXPECT_EQ(SecondsOf("59", "Hour/s"), 212400);
  EXPECT_EQ(SecondsOf("59", "Day/s"), 5097600);
}

TEST_F(SyncScheduleTest, TheDesignValuesMake59Minutes) {
  EXPECT_EQ(Schedule.SyncSeconds(), 0);
  Schedule.CalcIntC();
  EXPECT_EQ(Schedule.SyncSeconds(), 3540);
}

TEST_F(SyncScheduleTest, ThreeLettersOfTheUnitDecide) {
  EXPECT_EQ(SecondsOf("1", "Minutes/s"), 60);
  EXPECT_EQ(SecondsOf("1", "Min"), 60);
  EXPECT_EQ(SecondsOf("1", "Secret"), 1);
  EXPECT_EQ(SecondsOf("1", "Houses"), 3600);
}

TEST_F(SyncScheduleTest, AnyOtherUnitIsDays) {
  for (const char *unit : {"", "Se", "sec", "MIN", " Min", "hour", "Day/s", "fortnight"}) {
    EXPECT_EQ(SecondsOf("1", unit), 86400) << unit;
  }
}

TEST_F(SyncScheduleTest, HalvesRoundToTheEvenNumber) {
  EXPECT_EQ(SecondsOf("1.5", "Hour/s"), 2 * 3600);
  EXPECT_EQ(SecondsOf("2.5", "Hour/s"), 2 * 3600);
  EXPECT_EQ(SecondsOf("2.51", "Hour/s"), 3 * 3600);
  EXPECT_EQ(SecondsOf("0.5", "Second/s"), 0);
}

TEST_F(SyncScheduleTest, SignsAndExponentsCount) {
  EXPECT_EQ(SecondsOf("-5", "Minute/s"), -300);
  EXPECT_EQ(SecondsOf("1e3", "Minute/s"), 60000);
  EXPECT_EQ(SecondsOf("", "Minute/s"), 0);
}

TEST_F(SyncScheduleTest, AnIntervalBeyond32BitsRaises6) {
  EXPECT_EQ(SecondsOf("596523", "Hour/s"), 596523 * 3600);
  ExpectRuntimeError(6, [&] { SecondsOf("596524", "Hour/s"); });
  EXPECT_EQ(SecondsOf("24855", "Day/s"), 24855 * 86400);
  ExpectRuntimeError(6, [&] { SecondsOf("24856", "Day/s"); });
  ExpectRuntimeError(6, [&] { SecondsOf("-24856", "Day/s"); });
  EXPECT_EQ(SecondsOf("999999", "Minute/s"), 59999940);
  ExpectRuntimeError(6, [&] { SecondsOf("9e99", "Second/s"); });
  ExpectRuntimeError(6, [&] { SecondsOf("4e9", "Second/s"); });
  EXPECT_EQ(SecondsOf("2e9", "Second/s"), 2000000000);
}

TEST_F(SyncScheduleTest, AFailureKeepsTheInterval) {
  SecondsOf("10", "Hour/s");
  ExpectRuntimeError(6, [&] { SecondsOf("999999", "Day/s"); });
  EXPECT_EQ(Schedule.SyncSeconds(), 36000);
}

TEST_F(SyncScheduleTest, SecondsRestartTheTimersSecond) {
  Window.SyncN.SetText("100");
  Loop.Advance(900);
  Window.SyncIntC.SetText("Second/s");
  Schedule.CalcIntC();

  Loop.Advance(900);
  EXPECT_EQ(Schedule.SyncCount(), 0);
  Loop.Advance(100);
  EXPECT_EQ(Schedule.SyncCount(), 1);
}

TEST_F(SyncScheduleTest, NoOtherUnitRestartsTheTimersSecond) {
  for (const char *unit : {"Minute/s", "Hour/s", "Day/s"}) {
    const std::int32_t before = Schedule.SyncCount();
    Loop.Advance(900);
    SecondsOf("100", unit);
    Loop.Advance(100);
    EXPECT_EQ(Schedule.SyncCount(), before + 1) << unit;
  }
}

TEST_F(SyncScheduleTest, SecondsSwitchOnATimerThatWasOff) {
  SyncNow.SetEnabled(false);
  SecondsOf("1", "Minute/s");
  EXPECT_FALSE(SyncNow.IsEnabled());
  SecondsOf("1", "Second/s");
  EXPECT_TRUE(SyncNow.IsEnabled());
}

// FilterSyncN.

TEST_F(SyncScheduleTest, TheBoxKeepsNumbersAlone) {
  struct Row {
    const char *Typed;
    const char *Kept;
  };
  for (const Row &row :
       {Row{"59", "59"}, Row{"-5", "-5"}, Row{"1.5", "1.5"}, Row{"1e3", "1e3"}, Row{"5x", "5"},
        Row{"abc", ""}, Row{"", ""}, Row{"12ab34", "12"}, Row{"1e", "1"}, Row{"-", ""},
        Row{"1.5.2", "1.5"}, Row{" 7", " 7"}, Row{"7 x", "7 "}, Row{"  ", ""}}) {
    Window.SyncN.SetText("1");
    Window.SyncN.SetText(row.Typed);
    EXPECT_EQ(Window.SyncN.Text(), row.Kept) << row.Typed;
  }
}

TEST_F(SyncScheduleTest, TheBoxHoldsSixCharacters) {
  Window.SyncN.SetText("12345678");
  EXPECT_EQ(Window.SyncN.Text(), "123456");
}

TEST_F(SyncScheduleTest, TypingDoesNotChangeTheSchedule) {
  Schedule.CalcIntC();
  Window.SyncN.SetText("1");
  EXPECT_EQ(Schedule.SyncSeconds(), 3540);
}

// Tick.

TEST_F(SyncScheduleTest, AnExchangeStartsAtEveryNthTick) {
  SecondsOf("3", "Second/s");
  TickTimes(2);
  EXPECT_EQ(Exchanges, 0);
  TickTimes(1);
  EXPECT_EQ(Exchanges, 1);
  EXPECT_EQ(Schedule.SyncCount(), 0);
  TickTimes(2);
  EXPECT_EQ(Exchanges, 1);
  TickTimes(1);
  EXPECT_EQ(Exchanges, 2);
}

TEST_F(SyncScheduleTest, AnIntervalOfZeroOrBelowStartsOneAtEveryTick) {
  EXPECT_EQ(Schedule.SyncSeconds(), 0);
  TickTimes(2);
  EXPECT_EQ(Exchanges, 2);
  SecondsOf("-5", "Second/s");
  TickTimes(2);
  EXPECT_EQ(Exchanges, 4);
}

TEST_F(SyncScheduleTest, TheCountIsPutBackBeforeTheExchange) {
  SecondsOf("2", "Second/s");
  std::int32_t count_inside = -1;
  Schedule.SyncTimeNow = [&] { count_inside = Schedule.SyncCount(); };
  TickTimes(2);
  EXPECT_EQ(count_inside, 0);
}

TEST_F(SyncScheduleTest, WhateverComesOfAnExchangeTheCountStartsAnew) {
  SecondsOf("2", "Second/s");
  Schedule.SyncTimeNow = [this] {
    ++Exchanges;
    throw RuntimeError(6);
  };
  EXPECT_NO_THROW(TickTimes(4));
  EXPECT_EQ(Exchanges, 2);
}

TEST_F(SyncScheduleTest, AShorterIntervalThanTheCountStartsOneAtTheNextTick) {
  SecondsOf("100", "Second/s");
  TickTimes(50);
  SecondsOf("10", "Second/s");
  EXPECT_EQ(Schedule.SyncCount(), 50);

  TickTimes(1);
  EXPECT_EQ(Exchanges, 1);
}

TEST_F(SyncScheduleTest, APauseStopsTheCountWhereItStands) {
  SecondsOf("5", "Second/s");
  TickTimes(3);
  State.Flags.ServicePaused = true;
  TickTimes(10);
  EXPECT_EQ(Schedule.SyncCount(), 3);
  EXPECT_EQ(Exchanges, 0);

  State.Flags.ServicePaused = false;
  TickTimes(1);
  EXPECT_EQ(Exchanges, 0);
  TickTimes(1);
  EXPECT_EQ(Exchanges, 1);
}

TEST_F(SyncScheduleTest, APauseLeavesTheLabelsToo) {
  ShowWindow();
  State.Status.StatusText.Set("text");
  State.Flags.ServicePaused = true;
  TickTimes(1);
  EXPECT_EQ(Window.Status.Caption, "Synchronizing CVL Server...please wait.");
}

TEST_F(SyncScheduleTest, ACountAtItsEndGoesOnWithTheNextStep) {
  SecondsOf("2e9", "Second/s");
  // 2147483647 seconds aren't to be had from six characters; the count gets there by itself.
  Schedule.Hasten(-147483647);
  ASSERT_EQ(Schedule.SyncCount(), 2147483647);
  EXPECT_NO_THROW(TickTimes(1));
  EXPECT_EQ(Exchanges, 1);
  EXPECT_EQ(Schedule.SyncCount(), 0);
}

TEST_F(SyncScheduleTest, HasteningMakesTheNextTickStartOne) {
  for (const std::int32_t left : {0, 1}) {
    SecondsOf("100", "Second/s");
    Exchanges = 0;
    Schedule.Hasten(left);
    EXPECT_EQ(Schedule.SyncCount(), 100 - left);
    TickTimes(1);
    EXPECT_EQ(Exchanges, 1) << left;
  }
}

TEST_F(SyncScheduleTest, TheTimerTicksOnceASecondFromTheBeginning) {
  SecondsOf("100", "Minute/s");
  Loop.Advance(999);
  EXPECT_EQ(Schedule.SyncCount(), 0);
  Loop.Advance(1);
  EXPECT_EQ(Schedule.SyncCount(), 1);
  Loop.Advance(10000);
  EXPECT_EQ(Schedule.SyncCount(), 11);
}

// The labels.

class TickLabelsTest : public SyncScheduleTest {
 protected:
  TickLabelsTest() {
    SecondsOf("100", "Minute/s");
    Panel.CVLSelected(1);
  }
};

TEST_F(TickLabelsTest, TheStatusTextIsCopiedToItsLabel) {
  ShowWindow();
  State.Status.StatusText.Set("text");
  Schedule.Tick();
  EXPECT_EQ(Window.Status.Caption, "text");
}

TEST_F(TickLabelsTest, AnEmptyStatusTextLeavesTheLabelBeforeTheFirstSync) {
  ShowWindow();
  Schedule.Tick();
  EXPECT_EQ(State.Status.StatusText.Text(), "");
  EXPECT_EQ(Window.Status.Caption, "Synchronizing CVL Server...please wait.");
}

TEST_F(TickLabelsTest, AnEmptyStatusTextIsBuiltBehindTheFirstSync) {
  ShowWindow();
  State.Flags.TimeSynced = true;
  Schedule.Tick();
  EXPECT_TRUE(State.Status.StatusText.Text().starts_with("Server Status: 10/3/2002 12:00:00 PM\r"));
  EXPECT_EQ(Window.Status.Caption, "Synchronizing CVL Server...please wait.");

  Schedule.Tick();
  EXPECT_EQ(Window.Status.Caption, State.Status.StatusText.Text());
}

TEST_F(TickLabelsTest, AFailingStatusUpIsPassedOver) {
  ShowWindow();
  State.Flags.TimeSynced = true;
  State.Requests.ReqTCP13 = 2147483647;
  State.Requests.ReqUDP13 = 1;
  Window.svrStatlbl.Caption = "old";
  EXPECT_NO_THROW(Schedule.Tick());
  EXPECT_EQ(Window.svrStatlbl.Caption, Panel.StatusText());
}

TEST_F(TickLabelsTest, ThePanelTextIsCopiedToItsLabel) {
  ShowWindow();
  EXPECT_NE(Window.svrStatlbl.Caption, Panel.StatusText());
  Schedule.Tick();
  EXPECT_EQ(Window.svrStatlbl.Caption, Panel.StatusText());
}

TEST_F(TickLabelsTest, WithoutAWindowNoLabelChanges) {
  State.Status.StatusText.Set("text");
  State.Flags.TimeSynced = true;
  Schedule.Tick();
  EXPECT_EQ(Window.Status.Caption, "Synchronizing CVL Server...please wait.");
  EXPECT_EQ(Window.svrStatlbl.Caption, "Server is: ON");
}

TEST_F(TickLabelsTest, TheLabelsComeBehindTheExchange) {
  ShowWindow();
  SecondsOf("1", "Second/s");
  Schedule.SyncTimeNow = [this] { State.Status.StatusText.Set("from the exchange"); };
  Schedule.Tick();
  EXPECT_EQ(Window.Status.Caption, "from the exchange");
}

}  // namespace
}  // namespace cvl
