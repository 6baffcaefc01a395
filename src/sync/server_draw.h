// Drawing a server of the chosen region at random.

#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "base/random_generator.h"
#include "state/main_window.h"
#include "state/run_state.h"
#include "sync/server_list.h"
#include "time/time_engine.h"

namespace cvl {

class ServerDraw {
 public:
  ServerDraw(MainWindow &window, RunState &state, ServerList &servers, TimeEngine &time);

  /// Lists the servers of the region anew: the items whose text ends in RegionCode. Raises
  /// 9 when there are more than 300. Failures: neither trap nor continue.
  void CalcRandR();

  /// Draws from another region from now on: the one whose code begins ENTRY. CurrentServer
  /// stays. Raises what CalcRandR does.
  void ChooseRegion(std::string_view entry);

  /// Draws a server: its host becomes CurrentServer and its item is selected. Without a
  /// server of the region CurrentServer becomes empty, unless an earlier region left its
  /// own in the table. Failures: continue.
  void GrabRandom();

  /// How many servers the region has, and the item drawn last.
  std::int32_t RegionCount() const { return RegionCount_; }
  std::int32_t ServerIndex() const { return ServerIndex_; }

 private:
  static constexpr std::int32_t MostServers = 300;

  MainWindow &Window_;
  RunState &State_;
  ServerList &Servers_;
  TimeEngine &Time_;
  RandomGenerator Random_;
  // Not cleared between fillings: places beyond RegionCount_ keep what they held.
  std::array<std::int16_t, MostServers> RegionServers_{};
  std::int32_t RegionCount_ = 0;
  std::int32_t ServerIndex_ = 0;
};

}  // namespace cvl
