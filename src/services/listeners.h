// Opening service sockets from their port boxes.

#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "services/service_table.h"
#include "state/main_window.h"
#include "state/run_state.h"

namespace cvl {

class Listeners {
 public:
  Listeners(ServiceTable &services, RunState &state, MainWindow &window);

  /// Opens the socket of a code, "0" to "9", on the port in its service's box, and closes it
  /// first if it is open. Any other code does nothing.
  ///
  /// Failures: trap. A port that is taken leaves a text for the status line; any other
  /// failure leaves no trace, and the socket stays closed either way.
  void LoadServers(std::string_view code);

  /// How the last call for a code ended: 0, or the number of the failure; nothing before the
  /// first. An NTP socket that is open without one belongs to the sync exchange alone, which
  /// opens it on some free port where its own is not to be had.
  std::optional<int> LastOpening(std::string_view code) const;

 private:
  void OpenTcp(const Service &service, std::int16_t &port);
  void OpenUdp(const Service &service, std::string_view code, std::int16_t &port);
  void Remember(std::string_view code, int failure);
  void ReportTakenPort(std::string_view code, std::int16_t port);

  ServiceTable &Services_;
  RunState &State_;
  MainWindow &Window_;
  std::array<std::optional<int>, 10> Openings_;  // by code
};

}  // namespace cvl
