// The line by which the service manager knows what the service is at.

#pragma once

#include <string>
#include <vector>

#include "host/port_state.h"
#include "platform/service_host.h"
#include "state/run_state.h"

namespace cvl {

/// "Synchronised 11/14/2002 9:26:13 AM; 12 requests (9 UDP, 3 TCP)", with the ports behind it
/// that could not be opened, and the pause in front.
std::string ServiceStatusText(const RunState &state, const std::vector<PortState> &ports);

class ServiceStatus {
 public:
  ServiceStatus(const RunState &state, const ServiceTable &services, const Listeners &listeners,
                ServiceHost &manager)
      : State_(state), Services_(services), Listeners_(listeners), Manager_(manager) {}

  /// Tells the manager, if there is something new to tell.
  void Report();

 private:
  const RunState &State_;
  const ServiceTable &Services_;
  const Listeners &Listeners_;
  ServiceHost &Manager_;
  std::string Told_;
};

}  // namespace cvl
