#include "sync/server_draw.h"

#include "base/failure_modes.h"
#include "base/numbers.h"

namespace cvl {

namespace {

bool EndsIn(const std::string &text, const std::string &code) {
  // A text shorter than a region code has no last two characters to compare.
  return text.size() >= 2 && std::string_view(text).substr(text.size() - 2) == code;
}

/// Seconds since midnight with their milliseconds.
double TimeOfDay(const SystemTime &local) {
  return local.Hour * 3600.0 + local.Minute * 60.0 + local.Second + local.Milliseconds / 1000.0;
}

}  // namespace

ServerDraw::ServerDraw(MainWindow &window, RunState &state, ServerList &servers, TimeEngine &time)
    : Window_(window), State_(state), Servers_(servers), Time_(time) {}

void ServerDraw::CalcRandR() {
  RegionCount_ = 0;
  for (std::int32_t item = 1; item <= Window_.Servers.Count(); ++item) {
    if (!EndsIn(Window_.Servers.At(item).Text, State_.RegionCode)) continue;
    if (RegionCount_ == MostServers) throw RuntimeError(error_number::SubscriptOutOfRange);
    RegionServers_[static_cast<std::size_t>(RegionCount_)] = ToInteger(item);
    ++RegionCount_;
  }
}

void ServerDraw::ChooseRegion(std::string_view entry) {
  State_.RegionCode = entry.substr(0, 2);
  CalcRandR();
}

void ServerDraw::GrabRandom() {
  ContinueOnFailure mode;
  const std::int32_t n = RegionCount_ - 1;
  float draw = 0;
  mode.Step([&] {
    // Put back to its fixed start first, and meant so: the time of day alone decides.
    SystemTime local;
    Time_.GrabLocalTime(local);
    Random_.Reset(-1);
    Random_.Seed(TimeOfDay(local));
    draw = Random_.Draw();
  });
  mode.Step([&] { ServerIndex_ = ToLong(static_cast<double>(draw) * n + 1); });
  mode.Step([&] {
    const std::int32_t place = ServerIndex_ - 1;
    if (place < 0 || place >= MostServers) throw RuntimeError(error_number::SubscriptOutOfRange);
    ServerIndex_ = RegionServers_[static_cast<std::size_t>(place)];
  });
  mode.Step([&] { Servers_.CurrentServer = Servers_.Host(ServerIndex_); });
  mode.Step([&] { Window_.Servers.Select(ServerIndex_); });
}

}  // namespace cvl
