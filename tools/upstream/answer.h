// One answer to one request. No sockets and no clock.

#pragma once

#include "tools/upstream/behaviour.h"
#include "tools/wire/bytes.h"
#include "tools/wire/ntp_time.h"

namespace cvl::tools {

/// Whether this is a request that gets an answer: 48 bytes in client mode. Everything
/// else is left alone, so that two servers can't talk to each other for ever.
bool IsClientRequest(ByteView datagram);

/// The bytes of the answer to a request that IsClientRequest has accepted. `received`
/// and `transmitted` are moments of the clock, not yet shifted.
Bytes BuildAnswer(ByteView request, const Behaviour &behaviour, NtpTime received,
                  NtpTime transmitted);

}  // namespace cvl::tools
