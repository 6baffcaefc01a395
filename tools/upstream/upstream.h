// The running upstream: one socket, the answers that wait, the control input.

#pragma once

#include <cstdint>
#include <iosfwd>

#include "tools/system/clock.h"
#include "tools/upstream/control.h"
#include "tools/upstream/datagram_port.h"
#include "tools/upstream/responder.h"
#include "tools/upstream/upstream_options.h"

namespace cvl::tools {

/// Descriptors to watch beside the socket; -1 for none. They stay the caller's.
struct UpstreamInputs {
  int Control = -1;  ///< commands
  int Stop = -1;     ///< readable when the program is to end
};

class Upstream {
 public:
  /// Listens from now on. Acknowledgements and log lines go to `out`, failed sends to
  /// `err`, both flushed line by line. Everything handed in must outlive the upstream.
  /// Raises std::system_error when it can't listen.
  Upstream(const UpstreamOptions &options, const UpstreamInputs &inputs, const Clock &clock,
           std::ostream &out, std::ostream &err);

  /// Where it listens, with the port that it got.
  [[nodiscard]] const Endpoint &Local() const { return Port_.Local(); }

  /// One pass: send what is due; wait for input, for the next answer to fall due, or for
  /// `longest_wait_ms` (negative: for ever); take commands, then datagrams; send what is
  /// due. False when the program is to end. Raises std::system_error when it can't wait.
  [[nodiscard]] bool Pass(int longest_wait_ms);

 private:
  [[nodiscard]] int WaitFor(int longest_wait_ms) const;
  void SendDue();
  void TakeDatagrams();
  bool TakeCommands();
  void WriteLog(const DatagramPort::Arrival &arrival);

  const Clock &Clock_;
  UpstreamInputs Inputs_;
  std::ostream &Out_;
  std::ostream &Err_;
  bool Log_;
  DatagramPort Port_;
  Responder Responder_;
  LineCutter Lines_;
};

}  // namespace cvl::tools
