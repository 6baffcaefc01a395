#include "platform/clock.h"

#include <chrono>

namespace cvl {

std::string TextOf(const ZoneName &name) {
  std::string text;
  for (const char16_t unit : name) {
    if (unit == 0) break;
    text += unit <= 0xFF ? static_cast<char>(unit) : '?';
  }
  return text;
}

bool IsSettable(const SystemTime &moment) {
  // The calendar's own types are too narrow for these fields and would wrap.
  constexpr int LastYear = 30827;
  if (moment.Year > LastYear || moment.Month > 12 || moment.Day > 31) return false;
  const std::chrono::year_month_day date{std::chrono::year{moment.Year},
                                         std::chrono::month{moment.Month},
                                         std::chrono::day{moment.Day}};
  return moment.Year >= 1601 && date.ok() && moment.Hour <= 23 && moment.Minute <= 59 &&
         moment.Second <= 59 && moment.Milliseconds <= 999;
}

}  // namespace cvl
