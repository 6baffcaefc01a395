// Closing on the kernel: whether the client gets all of its answer and an orderly end.

#include "tests/net/live_test.h"

namespace cvl {
namespace {

using Stream = TcpPeer::Stream;

class LiveClosing : public LiveTest, public testing::WithParamInterface<RecordingService::Reads> {
 protected:
  LiveClosing() : Port(Service.Listen()) {
    Service.OnAccepted = [this](std::int16_t slot) {
      Service.Slots[slot].SendText("answer");
      Service.Slots[slot].Close();
    };
  }

  void ExpectWholeAnswer(TcpPeer &client) {
    ASSERT_TRUE(Until([&] { return client.Read() != Stream::Open; }));
    EXPECT_EQ(client.Read(), Stream::Ended);
    EXPECT_EQ(client.Received, "answer");
  }

  RecordingService Service{Layer, GetParam()};
  std::int32_t Port;
};

INSTANTIATE_TEST_SUITE_P(WithAndWithoutAHandlerForData, LiveClosing,
                         testing::Values(RecordingService::Reads::Yes, RecordingService::Reads::No),
                         [](const auto &param_info) {
                           return param_info.param == RecordingService::Reads::Yes ? "With"
                                                                                   : "Without";
                         });

TEST_P(LiveClosing, DeliversWhatWasSent) {
  TcpPeer client(Port);
  ExpectWholeAnswer(client);
}

TEST_P(LiveClosing, UnreadInputDoesNotTurnTheAnswerIntoAReset) {
  TcpPeer client(Port);
  client.Send(std::string(20000, 'x'));
  ExpectWholeAnswer(client);
}

TEST_P(LiveClosing, UnreadInputAndItsEndDoNotTurnTheAnswerIntoAReset) {
  TcpPeer client(Port);
  client.Send(std::string(20000, 'x'));
  client.End();
  ExpectWholeAnswer(client);
}

TEST_P(LiveClosing, InputThatComesLaterDoesNotTurnTheAnswerIntoAReset) {
  TcpPeer client(Port);
  ASSERT_TRUE(Until([&] { return Service.Count("accepted 1") > 0; }));
  client.Send(std::string(20000, 'x'));
  ASSERT_TRUE(ComesToRest());
  ExpectWholeAnswer(client);
}

TEST_P(LiveClosing, GivesTheDescriptorBackWhenThePeerHasEnded) {
  const int open = OpenDescriptors();
  TcpPeer client(Port);
  ExpectWholeAnswer(client);
  EXPECT_EQ(Layer.Lingering.Count(), 1U);
  client.Close();
  ASSERT_TRUE(Until([&] { return Layer.Lingering.Count() == 0; }));
  EXPECT_EQ(OpenDescriptors(), open);
  EXPECT_TRUE(ComesToRest());
}

TEST_P(LiveClosing, GivesTheDescriptorBackWhenThePeerBreaksOff) {
  const int open = OpenDescriptors();
  TcpPeer client(Port);
  ExpectWholeAnswer(client);
  client.Reset();
  ASSERT_TRUE(Until([&] { return Layer.Lingering.Count() == 0; }));
  EXPECT_EQ(OpenDescriptors(), open);
}

TEST_P(LiveClosing, ManyAnsweredClientsAllSeeAnOrderlyEnd) {
  for (int round = 0; round < 20; ++round) {
    std::vector<TcpPeer> clients;
    for (int count = 0; count < 10; ++count) {
      clients.emplace_back(Port).Send("request");
      if (count % 2 == 0) clients.back().End();
    }
    for (TcpPeer &client : clients) {
      ExpectWholeAnswer(client);
    }
  }
}

}  // namespace
}  // namespace cvl
