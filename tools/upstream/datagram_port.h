// A UDP socket that knows to which local address a datagram came, and that can answer
// from any local address.

#pragma once

#include <optional>
#include <string>

#include "tools/system/descriptor.h"
#include "tools/system/endpoint.h"
#include "tools/wire/bytes.h"

namespace cvl::tools {

class DatagramPort {
 public:
  /// Binds to an address, 0 for all of the machine's, and to a port, 0 for a free one.
  /// Raises std::system_error.
  explicit DatagramPort(const Endpoint &local);

  /// Where it listens, with the port that it got.
  [[nodiscard]] const Endpoint &Local() const { return Local_; }
  [[nodiscard]] int Number() const { return Socket_.Number(); }

  struct Arrival {
    ByteView Data;  ///< valid until the next Receive
    Endpoint Sender;
    std::uint32_t To = 0;  ///< the local address it was sent to
  };

  /// The next datagram, or nothing when none waits. Never blocks.
  std::optional<Arrival> Receive();

  /// Sends one datagram from this port and the local address `from`. Gives an empty text,
  /// or the system's words for why it couldn't. Never blocks.
  [[nodiscard]] std::string Send(ByteView data, const Endpoint &to, std::uint32_t from);

 private:
  Descriptor Socket_;
  Endpoint Local_;
  Bytes Buffer_;
};

}  // namespace cvl::tools
