#include "platform/clock.h"

#include <chrono>

namespace cvl {

bool IsSettable(const SystemTime &moment) {
  const std::chrono::year_month_day date{std::chrono::year{moment.Year},
                                         std::chrono::month{moment.Month},
                                         std::chrono::day{moment.Day}};
  return moment.Year >= 1601 && date.ok() && moment.Hour <= 23 && moment.Minute <= 59 &&
         moment.Second <= 59 && moment.Milliseconds <= 999;
}

}  // namespace cvl
