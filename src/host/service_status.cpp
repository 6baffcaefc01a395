#include "host/service_status.h"

#include <cstdint>
#include <initializer_list>
#include <utility>

#include "base/text.h"

namespace cvl {

namespace {

/// Wider than the counters, whose sum must not end the program here.
std::int64_t Sum(std::initializer_list<std::int32_t> counters) {
  std::int64_t sum = 0;
  for (const std::int32_t counter : counters) {
    sum += counter;
  }
  return sum;
}

std::string RequestsText(const RequestCounters &requests) {
  const std::int64_t udp = Sum({requests.ReqUDP13, requests.ReqUDP37, requests.ReqUDP123,
                                requests.ReqUDP519, requests.ReqUDP3777});
  const std::int64_t tcp = Sum({requests.ReqTCP13, requests.ReqTCP37, requests.ReqTCP123,
                                requests.ReqTCP519, requests.ReqTCP3777});
  return Joined({std::to_string(udp + tcp), udp + tcp == 1 ? " request (" : " requests (",
                 std::to_string(udp), " UDP, ", std::to_string(tcp), " TCP)"});
}

}  // namespace

std::string ServiceStatusText(const RunState &state, const std::vector<PortState> &ports) {
  std::string text = state.Flags.ServicePaused ? "Paused; " : "";
  text += state.Flags.TimeSynced ? "Synchronised " + GeneralText(state.Sync.LastSync)
                                 : "Not synchronised yet";
  text += "; " + RequestsText(state.Requests);
  std::string failed;
  for (const PortState &port : ports) {
    if (port.Is != PortState::Condition::Failed) continue;
    failed +=
        Joined({failed.empty() ? "; not open: " : ", ", port.Name(), " (", port.Reason(), ")"});
  }
  return text + failed;
}

void ServiceStatus::Report() {
  std::string text = ServiceStatusText(State_, PortStates(Services_, Listeners_));
  if (text == Told_) return;
  Told_ = std::move(text);
  Manager_.ReportStatus(Told_);
}

}  // namespace cvl
