// The ten sockets of the five services. TCP services have an array of slots, of which slot
// 0 listens.

#pragma once

#include <cstdint>

#include "net/slot_array.h"
#include "net/udp_socket.h"

namespace cvl {

class ServiceSockets {
 public:
  explicit ServiceSockets(SocketLayer &layer);

  SlotArray TCP13;
  SlotArray TCP37;
  SlotArray TCP123;
  SlotArray TCP519;
  SlotArray TCP3777;
  UdpSocket UDP13;
  UdpSocket UDP37;
  UdpSocket UDP123;
  UdpSocket UDP3777;
  /// The events of UDP519, none of which ever comes.
  TcpEvents UDP519Events;
  /// A stream socket despite its name: it takes its port and never hears of a datagram. So
  /// the UDP half of the Unix time service is dead, and its box is off by default.
  TcpSocket UDP519;

  /// A free slot for an accepted connection, greater than 0: the lowest closed one, else a
  /// new one. Raises 6 when its number would pass 32767.
  std::int16_t InitTCP13() { return TCP13.FindFree(); }
  std::int16_t InitTCP37() { return TCP37.FindFree(); }
  std::int16_t InitTCP123() { return TCP123.FindFree(); }
  std::int16_t InitTCP519() { return TCP519.FindFree(); }
  std::int16_t InitTCP3777() { return TCP3777.FindFree(); }
};

/// Accepts a connection on a slot from INIT, whose local port is set to 0 first. Returns the
/// slot, or 0 when that failed; the connection is then dropped with its event.
template <class Init>
std::int16_t AcceptOn(SlotArray &slots, Init &&init, RequestId request) {
  std::int16_t slot = 0;
  const Failure failure = Trap([&] {
    const std::int16_t free = init();
    slots[free].SetLocalPort(0);
    slots[free].Accept(request);
    slot = free;
  });
  return failure ? std::int16_t{0} : slot;
}

}  // namespace cvl
