// The NTP service, port 123: 48 bytes in, 48 bytes out (RFC 5905, section 7.3), over UDP
// and TCP. It looks at nothing but the length of a request. In settings and boxes it goes
// by the name of SNTP.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "services/service_context.h"
#include "sync/sync_exchange.h"

namespace cvl {

class NtpService {
 public:
  /// Connects the events of UDP123 and TCP123, and lets replies to the exchange's requests past
  /// the loop guard of UDP123.
  NtpService(const ServiceContext &context, SyncExchange &exchange);

  /// Builds the reply to a request and sends it.
  ///
  /// DATA_STRUC is the request; TOR_NTP the moment of its arrival, or nothing when that
  /// couldn't be told; INDEX the client's slot of TCP123, or 0 for UDP; MODE_IP the client's
  /// address.
  ///
  /// Errors propagate until the reply is built; after that they are ignored. So in
  /// millisecond 999, which has no timestamp, there is no reply.
  void GrabTCP123(const NtpPacket &data_struc, const std::optional<NtpTimestamp> &tor_ntp,
                  std::int16_t index, PeerAddress mode_ip);

 private:
  void OnUdpArrival(std::int32_t bytes_total);
  void OnTcpRequest(RequestId request);
  void OnTcpArrival(std::int16_t index, std::int32_t bytes_total);
  void LogGood(PeerAddress client, const Socket &local, std::string_view transport);
  void LogRefused(PeerAddress client, const Socket &local, std::string_view transport,
                  std::int32_t bytes_total);

  ServiceContext Context_;
  SyncExchange &Exchange_;
};

}  // namespace cvl
