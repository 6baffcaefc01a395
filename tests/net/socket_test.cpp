#include "net/socket.h"

#include "net/tcp_socket.h"
#include "net/udp_socket.h"
#include "tests/net/fake_net_test.h"

namespace cvl {
namespace {

class SocketTest : public FakeNetTest {
 protected:
  UdpSocket Socket{Layer};
};

TEST_F(SocketTest, RefusesANegativePort) {
  Socket.SetLocalPort(32767);
  ExpectRuntimeError(error_number::InvalidPropertyValue, [&] { Socket.SetLocalPort(-1); });
  EXPECT_EQ(Socket.LocalPort(), 32767);
  Socket.SetLocalPort(0);
  EXPECT_EQ(Socket.LocalPort(), 0);
}

TEST_F(SocketTest, HasNoRemoteAddressBeforeItsFirstPeer) {
  EXPECT_EQ(Socket.RemoteHostIP(), "");
}

TEST_F(SocketTest, TellsTheAddressOfEachPeerInTurn) {
  Socket.SetLocalPort(37);
  Socket.Bind();
  for (const Endpoint peer : {Alice, Bob, Alice}) {
    Net.Arrive(37, peer, "hello");
    Loop.Drain();
    EXPECT_EQ(Socket.RemoteHostIP(), AddressText(peer.Address));
  }
}

TEST_F(SocketTest, TellsThePresentPeerThoughTheOneBeforeWasNeverAskedFor) {
  Socket.SetLocalPort(37);
  Socket.Bind();
  Net.Arrive(37, Alice, "hello");
  Loop.Drain();
  EXPECT_EQ(Socket.RemoteHostIP(), "10.0.0.1");
  Net.Arrive(37, Bob, "hello");
  Net.Arrive(37, Alice, "hello");
  Net.Arrive(37, Bob, "hello");
  Loop.Drain();
  EXPECT_EQ(Socket.RemoteHostIP(), "10.0.0.2");
}

TEST_F(SocketTest, SettingTheRemoteHostLeavesTheRemoteAddress) {
  Socket.SetLocalPort(37);
  Socket.Bind();
  Net.Arrive(37, Alice, "hello");
  Loop.Drain();
  EXPECT_EQ(Socket.RemoteHostIP(), "10.0.0.1");
  Socket.SetRemoteHost("10.0.0.99");
  EXPECT_EQ(Socket.RemoteHost(), "10.0.0.99");
  EXPECT_EQ(Socket.RemoteHostIP(), "10.0.0.1");
}

TEST_F(SocketTest, TellsTheMachinesOwnAddressAndName) {
  EXPECT_EQ(Socket.LocalIP(), "10.77.0.1");
  EXPECT_EQ(Socket.LocalHostName(), "timehost");
}

}  // namespace
}  // namespace cvl
