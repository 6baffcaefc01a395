// The Time service, port 37: whole seconds since 1900 in four bytes (RFC 868). In settings
// and boxes it goes by the name of NTP, and so do its two senders, though no NTP packet is
// involved.
//
// A TCP client gets the four bytes on connecting. On UDP each byte is a datagram of its
// own, so that a client that reads one datagram sees one byte; this is meant, and clients
// of this server put them together.

#pragma once

#include <cstdint>
#include <string>

#include "services/service_context.h"

namespace cvl {

class TimeService {
 public:
  /// Connects the events of UDP37 and TCP37.
  explicit TimeService(const ServiceContext &context);

  /// Answers on slot INDEX of TCP37 and closes it.
  ///
  /// Failures: trap up to the last byte; the slot is then closed and that is all. It comes
  /// to that when a send fails, and from 7 February 2036 on, when the seconds fit no more.
  void SendNTP_TCP(std::int16_t index);

  /// Answers a datagram from M_HOST_IP, once the first sync has been. A failed send ends
  /// it; the bytes before that are out. Failures: neither trap nor continue.
  void SendNTP_UDP(PeerAddress m_host_ip);

 private:
  void OnTcpRequest(RequestId request);
  void OnUdpArrival();
  void Log(PeerAddress client, const Socket &local, std::string_view transport);

  ServiceContext Context_;
};

}  // namespace cvl
