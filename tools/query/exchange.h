// One question put to a server over a socket, and all that came back.

#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "tools/query/service.h"
#include "tools/system/clock.h"
#include "tools/system/endpoint.h"
#include "tools/wire/bytes.h"

namespace cvl::tools {

/// How the exchange came to its end.
enum class Ending {
  Enough,    ///< nothing more was waited for (HasEnough)
  Closed,    ///< TCP: the server closed the connection
  TimedOut,  ///< the time was over
  Failed     ///< the system reported a failure
};

struct Exchange {
  Question Asked;
  Endpoint Peer;
  Bytes Request;              ///< as sent; without any bytes where the failure came first
  std::vector<Bytes> Pieces;  ///< the datagrams in the order of arrival; over TCP at most
                              ///< one piece with all bytes
  NtpTime LastArrival;        ///< when the last bytes were read; zero while there are none
  Ending End = Ending::TimedOut;
  std::string Failure;  ///< the system's words, when Failed
};

/// Asks once and waits for the answer. `timeout` is for the whole of it, the TCP
/// connection included, so that a server that sends byte after byte can't hold us.
/// Only datagrams from `peer` itself are taken. Nothing is raised: a failure is an
/// ending like the others. Bytes are taken as they come and not judged here.
Exchange Ask(const Question &question, const Endpoint &peer, std::chrono::milliseconds timeout,
             const Clock &clock);

}  // namespace cvl::tools
