#include "host/port_state.h"

#include <optional>

#include "base/number_text.h"
#include "base/runtime_error.h"
#include "base/text.h"

namespace cvl {

namespace {

/// Below this a port takes a right that not every process has.
constexpr double FirstFreePort = 1024;

bool IsOpen(const Socket &socket) {
  return socket.State() == SocketState::Open || socket.State() == SocketState::Listening;
}

PortState StateOf(std::string_view name, std::string_view protocol, const Service &service,
                  const Socket &socket, std::optional<int> opening) {
  PortState state{name, protocol, service.PortBox.Text(), PortState::Condition::Off, 0};
  if (!opening) return state;
  if (*opening != 0) {
    if (service.MasterBox.IsTicked()) state.Is = PortState::Condition::Failed;
    state.Failure = *opening;
  } else if (IsOpen(socket)) {
    state.Is = PortState::Condition::Open;
    state.Port = std::to_string(socket.LocalPort());
  }
  return state;
}

}  // namespace

std::string PortState::Name() const {
  return Joined({Service, " ", Protocol, " ", Port});
}

std::string PortState::Reason() const {
  if (Is != Condition::Failed) return {};
  switch (Failure) {
    case error_number::AddressInUse:
      return "the port is in use";
    case error_number::AccessDenied:
      return IsNumeric(Port) && Val(Port) < FirstFreePort
                 ? "a port below 1024, and no right to take it"
                 : "no right to take the port";
    case error_number::Overflow:
    case error_number::InvalidPropertyValue:
      return "a port is a number from 0 to 32767";
    default:
      return DescriptionOf(Failure);
  }
}

std::vector<PortState> PortStates(const ServiceTable &services, const Listeners &listeners) {
  struct Row {
    std::string_view Name;
    const Service &Of;
  };
  std::vector<PortState> states;
  for (const Row &row :
       {Row{"Daytime", services.Daytime}, Row{"Time", services.Time}, Row{"NTP", services.Ntp},
        Row{"Unix time", services.Unix}, Row{"client protocol", services.Client}}) {
    states.push_back(StateOf(row.Name, "TCP", row.Of, row.Of.TcpSlots[0],
                             listeners.LastOpening(row.Of.TcpCode)));
    states.push_back(
        StateOf(row.Name, "UDP", row.Of, row.Of.UdpSocket, listeners.LastOpening(row.Of.UdpCode)));
  }
  return states;
}

}  // namespace cvl
