// Opening service sockets from their port boxes.

#pragma once

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

 private:
  void OpenTcp(const Service &service, std::int16_t &port);
  void OpenUdp(const Service &service, std::string_view code, std::int16_t &port);
  void ReportTakenPort(std::string_view code, std::int16_t port);

  ServiceTable &Services_;
  RunState &State_;
  MainWindow &Window_;
};

}  // namespace cvl
