#include "time/time_engine.h"

#include "base/numbers.h"
#include "time/timestamp_encoder.h"

namespace cvl {

namespace {

/// Seconds from local time to UTC.
std::int32_t BiasSeconds(const TimeZoneInformation &zone) {
  if (zone.Period == ZonePeriod::Daylight) {
    return MultiplyLong(AddLong(zone.Bias, zone.DaylightBias), 60);
  }
  return MultiplyLong(zone.Bias, 60);
}

}  // namespace

TimeEngine::TimeEngine(Clock &clock, const BaseDates &dates, ZoneState &zone, TextBox &svr_current)
    : Clock_(clock), Dates_(dates), Zone_(zone), SvrCurrent_(svr_current) {}

std::int32_t TimeEngine::GrabBias() {
  return BiasSeconds(Clock_.GetTimeZoneInformation());
}

double TimeEngine::SecondsSince(DateTime base) {
  const DateTime local = Now();
  const std::int32_t bias = BiasSeconds(Clock_.ZoneOfReading());
  if (local != Count_.Local || bias != Count_.Bias || base != Count_.Base) {
    Count_ = {local, bias, base, SecondsBetween(base, local.Plus(bias / SecondsPerDay))};
  }
  return Count_.Seconds;
}

NtpTimestamp TimeEngine::StampFrom(DateTime base) {
  const double seconds = SecondsSince(base);
  const int milliseconds = Clock_.GetLocalTime().Milliseconds;
  if (seconds != Last_.Seconds || milliseconds != Last_.Milliseconds) {
    Last_ = {seconds, milliseconds, EncodeTimestamp(seconds, milliseconds)};
  }
  return Last_.Bytes;
}

NtpTimestamp TimeEngine::GrabTime() {
  return StampFrom(Dates_.UseStampEpoch ? Dates_.StampEpoch : Dates_.NTPEpoch);
}

NtpTimestamp TimeEngine::GrabCVLST() {
  return StampFrom(Dates_.ClientEpoch);
}

std::array<std::uint8_t, 4> TimeEngine::GrabTimeValue() {
  return EncodeSeconds(SecondsSince(Dates_.NTPEpoch));
}

void TimeEngine::GrabLocalTime(SystemTime &record) {
  record = Clock_.GetLocalTime();
}

void TimeEngine::svrBIAS() {
  const TimeZoneInformation &zone = Clock_.GetTimeZoneInformation();
  if (zone.Period == ZonePeriod::Daylight) {
    Zone_.TZName = TextOf(zone.DaylightName);
    Zone_.TZBias = AddLong(zone.Bias, zone.DaylightBias);
  } else {
    Zone_.TZName = TextOf(zone.StandardName);
    Zone_.TZBias = zone.Bias;
  }
  SvrCurrent_.Tip.Set(" Time Zone: " + Zone_.TZName + " ");
}

}  // namespace cvl
