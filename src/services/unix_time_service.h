// The Unix time service, port 519: whole seconds since 1970 as a 32-bit signed number in
// network byte order. A TCP client gets it on connecting.
//
// The UDP half is complete and asleep: UDP519 is a stream socket (see ServiceSockets), so
// no datagram ever wakes it.

#pragma once

#include <cstdint>
#include <string>

#include "services/service_context.h"

namespace cvl {

class UnixTimeService {
 public:
  /// Connects the events of UDP519 and TCP519.
  explicit UnixTimeService(const ServiceContext &context);

  /// Answers the client M_HOST_IP on slot INDEX of TCP519 and closes the slot, or for INDEX
  /// 0 answers a datagram. Nothing happens before the first sync. After a failed send there
  /// is neither log line nor lamp, and the slot is closed.
  ///
  /// Failures: neither trap nor continue for the reading of the clock, continue behind it.
  /// From 19 January 2038 on the seconds fit no more, and four zero bytes go out.
  void SendUnixTime(std::int16_t index, PeerAddress m_host_ip);

 private:
  void OnTcpRequest(RequestId request);
  void OnUdpArrival();
  void Log(PeerAddress client, std::string_view transport);

  ServiceContext Context_;
};

}  // namespace cvl
