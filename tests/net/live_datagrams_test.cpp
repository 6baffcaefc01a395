// Datagrams of the kernel.

#include <sys/eventfd.h>
#include <unistd.h>

#include "tests/net/live_test.h"
#include "tests/support/fake_network.h"

namespace cvl {
namespace {

using Lines = std::vector<std::string>;

class LiveDatagrams : public LiveTest {
 protected:
  LiveDatagrams() {
    Socket.OnDataArrival = [this](std::int32_t bytes) {
      Sizes.push_back(bytes);
      if (OnData) {
        OnData();
      } else {
        Texts.push_back(Socket.GetText());
      }
    };
    Socket.Bind();
  }

  Endpoint Server(Ipv4Address address = Loopback) const {
    return {address, static_cast<std::uint16_t>(Socket.LocalPort())};
  }

  /// The next message that a client gets; an empty one when none comes.
  UdpPeer::Message Next(UdpPeer &client) {
    std::optional<UdpPeer::Message> message;
    EXPECT_TRUE(Until([&] { return (message = client.Read()).has_value(); }));
    return message.value_or(UdpPeer::Message{});
  }

  void Answer(const std::string &text) {
    Socket.SetRemoteHost(Socket.RemoteHostIP());
    Socket.SendText(text);
  }

  UdpSocket Socket{Layer};
  std::vector<std::int32_t> Sizes;
  Lines Texts;
  std::function<void()> OnData;
};

TEST_F(LiveDatagrams, ADatagramThatNoHandlerReadsIsDropped) {
  OnData = [] {};
  UdpPeer client;
  client.Send(Server(), "unread");
  ASSERT_TRUE(Until([&] { return Sizes.size() == 1; }));
  EXPECT_TRUE(ComesToRest());
  OnData = nullptr;
  client.Send(Server(), "read");
  ASSERT_TRUE(Until([&] { return Sizes.size() == 2; }));
  EXPECT_EQ(Texts, Lines{"read"});
}

TEST_F(LiveDatagrams, ADatagramOf0BytesRaisesDataArrivalWith0) {
  UdpPeer client;
  client.Send(Server(), "");
  ASSERT_TRUE(Until([&] { return Sizes.size() == 1; }));
  EXPECT_EQ(Sizes[0], 0);
  EXPECT_EQ(Texts, Lines{""});
  EXPECT_EQ(Socket.RemotePort(), client.Local().Port);
}

TEST_F(LiveDatagrams, AreHandledEachByItselfAndInOrder) {
  UdpPeer client;
  Lines expected;
  for (int count = 0; count < 100; ++count) {
    expected.push_back("number " + std::to_string(count));
    client.Send(Server(), expected.back());
  }
  ASSERT_TRUE(Until([&] { return Texts.size() >= expected.size(); }));
  EXPECT_EQ(Texts, expected);
}

TEST_F(LiveDatagrams, KeepTheirOrderAndTheirBytesThroughNestedPasses) {
  UdpPeer client;
  Lines expected;
  for (int count = 0; count < 100; ++count) {
    expected.push_back("number " + std::to_string(count));
  }
  std::size_t arrivals = 0;
  Lines read_late;
  OnData = [&] {
    const std::string own = expected.at(arrivals++);
    // More come in while the first ones are being handled.
    if (arrivals == 1) {
      for (std::size_t more = 40; more < expected.size(); ++more) {
        client.Send(Server(), expected[more]);
      }
    }
    if (arrivals % 7 == 1) Loop.RunOnePass();
    EXPECT_EQ(Socket.GetText(), own);
  };
  for (std::size_t count = 0; count < 40; ++count) {
    client.Send(Server(), expected[count]);
  }
  ASSERT_TRUE(Until([&] { return arrivals >= expected.size(); }));
  EXPECT_EQ(arrivals, expected.size());
}

TEST_F(LiveDatagrams, TheLargestIsReceivedWhole) {
  UdpPeer client;
  client.Send(Server(), std::string(65507, 'x'));
  ASSERT_TRUE(Until([&] { return Sizes.size() == 1; }));
  EXPECT_EQ(Texts[0].size(), 65507U);
}

TEST_F(LiveDatagrams, AnswersLeaveFromTheAddressThatTheRequestWasSentTo) {
  OnData = [&] { Answer("answer"); };
  UdpPeer client;
  for (const Ipv4Address asked : {Loopback, SecondLoopback, Loopback}) {
    client.Send(Server(asked), "request");
    const UdpPeer::Message answer = Next(client);
    EXPECT_EQ(answer.Sender, Server(asked));
    EXPECT_EQ(answer.Bytes, "answer");
  }
}

TEST_F(LiveDatagrams, AnswersThatLeaveTogetherDoSoEachFromItsOwnAddress) {
  OnData = [&] {
    Socket.SetRemoteHost(Socket.RemoteHostIP());
    Socket.SendAnswer(BytesOf(Socket.GetText()));
  };
  UdpPeer client;
  for (int count = 0; count < 20; ++count) {
    const Ipv4Address asked = count % 2 == 0 ? Loopback : SecondLoopback;
    client.Send(Server(asked), "number " + std::to_string(count));
  }
  for (int count = 0; count < 20; ++count) {
    const UdpPeer::Message answer = Next(client);
    EXPECT_EQ(answer.Sender, Server(count % 2 == 0 ? Loopback : SecondLoopback));
    EXPECT_EQ(answer.Bytes, "number " + std::to_string(count));
  }
}

TEST_F(LiveDatagrams, ARequestOfOurOwnLeavesAsTheRoutingTableSays) {
  UdpPeer client;
  UdpPeer upstream;
  OnData = [&] {
    Socket.SetRemoteHost("127.0.0.1");
    Socket.SetRemotePort(upstream.Local().Port);
    Socket.SendText("request of ours");
  };
  client.Send(Server(SecondLoopback), "request");
  EXPECT_EQ(Next(upstream).Sender, Server(Loopback));
}

TEST_F(LiveDatagrams, BehindItsHandlerASendToTheSameClientLeavesAsTheRoutingTableSays) {
  UdpPeer client;
  client.Send(Server(SecondLoopback), "request");
  ASSERT_TRUE(Until([&] { return Texts.size() == 1; }));
  Answer("late");
  EXPECT_EQ(Next(client).Sender, Server(Loopback));
}

TEST_F(LiveDatagrams, AClientThatIsGoneTroublesNobody) {
  OnData = [&] { Answer("answer"); };
  {
    UdpPeer gone;
    gone.Send(Server(), "request");
  }
  ASSERT_TRUE(Until([&] { return Sizes.size() == 1; }));
  EXPECT_TRUE(ComesToRest());
  UdpPeer client;
  client.Send(Server(), "request");
  EXPECT_EQ(Next(client).Bytes, "answer");
}

TEST_F(LiveDatagrams, ASendThatTheKernelRefusesRaisesItsNumber) {
  Socket.SetRemoteHost("127.0.0.1");
  Socket.SetRemotePort(9);
  ExpectRuntimeError(error_number::MessageTooLong,
                     [&] { Socket.SendText(std::string(65508, 'x')); });
}

TEST_F(LiveDatagrams, AHandlerMayCloseAndOpenItsSocketAmidABatch) {
  UdpPeer client;
  OnData = [&] {
    Socket.Close();
    Socket.SetLocalPort(0);
    Socket.Bind();
  };
  for (int count = 0; count < 5; ++count) {
    client.Send(Server(), "hello");
  }
  ASSERT_TRUE(Until([&] { return !Sizes.empty(); }));
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(Sizes.size(), 1U);
  client.Send(Server(), "hello");
  ASSERT_TRUE(Until([&] { return Sizes.size() > 1; }));
  EXPECT_EQ(Sizes.size(), 2U);
}

/// Counts what it hears of a descriptor.
struct Listening final : ReadyHandler {
  void OnReady(Readiness) override { ++Events; }
  int Events = 0;
};

TEST_F(LiveDatagrams, ADescriptorThatIsUsedAgainInTheSameBatchHearsNothingOfItsFormerOwner) {
  UdpSocket other(Layer);
  other.Bind();
  Listening heir;
  const int next = dup(STDERR_FILENO);
  ASSERT_GE(next, 0);
  close(next);
  int inherited = -1;
  // Both have a datagram; whichever is handled first gives the other's descriptor away.
  const auto replace = [&](UdpSocket &former) {
    former.Close();
    inherited = eventfd(0, EFD_CLOEXEC);
    Loop.Watch(SocketHandle{inherited}, {.Read = true}, heir);
  };
  OnData = [&] { replace(other); };
  other.OnDataArrival = [&](std::int32_t) { replace(Socket); };
  UdpPeer client;
  client.Send(Server(), "hello");
  client.Send({Loopback, static_cast<std::uint16_t>(other.LocalPort())}, "hello");
  ASSERT_TRUE(Until([&] { return inherited >= 0; }));
  EXPECT_TRUE(ComesToRest());
  EXPECT_LT(inherited, next) << "the descriptor was not used again";
  EXPECT_EQ(heir.Events, 0);
  Loop.Unwatch(SocketHandle{inherited});
  close(inherited);
}

TEST_F(LiveDatagrams, FourHundredWaitWhileTheProcessDoesNotRun) {
  // The usual buffer has room for some 250.
  UdpPeer client;
  for (int count = 0; count < 400; ++count) {
    client.Send(Server(), "");
  }
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(Sizes.size(), 400U);
}

}  // namespace
}  // namespace cvl
