// The longer of the two texts of the Daytime service: one line in the field order of the
// published NIST daytime text.
//
//   "\n52550 02-10-03 17:25:41 25 0 0 750.0 UTC(CVLS) *\n"

#pragma once

#include <string>

#include "state/run_state.h"
#include "time/time_engine.h"

namespace cvl {

/// The present moment: Modified Julian Date, date and time in UTC, daylight indicator, leap
/// second and health, and the milliseconds from now until the second that is named, which
/// is the coming one. In the last second of a day the date is the next day's already, while
/// the Julian date is still this day's. On a whole second the advance is 1000.0 and the
/// line a byte longer. Both are meant: GrabMJulian tests pin them.
///
/// The clock is read several times; a second that turns over in between isn't guarded.
/// Failures: neither trap nor continue.
std::string GrabMJulian(TimeEngine &time, const BaseDates &dates, const ZoneState &zone);

}  // namespace cvl
