#include "status/status_tick.h"

#include <array>
#include <cstdio>

#include "time/base_dates.h"

namespace cvl {

namespace {

constexpr std::array<const char *, 12> Months = {"JANUARY",   "FEBRUARY", "MARCH",    "APRIL",
                                                 "MAY",       "JUNE",     "JULY",     "AUGUST",
                                                 "SEPTEMBER", "OCTOBER",  "NOVEMBER", "DECEMBER"};
constexpr std::array<const char *, 7> Weekdays = {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};

/// "OCTOBER 3 2002 "
std::string DateText(DateTime moment) {
  const CivilTime parts = PartsOf(moment);
  return std::string(Months[static_cast<std::size_t>(parts.Month - 1)]) + " " +
         std::to_string(parts.Day) + " " + std::to_string(parts.Year) + " ";
}

/// "05:25:40 PM"
std::string TimeText(DateTime moment) {
  const CivilTime parts = PartsOf(moment);
  char text[40];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d %s", parts.Hour % 12 == 0 ? 12 : parts.Hour % 12,
                parts.Minute, parts.Second, parts.Hour < 12 ? "AM" : "PM");
  return text;
}

}  // namespace

StatusTick::StatusTick(RunState &state, MainWindow &window, Lamps &lamps, TimeEngine &time,
                       EventLoop &loop)
    : State_(state), Window_(window), Lamps_(lamps), Time_(time), Loop_(loop) {}

void StatusTick::OnTimer() {
  if (State_.Flags.ServicePaused) return;
  KeepBaseDates();
  Lamps_.DataInC();
  Lamps_.DataOutC();
  Lamps_.TCPInC();
  Lamps_.UDPInC();
  if (++BiasTicks_ == TicksPerBias) {
    BiasTicks_ = 0;
    Time_.svrBIAS();
  }
  ShowClock();
}

void StatusTick::KeepBaseDates() {
  BaseDates &dates = State_.Dates;
  if (dates.Guard == FirstOfYear100()) return;
  SetBaseDates(dates);
  dates.Guard = dates.DateBase100;
  Loop_.RunOnePass();
}

void StatusTick::ShowClock() {
  const DateTime utc = Time_.Now().Plus(Time_.GrabBias() / SecondsPerDay);
  const std::string weekday = Weekdays[static_cast<std::size_t>(PartsOf(Time_.Now()).DayOfWeek)];
  Window_.svrCurrent.SetText("   " + weekday + " " + DateText(Time_.Now()) + TimeText(Time_.Now()) +
                             "\r\n   UTC " + DateText(utc) + TimeText(utc) +
                             "\r\n   Chronvale Server 5100");
}

}  // namespace cvl
