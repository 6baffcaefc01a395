// A clock whose zone file is exchanged under it. /etc/localtime itself is needed, so this
// takes place in a mount namespace of a process of its own.

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/linux_clock.h"
#include "tests/platform/standing_clock.h"
#include "tests/platform/zone_database.h"

namespace cvl {
namespace {

constexpr std::time_t Summer2002 = 1025524800;  // 1 July 2002, 12:00:00 UTC

bool LayOver(const char *zone_file) {
  return mount(zone_file, "/etc/localtime", nullptr, MS_BIND, nullptr) == 0;
}

/// The bias in force, or 9999 where the local time doesn't belong to it.
std::int32_t BiasAt(StandingClock &system, LinuxClock &clock, std::time_t second) {
  system.StandAt(second);
  const double local = SecondsBetween(DateTime{DaysTo1970}, clock.Now());
  const TimeZoneInformation &zone = clock.GetTimeZoneInformation();
  const std::int32_t bias =
      zone.Period == ZonePeriod::Daylight ? zone.Bias + zone.DaylightBias : zone.Bias;
  return local + bias * 60 == static_cast<double>(second) ? bias : 9999;
}

enum Outcome { AllWell, NoNamespace, BiasNotSeen, PeriodNotSeen };

struct Exchange {
  const char *ZoneFile;
  std::int32_t Bias;
  ZonePeriod Period;
};

// The year stays the same, but what there is to know of it is another zone's each time.
constexpr Exchange Exchanges[] = {
    {"/usr/share/zoneinfo/Europe/Vienna", -120, ZonePeriod::Daylight},
    {"/usr/share/zoneinfo/Asia/Kolkata", -330, ZonePeriod::Unknown},
    {"/usr/share/zoneinfo/America/New_York", 240, ZonePeriod::Daylight},
    {"/usr/share/zoneinfo/Australia/Sydney", -600, ZonePeriod::Standard},
};

Outcome ExchangeZoneFiles() {
  if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return NoNamespace;
  const ZoneSetting no_zone(std::nullopt);
  StandingClock system;
  LinuxClock clock;
  std::time_t second = Summer2002;
  BiasAt(system, clock, second);
  for (const Exchange &exchange : Exchanges) {
    if (!LayOver(exchange.ZoneFile)) return NoNamespace;
    if (BiasAt(system, clock, ++second) != exchange.Bias) return BiasNotSeen;
    if (clock.GetTimeZoneInformation().Period != exchange.Period) return PeriodNotSeen;
  }
  return AllWell;
}

TEST(ZoneFile, IsFeltWithinASecondWhenItChanges) {
  ASSERT_EQ(access("/etc/localtime", R_OK), 0) << "the machine needs a zone file: tzdata";
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) _exit(ExchangeZoneFiles());
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  ASSERT_NE(WEXITSTATUS(status), NoNamespace) << "no namespace of its own to be had";
  EXPECT_EQ(WEXITSTATUS(status), AllWell);
}

}  // namespace
}  // namespace cvl
