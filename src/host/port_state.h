// The ten sockets of the services as an operator asks for them: which are open, which are
// not, and why.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "services/listeners.h"
#include "services/service_table.h"

namespace cvl {

struct PortState {
  enum class Condition {
    Open,
    Off,     ///< nobody has asked for it
    Failed,  ///< it was asked for, and Failure stood in the way
  };

  std::string_view Service;   ///< "NTP"
  std::string_view Protocol;  ///< "TCP"; the name of the box, also where the socket differs
  std::string Port;           ///< in decimal, or what else stands in the port box
  Condition Is = Condition::Off;
  int Failure = 0;

  /// "NTP TCP 123"
  std::string Name() const;

  /// Why a port that was asked for isn't open, in a few words; empty for the others.
  std::string Reason() const;
};

/// All ten, service by service, each with TCP first.
std::vector<PortState> PortStates(const ServiceTable &services, const Listeners &listeners);

}  // namespace cvl
