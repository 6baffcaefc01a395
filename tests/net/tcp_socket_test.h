// A listener with its slots and a service that writes down what it hears, for the tests of
// the stream socket.

#pragma once

#include <string>
#include <vector>

#include "net/tcp_socket.h"
#include "tests/net/fake_net_test.h"
#include "tests/net/recording_service.h"

namespace cvl {

class TcpSocketTest : public FakeNetTest {
 protected:
  using Lines = std::vector<std::string>;
  using Operation = FakeNetwork::Operation;

  static constexpr std::uint16_t Port = 37;

  TcpSocketTest() { Service.Listen(Port); }

  /// A client with its slot, the log emptied.
  FakeConnection &Connected(Endpoint client) {
    FakeConnection &connection = Net.Dial(Port, client);
    Loop.Drain();
    EXPECT_TRUE(connection.IsAccepted);
    Service.Log.clear();
    return connection;
  }

  RecordingService Service{Layer};
  SlotArray &Slots = Service.Slots;
};

}  // namespace cvl
