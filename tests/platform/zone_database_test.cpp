// The clock in every zone of the database, around every change from 2000 to 2037.

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <set>
#include <string>
#include <vector>

#include "platform/linux/linux_clock.h"
#include "tests/platform/standing_clock.h"
#include "tests/platform/zone_database.h"

namespace cvl {
namespace {

constexpr std::time_t Day = 86400;
constexpr std::time_t Week = 7 * Day;
// A day within the years at both ends, so that it is one of these years in every zone.
constexpr std::time_t FirstDay = 946684800 + Day;  // 2 January 2000
constexpr std::time_t LastDay = 2145916800 - Day;  // 31 December 2037

tm LocalOf(std::time_t moment) {
  tm local{};
  localtime_r(&moment, &local);
  return local;
}

bool IsSameRule(std::time_t a, std::time_t b) {
  const tm first = LocalOf(a);
  const tm second = LocalOf(b);
  return first.tm_gmtoff == second.tm_gmtoff && first.tm_isdst == second.tm_isdst &&
         std::string(first.tm_zone) == second.tm_zone;
}

/// What the zone that the process is in does from 2000 to 2037, as the C library has it.
struct ZoneStory {
  /// The first second of each new rule.
  std::vector<std::time_t> Changes;
  /// The years of local time in which there is daylight time.
  std::set<int> DaylightYears;

  ZoneStory() {
    // No rule lasts less than a week, so that a step of one finds each change.
    std::time_t rule_begins = FirstDay - Week;
    for (std::time_t from = rule_begins; from < LastDay + Week; from += Week) {
      const std::time_t until = from + Week;
      if (IsSameRule(from, until)) continue;
      Changes.push_back(FindChange(from, until));
      NoteRule(rule_begins, Changes.back() - 1);
      rule_begins = Changes.back();
    }
    NoteRule(rule_begins, LastDay + Week);
  }

 private:
  static std::time_t FindChange(std::time_t before, std::time_t behind) {
    while (behind - before > 1) {
      const std::time_t middle = before + (behind - before) / 2;
      (IsSameRule(before, middle) ? before : behind) = middle;
    }
    return behind;
  }

  void NoteRule(std::time_t first, std::time_t last) {
    if (LocalOf(first).tm_isdst == 0) return;
    for (int year = LocalOf(first).tm_year; year <= LocalOf(last).tm_year; ++year) {
      DaylightYears.insert(year + 1900);
    }
  }
};

class EveryZone : public testing::Test {
 protected:
  /// Compares what CLOCK says at MOMENT with the zone database.
  void ExpectTruth(LinuxClock &clock, std::time_t moment, const ZoneStory &story) {
    const tm local = LocalOf(moment);
    const bool daylight = local.tm_isdst > 0;
    System.StandAt(moment);
    const auto local_second =
        static_cast<std::time_t>(SecondsBetween(DateTime{DaysTo1970}, clock.Now()));
    const TimeZoneInformation &zone = clock.GetTimeZoneInformation();
    const std::int32_t bias =
        zone.Period == ZonePeriod::Daylight ? zone.Bias + zone.DaylightBias : zone.Bias;

    ASSERT_EQ(local_second + bias * 60, moment);
    ASSERT_EQ(local_second, moment + local.tm_gmtoff) << moment;
    ASSERT_EQ(zone.Period, !story.DaylightYears.contains(local.tm_year + 1900) ? ZonePeriod::Unknown
                           : daylight ? ZonePeriod::Daylight
                                      : ZonePeriod::Standard)
        << moment;
    ASSERT_EQ(NameText(daylight ? zone.DaylightName : zone.StandardName), local.tm_zone) << moment;
    ASSERT_NE(NameText(daylight ? zone.StandardName : zone.DaylightName), "") << moment;
  }

  StandingClock System;
};

TEST_F(EveryZone, HasLocalTimeAndBiasThatMakeUtcAroundEveryChange) {
  const std::vector<std::filesystem::path> zones = DistinctZoneFiles();
  ASSERT_GT(zones.size(), 100U) << "no zone database to test against";
  std::size_t changes = 0;
  for (const std::filesystem::path &file : zones) {
    SCOPED_TRACE(file);
    const ZoneSetting zone(std::string(":").append(file.string()));
    const ZoneStory story;
    LinuxClock clock;
    std::set<std::time_t> moments;
    for (std::time_t moment = FirstDay; moment < LastDay; moment += 5 * Week + 13 * 3601) {
      moments.insert(moment);
    }
    for (const std::time_t change : story.Changes) {
      if (change <= FirstDay || change >= LastDay) continue;
      moments.insert({change - 1, change, change + 1});
      ++changes;
    }
    for (const std::time_t moment : moments) {
      ExpectTruth(clock, moment, story);
      if (HasFatalFailure()) break;
    }
  }
  EXPECT_GT(changes, 1000U);
}

TEST_F(EveryZone, IsFollowedBackwardsThroughAStep) {
  const ZoneSetting zone("Europe/Vienna");
  const ZoneStory story;
  LinuxClock clock;
  std::vector<std::time_t> moments = story.Changes;
  ASSERT_GT(moments.size(), 70U);
  for (auto change = moments.rbegin(); change != moments.rend(); ++change) {
    for (const std::time_t moment : {*change + 1, *change, *change - 1}) {
      ASSERT_NO_FATAL_FAILURE(ExpectTruth(clock, moment, story));
    }
  }
}

}  // namespace
}  // namespace cvl
