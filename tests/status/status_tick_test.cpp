#include "status/status_tick.h"

#include "tests/status/status_bench.h"
#include "tests/support/posted_work.h"

namespace cvl {
namespace {

class StatusTickTest : public StatusTest {
 protected:
  void TickTimes(int count) {
    for (int tick = 0; tick < count; ++tick) {
      Tick.OnTimer();
    }
  }

  const std::string &Shown() const { return Window.svrCurrent.Text(); }

  StatusTick Tick{State, Window, LampRow, Time, Loop};
};

// The clock.

TEST_F(StatusTickTest, TheClockShowsLocalTimeAndUtc) {
  Clock.Zone.Period = ZonePeriod::Daylight;
  Clock.Zone.Bias = 480;
  Clock.Zone.DaylightBias = -60;
  Clock.StandAtLocal(DateTime::Of(2002, 10, 3, 10, 25, 40));
  Tick.OnTimer();
  EXPECT_EQ(Shown(),
            "   THU OCTOBER 3 2002 10:25:40 AM\r\n"
            "   UTC OCTOBER 3 2002 05:25:40 PM\r\n"
            "   Chronvale Server 5100");
}

TEST_F(StatusTickTest, TheClockHasTwelveHours) {
  struct Row {
    int Hour;
    const char *Text;
  };
  for (const Row &row : {Row{0, "12:04:05 AM"}, Row{1, "01:04:05 AM"}, Row{11, "11:04:05 AM"},
                         Row{12, "12:04:05 PM"}, Row{13, "01:04:05 PM"}, Row{23, "11:04:05 PM"}}) {
    Clock.StandAtUtc(DateTime::Of(2003, 2, 28, row.Hour, 4, 5));
    Tick.OnTimer();
    EXPECT_EQ(Shown(), std::string("   FRI FEBRUARY 28 2003 ") + row.Text +
                           "\r\n   UTC FEBRUARY 28 2003 " + row.Text +
                           "\r\n   Chronvale Server 5100");
  }
}

TEST_F(StatusTickTest, UtcMayBeInAnotherYear) {
  Clock.Zone.Bias = 60;
  Clock.StandAtLocal(DateTime::Of(2002, 12, 31, 23, 30, 0));
  Tick.OnTimer();
  EXPECT_EQ(Shown(),
            "   TUE DECEMBER 31 2002 11:30:00 PM\r\n"
            "   UTC JANUARY 1 2003 12:30:00 AM\r\n"
            "   Chronvale Server 5100");
}

TEST_F(StatusTickTest, EachLocalPartReadsTheClockForItself) {
  const std::int64_t last = UtcMsOf(DateTime::Of(2002, 12, 31, 23, 59, 59));
  const std::int64_t first = last + 1000;
  struct Row {
    std::deque<std::int64_t> Script;
    const char *Local;
  };
  // UTC comes first, then weekday, month, day, year and time.
  const Row rows[] = {
      {{last, first}, "WED JANUARY 1 2003 12:00:00 AM"},
      {{last, last, first}, "TUE JANUARY 1 2003 12:00:00 AM"},
      {{last, last, last, first}, "TUE DECEMBER 1 2003 12:00:00 AM"},
      {{last, last, last, last, first}, "TUE DECEMBER 31 2003 12:00:00 AM"},
      {{last, last, last, last, last, first}, "TUE DECEMBER 31 2002 12:00:00 AM"},
  };
  for (const Row &row : rows) {
    Clock.Script = row.Script;
    Tick.OnTimer();
    EXPECT_EQ(Shown(), std::string("   ") + row.Local +
                           "\r\n   UTC DECEMBER 31 2002 11:59:59 PM\r\n   Chronvale Server 5100");
  }
}

TEST_F(StatusTickTest, TheClockRunsWithoutAWindowToo) {
  ASSERT_FALSE(State.Flags.Interactive);
  Tick.OnTimer();
  EXPECT_NE(Shown(), "");
}

// Lamps.

TEST_F(StatusTickTest, ATickPutsFourLampsOutAndLeavesTheSourceLamp) {
  ShowWindow();
  for (Picture &lamp : Window.LED) {
    lamp.Image = LampLitImage;
  }
  Tick.OnTimer();
  EXPECT_EQ(Window.LED[0].Image, LampLitImage);
  for (std::size_t lamp = 1; lamp < 5; ++lamp) {
    EXPECT_EQ(Window.LED[lamp].Image, LampDarkImage) << lamp;
  }
}

// The zone.

TEST_F(StatusTickTest, TheZoneIsReadAnewAtEveryTenthTick) {
  Clock.Zone.Bias = 300;
  Clock.Zone.StandardName = ZoneNameOf(u"Elsewhere");
  TickTimes(9);
  EXPECT_EQ(State.Zone.TZBias, 0);
  TickTimes(1);
  EXPECT_EQ(State.Zone.TZBias, 300);
  EXPECT_EQ(Window.svrCurrent.Tip.Text(), " Time Zone: Elsewhere ");

  Clock.Zone.Bias = 360;
  TickTimes(9);
  EXPECT_EQ(State.Zone.TZBias, 300);
  TickTimes(1);
  EXPECT_EQ(State.Zone.TZBias, 360);
}

TEST_F(StatusTickTest, AChangeOfTheZoneShowsInTheClockAtOnce) {
  Clock.Zone.Bias = 60;
  Tick.OnTimer();
  EXPECT_NE(Shown().find("THU NOVEMBER 14 2002 08:26:13 AM"), std::string::npos);
  EXPECT_NE(Shown().find("UTC NOVEMBER 14 2002 09:26:13 AM"), std::string::npos);
  EXPECT_EQ(State.Zone.TZBias, 0);
}

// The base dates.

TEST_F(StatusTickTest, ALostGuardBringsTheBaseDatesBack) {
  State.Dates.Guard = {};
  State.Dates.DateBase100 = {};
  State.Dates.NTPEpoch = {};
  State.Dates.UnixEpoch = {};
  State.Dates.StampEpoch = DateTime::Of(1978, 8, 3);
  Tick.OnTimer();
  EXPECT_EQ(State.Dates.DateBase100, DateTime::Of(100, 1, 1));
  EXPECT_EQ(State.Dates.Guard, DateTime::Of(100, 1, 1));
  EXPECT_EQ(State.Dates.NTPEpoch, DateTime::Of(1900, 1, 1));
  EXPECT_EQ(State.Dates.UnixEpoch, DateTime::Of(1970, 1, 1));
  EXPECT_EQ(State.Dates.StampEpoch, DateTime::Of(1978, 8, 3));
}

TEST_F(StatusTickTest, TheGuardAloneIsCompared) {
  State.Dates.DateBase100 = {};
  State.Dates.NTPEpoch = {};
  Tick.OnTimer();
  EXPECT_EQ(State.Dates.DateBase100, DateTime{});
  EXPECT_EQ(State.Dates.NTPEpoch, DateTime{});
}

TEST_F(StatusTickTest, PendingEventsRunBehindTheDatesAndBeforeTheLamps) {
  ShowWindow();
  Window.LED[1].Image = LampLitImage;
  State.Dates.Guard = {};
  const PostedWork event(Loop, [&] {
    EXPECT_EQ(State.Dates.Guard, DateTime::Of(100, 1, 1));
    EXPECT_EQ(Window.LED[1].Image, LampLitImage);
  });
  Tick.OnTimer();
  EXPECT_TRUE(event.HasRun);
  EXPECT_EQ(Window.LED[1].Image, LampDarkImage);
}

TEST_F(StatusTickTest, WithItsDatesInPlaceATickLetsNoEventRun) {
  const PostedWork event(Loop, [] {});
  Tick.OnTimer();
  EXPECT_FALSE(event.HasRun);
}

// A pause.

TEST_F(StatusTickTest, APauseStopsClockLampsAndCount) {
  ShowWindow();
  TickTimes(9);
  const std::string shown = Shown();
  Window.LED[1].Image = LampLitImage;
  Clock.Zone.Bias = 300;
  Clock.Pass(1000);
  State.Flags.ServicePaused = true;
  State.Dates.Guard = {};
  TickTimes(5);
  EXPECT_EQ(Shown(), shown);
  EXPECT_EQ(Window.LED[1].Image, LampLitImage);
  EXPECT_EQ(State.Zone.TZBias, 0);
  EXPECT_EQ(State.Dates.Guard, DateTime{});

  State.Flags.ServicePaused = false;
  TickTimes(1);
  EXPECT_NE(Shown(), shown);
  EXPECT_EQ(State.Zone.TZBias, 300) << "the tenth tick that counts";
}

}  // namespace
}  // namespace cvl
