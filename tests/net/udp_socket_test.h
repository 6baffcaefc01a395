// A datagram socket whose handler reads what comes, or does what the test asks.

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "net/udp_socket.h"
#include "tests/net/fake_net_test.h"

namespace cvl {

class UdpSocketTest : public FakeNetTest {
 protected:
  using Operation = FakeNetwork::Operation;

  static constexpr Ipv4Address Here = 0x7F000001;
  static constexpr Ipv4Address AlsoHere = 0x7F000002;

  UdpSocketTest() {
    Socket.OnDataArrival = [this](std::int32_t bytes) {
      Sizes.push_back(bytes);
      if (OnData) {
        OnData();
      } else {
        Texts.push_back(Socket.GetText());
      }
    };
  }

  void Bind(std::int16_t port = 123) {
    Socket.SetLocalPort(port);
    Socket.Bind();
  }

  /// Sends TEXT to HOST on the port that the socket stands at.
  void SendTo(Endpoint to, const std::string &text) {
    Socket.SetRemoteHost(AddressText(to.Address));
    Socket.SetRemotePort(to.Port);
    Socket.SendText(text);
  }

  UdpSocket Socket{Layer};
  std::vector<std::int32_t> Sizes;
  std::vector<std::string> Texts;
  /// What the handler does in place of reading.
  std::function<void()> OnData;
};

}  // namespace cvl
