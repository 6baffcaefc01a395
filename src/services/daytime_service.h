// The Daytime service, port 13: one text (RFC 867), on connecting over TCP, for each
// datagram over UDP. UseJulian says which text: the Julian one, or the plain one in local
// time.
//
// The two transports differ, and both ways are meant. A TCP request before the first sync
// isn't seen; a UDP one is counted, and gets no answer. TCP lights the lamp before the
// sending and logs also a failed one; UDP does both only after a good one.

#pragma once

#include <cstdint>
#include <string>

#include "services/service_context.h"

namespace cvl {

class DaytimeService {
 public:
  /// Connects the events of UDP13 and TCP13.
  explicit DaytimeService(const ServiceContext &context);

  /// Answers on slot INDEX of TCP13 and closes it.
  ///
  /// Failures: neither trap nor continue until the text stands, continue behind that.
  void SendDS_TCP(std::int16_t index);

 private:
  void OnTcpRequest(RequestId request);
  void OnUdpArrival();
  std::string AnswerText();
  std::string PlainText();

  ServiceContext Context_;
};

}  // namespace cvl
