// The daylight indicator of the Julian text: how many days a change of the clocks is ahead,
// or else which period holds. It follows a rule of its own, with the changes in April and
// October, on every machine and in every zone; what the system knows of zones plays no part.

#pragma once

#include "base/date_time.h"

namespace cvl {

/// 02:00 on a day from 1 to 7 April of YEAR, when daylight time begins. It is the Sunday
/// among them, but in some years the Saturday, since a quarter of the year's number is
/// rounded and not cut: these are the dates that readers of the text have always been sent.
DateTime AprilChange(int year);

/// 02:00 on a day from 25 to 31 October of YEAR, when daylight time ends: the Sunday, and
/// in the same years the Saturday.
DateTime OctoberChange(int year);

/// What the text that names STAMPED, in UTC, says of the two changes:
///
///   51 to 81   daylight time begins in 0 to 30 days
///   50         daylight time
///   1 to 32    daylight time ends in 0 to 31 days
///   0          standard time
///
/// On the day of a change the new period is shown from 02:00 on, but not in second 00 of a
/// minute. Outside the days that are counted LOCAL_MONTH decides, April to October being
/// daylight time, the days behind the change in October included. Both are meant:
/// DaylightIndicator tests pin them.
int DaylightIndicator(DateTime stamped, DateTime april, DateTime october, int local_month);

}  // namespace cvl
