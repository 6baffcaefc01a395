#include "status/status_tick.h"

#include <string_view>

#include "base/date_patterns.h"
#include "time/base_dates.h"

namespace cvl {

namespace {

std::string Capitals(std::string_view name) {
  std::string text(name);
  for (char &letter : text) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
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
  const CivilTime utc_parts = PartsOf(utc);
  // Each part of the first line reads the clock for itself, so a second, and with it a day
  // or a year, may turn over in between.
  std::string text = "   ";
  text += Capitals(WeekdayName(PartsOf(Time_.Now())).substr(0, 3));
  text += ' ';
  text += Capitals(MonthName(PartsOf(Time_.Now())));
  text += ' ';
  text += std::to_string(PartsOf(Time_.Now()).Day);
  text += ' ';
  text += std::to_string(PartsOf(Time_.Now()).Year);
  text += ' ';
  AppendTwelveHourTime(text, PartsOf(Time_.Now()));
  text += "\r\n   UTC " + Capitals(MonthName(utc_parts)) + " ";
  text += std::to_string(utc_parts.Day) + " " + std::to_string(utc_parts.Year) + " ";
  AppendTwelveHourTime(text, utc_parts);
  text += "\r\n   Chronvale Server 5100";
  Window_.svrCurrent.SetText(text);
}

}  // namespace cvl
