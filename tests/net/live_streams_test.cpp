// Streams of the kernel: what arrives, how connections end, how answers leave.

#include "tests/net/live_test.h"

namespace cvl {
namespace {

using Lines = std::vector<std::string>;
using Stream = TcpPeer::Stream;

class LiveStreams : public LiveTest {
 protected:
  LiveStreams() : Port(Service.Listen()) {}

  /// Runs the loop until the log has a line.
  [[nodiscard]] bool UntilLogged(const std::string &line) {
    return Until([&] { return Service.Count(line) > 0; });
  }

  RecordingService Service{Layer};
  SlotArray &Slots = Service.Slots;
  std::int32_t Port;
};

TEST_F(LiveStreams, AConnectionThatNoHandlerAcceptsIsDroppedWhenTheHandlerReturns) {
  int requests = 0;
  Slots.Events.ConnectionRequest = [&](std::int16_t, RequestId) { ++requests; };
  const int open = OpenDescriptors();
  TcpPeer client(Port);
  EXPECT_TRUE(Until([&] { return client.Read() != Stream::Open; }));
  EXPECT_EQ(requests, 1);
  client.Close();
  EXPECT_EQ(OpenDescriptors(), open);
  EXPECT_TRUE(ComesToRest());
}

TEST_F(LiveStreams, AConnectionThatAHandlerAcceptsStays) {
  TcpPeer client(Port);
  ASSERT_TRUE(UntilLogged("accepted 1"));
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(client.Read(), Stream::Open);
  EXPECT_EQ(Slots[1].RemoteHostIP(), "127.0.0.1");
  EXPECT_EQ(Slots[1].RemotePort(), client.LocalPort());
  EXPECT_EQ(Slots[0].RemoteHostIP(), "127.0.0.1");
}

TEST_F(LiveStreams, BytesThatWaitTogetherAreOneArrivalBeforeTheClose) {
  TcpPeer client(Port);
  client.Send("forty-eight ");
  client.Send("bytes");
  client.End();
  ASSERT_TRUE(UntilLogged("close 1"));
  EXPECT_EQ(Service.Log, (Lines{"accepted 1", "data 1 17", "close 1"}));
  EXPECT_EQ(Slots[1].GetText(), "forty-eight bytes");
}

TEST_F(LiveStreams, BytesAndTheEndOfTheStreamInOneGoAreAnswered) {
  Service.OnData = [&](std::int16_t slot) {
    EXPECT_EQ(Slots[slot].GetText().size(), 48U);
    Slots[slot].SendText("answer");
  };
  TcpPeer client(Port);
  client.Send(std::string(48, 'x'));
  client.End();
  ASSERT_TRUE(Until([&] { return client.Read() != Stream::Open; }));
  EXPECT_EQ(client.Read(), Stream::Ended);
  EXPECT_EQ(client.Received, "answer");
}

TEST_F(LiveStreams, TheEndOfThePeersStreamRaisesCloseOnceAndLeavesState8) {
  const int open = OpenDescriptors();
  TcpPeer client(Port);
  ASSERT_TRUE(UntilLogged("accepted 1"));
  client.End();
  ASSERT_TRUE(UntilLogged("close 1"));
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(Service.Log, (Lines{"accepted 1", "close 1"}));
  EXPECT_EQ(static_cast<int>(Slots[1].State()), 8);
  client.Close();
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(OpenDescriptors(), open);
}

TEST_F(LiveStreams, AResetRaisesErrorOnceAndLeavesState9) {
  const int open = OpenDescriptors();
  TcpPeer client(Port);
  ASSERT_TRUE(UntilLogged("accepted 1"));
  client.Reset();
  ASSERT_TRUE(UntilLogged("error 1 10054"));
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(Service.Log, (Lines{"accepted 1", "error 1 10054"}));
  EXPECT_EQ(static_cast<int>(Slots[1].State()), 9);
  EXPECT_EQ(OpenDescriptors(), open);
}

TEST_F(LiveStreams, AResetThatASendMeetsFirstIsAnErrorAndNoClose) {
  TcpPeer client(Port);
  ASSERT_TRUE(UntilLogged("accepted 1"));
  client.Reset();
  ExpectRuntimeError(error_number::ConnectionReset, [&] { Slots[1].SendText("answer"); });
  ASSERT_TRUE(UntilLogged("error 1 10054"));
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(Service.Log, (Lines{"accepted 1", "error 1 10054"}));
}

TEST_F(LiveStreams, AServiceWithoutAHandlerForDataHearsOfBothEnds) {
  RecordingService other(Layer, RecordingService::Reads::No);
  const std::int32_t port = other.Listen();
  TcpPeer ending(port);
  ASSERT_TRUE(Until([&] { return other.Count("accepted 1") > 0; }));
  TcpPeer breaking(port);
  ASSERT_TRUE(Until([&] { return other.Count("accepted 2") > 0; }));
  ending.Send("unwanted");
  breaking.Send("unwanted");
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(other.Log.size(), 2U);
  ending.End();
  breaking.Reset();
  ASSERT_TRUE(Until([&] { return other.Log.size() >= 4; }));
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(other.Log.size(), 4U);
  EXPECT_EQ(other.Count("close 1"), 1);
  EXPECT_EQ(other.Count("error 2 10054"), 1);
  EXPECT_TRUE(Until([&] { return ending.Read() == Stream::Ended; }));
}

TEST_F(LiveStreams, WhatOneHandlerSendsTravelsInOneSegment) {
  Service.OnAccepted = [&](std::int16_t slot) {
    Slots[slot].SendText("one ");
    Slots[slot].SendText("two ");
    Slots[slot].SendText("three");
  };
  TcpPeer client(Port);
  ASSERT_TRUE(Until([&] {
    static_cast<void>(client.Read());
    return client.Received == "one two three";
  }));
  EXPECT_EQ(client.DataSegmentsIn(), 1U);
}

TEST_F(LiveStreams, WhatTwoHandlersSendTravelsInTwo) {
  Service.OnAccepted = [&](std::int16_t slot) { Slots[slot].SendText("one "); };
  Service.OnData = [&](std::int16_t slot) { Slots[slot].SendText("two"); };
  TcpPeer client(Port);
  ASSERT_TRUE(UntilLogged("accepted 1"));
  client.Send("go on");
  ASSERT_TRUE(Until([&] {
    static_cast<void>(client.Read());
    return client.Received == "one two";
  }));
  EXPECT_EQ(client.DataSegmentsIn(), 2U);
}

TEST_F(LiveStreams, SendCompleteComesInALaterPassAndNotForAClosedSlot) {
  bool is_inside = false;
  bool came_inside = false;
  Service.OnData = [&](std::int16_t slot) {
    is_inside = true;
    Slots[slot].SendText("answer");
    is_inside = false;
    if (slot == 2) Slots[slot].Close();
  };
  Service.OnSendComplete = [&](std::int16_t) { came_inside = is_inside; };
  TcpPeer first(Port);
  ASSERT_TRUE(UntilLogged("accepted 1"));
  TcpPeer second(Port);
  ASSERT_TRUE(UntilLogged("accepted 2"));
  second.Send("hello");
  ASSERT_TRUE(UntilLogged("data 2 5"));
  first.Send("hello");
  ASSERT_TRUE(UntilLogged("data 1 5"));
  EXPECT_EQ(Service.Count("sent 1"), 0);
  ASSERT_TRUE(UntilLogged("sent 1"));
  EXPECT_FALSE(came_inside);
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(Service.Count("sent 1"), 1);
  EXPECT_EQ(Service.Count("sent 2"), 0);
}

TEST_F(LiveStreams, AnswersLargerThanTheKernelsBuffersArriveWhole) {
  const std::string answer(8000000, 'x');
  Service.OnAccepted = [&](std::int16_t slot) {
    Slots[slot].SendText(answer);
    Slots[slot].Close();
  };
  TcpPeer client(Port);
  ASSERT_TRUE(Until([&] { return client.Read() != Stream::Open; }));
  EXPECT_EQ(client.Read(), Stream::Ended);
  EXPECT_EQ(client.Received.size(), answer.size());
}

TEST_F(LiveStreams, AHandlerMayCloseAnySocketOfTheSameBatch) {
  TcpPeer first(Port);
  ASSERT_TRUE(UntilLogged("accepted 1"));
  TcpPeer second(Port);
  ASSERT_TRUE(UntilLogged("accepted 2"));
  Service.OnData = [&](std::int16_t slot) { Slots[slot == 1 ? 2 : 1].Close(); };
  first.Send("hello");
  second.Send("hello");
  ASSERT_TRUE(Until([&] { return Service.Log.size() > 2; }));
  EXPECT_TRUE(ComesToRest());
  EXPECT_EQ(Service.Count("data 1 5") + Service.Count("data 2 5"), 1);
}

}  // namespace
}  // namespace cvl
