// Datagrams that the kernel is given together.

#include "tests/net/live_test.h"

namespace cvl {
namespace {

class LiveAnswers : public LiveTest {
 protected:
  /// What CLIENT has got by now; loopback delivers at once.
  static std::vector<std::string> Read(UdpPeer &client) {
    std::vector<std::string> texts;
    while (const auto message = client.Read()) {
      texts.push_back(message->Bytes);
    }
    return texts;
  }

  static Network::Outgoing To(Endpoint to, std::string_view text, Ipv4Address from = 0) {
    return {{reinterpret_cast<const std::uint8_t *>(text.data()), text.size()}, to, from};
  }

  const SocketHandle Handle = Net.OpenDatagram(0).Socket;
};

TEST_F(LiveAnswers, LeaveEachFromItsOwnAddress) {
  UdpPeer client;
  const Network::Outgoing datagrams[] = {To(client.Local(), "one", SecondLoopback),
                                         To(client.Local(), "two", Loopback),
                                         To(client.Local(), "three")};
  Net.SendAll(Handle, datagrams);
  std::vector<Ipv4Address> senders;
  while (const auto message = client.Read()) {
    senders.push_back(message->Sender.Address);
  }
  EXPECT_EQ(senders, (std::vector<Ipv4Address>{SecondLoopback, Loopback, Loopback}));
}

TEST_F(LiveAnswers, ThatTheKernelRefusesDontKeepTheOthersBack) {
  constexpr Endpoint Broadcast{0xFFFFFFFF, 9};
  UdpPeer client;
  std::vector<Network::Outgoing> datagrams = {To(Broadcast, "refused"),  To(client.Local(), "one"),
                                              To(Broadcast, "refused"),  To(Broadcast, "refused"),
                                              To(client.Local(), "two"), To(Broadcast, "refused")};
  Net.SendAll(Handle, datagrams);
  EXPECT_EQ(Read(client), (std::vector<std::string>{"one", "two"}));
}

TEST_F(LiveAnswers, MayBeMoreThanTheKernelIsGivenAtOnce) {
  UdpPeer client;
  std::vector<Network::Outgoing> datagrams(100, To(client.Local(), "again"));
  Net.SendAll(Handle, datagrams);
  EXPECT_EQ(Read(client).size(), 100U);
}

}  // namespace
}  // namespace cvl
