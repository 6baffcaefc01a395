// Which answer is due when. Requests go in, answers come out when their time has come;
// the sockets are somebody else's.

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "tools/system/clock.h"
#include "tools/system/endpoint.h"
#include "tools/upstream/behaviour.h"
#include "tools/wire/bytes.h"

namespace cvl::tools {

/// A datagram on its way out.
struct OutgoingAnswer {
  Bytes Data;
  Endpoint To;
  std::uint32_t From = 0;  ///< the local address that it leaves from
};

class Responder {
 public:
  /// The clock must outlive the responder.
  explicit Responder(const Clock &clock) : Clock_{clock} {}

  /// Takes a datagram from `sender` that came to the address `to`. The behaviour of
  /// this moment settles its answer, also when that answer waits. A datagram that isn't
  /// a client's request is dropped and not counted. So is one that would have to wait
  /// while 10000 others do.
  void Take(ByteView datagram, const Endpoint &sender, std::uint32_t to);

  /// The answers that are due, each as often as it is to be sent. An answer is finished
  /// here: its transmit timestamp is the present moment, not that of the request.
  std::vector<OutgoingAnswer> TakeDue();

  /// Milliseconds until the next answer is due, at least 0; nothing when none waits.
  [[nodiscard]] std::optional<std::int64_t> MsToNext() const;

  /// How requests are answered from now on.
  [[nodiscard]] const Behaviour &Current() const { return Current_; }
  void SetBehaviour(const Behaviour &behaviour) { Current_ = behaviour; }

 private:
  struct Waiting {
    Bytes Request;
    Endpoint Sender;
    std::uint32_t To = 0;
    NtpTime Received;
    Behaviour How;
  };

  void CountDown();

  const Clock &Clock_;
  Behaviour Current_;
  std::multimap<std::int64_t, Waiting> Queue_;  // by the moment when it is due
};

}  // namespace cvl::tools
