// The base dates from their calendar dates.

#pragma once

#include "state/run_state.h"

namespace cvl {

/// 1 January 100 on the proleptic Gregorian calendar.
inline DateTime FirstOfYear100() {
  return DateTime::Of(100, 1, 1);
}

/// Sets the dates that the services count from: DateBase100, NTPEpoch and UnixEpoch.
inline void SetBaseDates(BaseDates &dates) {
  dates.DateBase100 = FirstOfYear100();
  dates.NTPEpoch = DateTime::Of(1900, 1, 1);
  dates.UnixEpoch = DateTime::Of(1970, 1, 1);
}

}  // namespace cvl
