// Answers that leave together: what a handler hands to SendAnswer goes out when the batch
// of its datagram has been handled.

#include <string>
#include <vector>

#include "net/answer_queue.h"
#include "net/udp_socket.h"
#include "tests/net/fake_net_test.h"

namespace cvl {
namespace {

using Operation = FakeNetwork::Operation;

constexpr Ipv4Address Here = 0x7F000001;
constexpr Ipv4Address AlsoHere = 0x7F000002;

class UdpAnswersTest : public FakeNetTest {
 protected:
  UdpAnswersTest() {
    Socket.SetLocalPort(123);
    Socket.Bind();
    Socket.OnDataArrival = [this](std::int32_t) {
      SentAtEach.push_back(Net.Sent.size());
      OnData();
    };
  }

  void Answer(const std::string &text) {
    Socket.SetRemoteHost(Socket.RemoteHostIP());
    Socket.SendAnswer(BytesOf(text));
  }

  std::vector<std::string> SentTexts() const {
    std::vector<std::string> texts;
    for (const FakeNetwork::SentDatagram &each : Net.Sent) {
      texts.push_back(TextOf(each.Data));
    }
    return texts;
  }

  UdpSocket Socket{Layer};
  std::function<void()> OnData = [this] { Answer("to " + Socket.GetText()); };
  /// How many datagrams had been sent when each handler began.
  std::vector<std::size_t> SentAtEach;
};

TEST_F(UdpAnswersTest, OfABatchLeaveBehindItsLastHandlerInOrder) {
  Net.Arrive(123, Alice, "one", Here);
  Net.Arrive(123, Bob, "two", AlsoHere);
  Loop.RunOnePass();
  EXPECT_EQ(SentAtEach, (std::vector<std::size_t>{0, 0}));
  EXPECT_EQ(SentTexts(), (std::vector<std::string>{"to one", "to two"}));
  EXPECT_EQ(Net.Sent[0].To, Alice);
  EXPECT_EQ(Net.Sent[0].From, Here);
  EXPECT_EQ(Net.Sent[1].To, Bob);
  EXPECT_EQ(Net.Sent[1].From, AlsoHere);
}

TEST_F(UdpAnswersTest, NeverWaitForMoreThanTheQueueHolds) {
  for (std::size_t count = 0; count < AnswerQueue::Most + 2; ++count) {
    Net.Arrive(123, Alice, "request");
  }
  Loop.RunOnePass();
  EXPECT_EQ(SentAtEach[AnswerQueue::Most], 0U);
  EXPECT_EQ(SentAtEach[AnswerQueue::Most + 1], AnswerQueue::Most);
  EXPECT_EQ(Net.Sent.size(), AnswerQueue::Most + 2);
}

TEST_F(UdpAnswersTest, ThatFailAreLostAndTheNextOnesLeave) {
  Net.Fail(Operation::SendTo, error_number::NetworkUnreachable, 1);
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Bob, "two");
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), std::vector<std::string>{"to two"});
}

TEST_F(UdpAnswersTest, LeaveBeforeWhatIsSentAtOnce) {
  OnData = [this] {
    Answer("first");
    Socket.SendText("second");
    EXPECT_EQ(SentTexts(), (std::vector<std::string>{"first", "second"}));
  };
  Net.Arrive(123, Alice, "request");
  Loop.RunOnePass();
  EXPECT_EQ(Net.Sent.size(), 2U);
}

TEST_F(UdpAnswersTest, LeaveBeforeTheirSocketCloses) {
  OnData = [this] {
    Answer("last");
    Socket.Close();
  };
  Net.Arrive(123, Alice, "request");
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), std::vector<std::string>{"last"});
  EXPECT_EQ(Net.OpenCount(), 0U);
}

TEST_F(UdpAnswersTest, LeaveWhenTheLoopQuits) {
  OnData = [this] {
    Answer("last");
    Loop.Quit();
  };
  Net.Arrive(123, Alice, "request");
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), std::vector<std::string>{"last"});
}

TEST_F(UdpAnswersTest, OfANestedPassLeaveBehindThatPass) {
  OnData = [this] {
    Answer("to " + Socket.GetText());
    if (SentAtEach.size() > 1) return;
    Loop.RunOnePass();
    EXPECT_EQ(SentTexts(), (std::vector<std::string>{"to one", "to two"}));
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Bob, "two");
  Loop.RunOnePass();
  EXPECT_EQ(Net.Sent.size(), 2U);
}

TEST_F(UdpAnswersTest, OfMoreBytesThanTheQueueTakesLeaveAtOnce) {
  const std::string longest(AnswerQueue::LongestAnswer, 'x');
  OnData = [&] {
    Answer(longest);
    EXPECT_EQ(Net.Sent.size(), 0U);
    Answer(longest + "y");
    EXPECT_EQ(Net.Sent.size(), 2U);
  };
  Net.Arrive(123, Alice, "request");
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), (std::vector<std::string>{longest, longest + "y"}));
}

TEST_F(UdpAnswersTest, ToNobodyAtHandAreSentAtOnceAndRaiseTheirFailure) {
  Socket.SetRemoteHost("10.0.0.9");
  Socket.SetRemotePort(123);
  Socket.SendAnswer(BytesOf("request of ours"));
  EXPECT_EQ(SentTexts(), std::vector<std::string>{"request of ours"});
  EXPECT_EQ(Net.Sent[0].From, 0U);
  Net.Fail(Operation::SendTo, error_number::NetworkUnreachable);
  ExpectRuntimeError(error_number::NetworkUnreachable,
                     [&] { Socket.SendAnswer(BytesOf("request of ours")); });
}

TEST_F(UdpAnswersTest, AreToldOfOnceForThoseThatLeftTogether) {
  std::vector<std::size_t> sent_when_told;
  Socket.OnAnswersSent = [&] { sent_when_told.push_back(Net.Sent.size()); };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Bob, "two");
  Loop.RunOnePass();
  EXPECT_EQ(sent_when_told, std::vector<std::size_t>{2});
}

TEST_F(UdpAnswersTest, AreToldOfWhenSomeOfThemLeft) {
  int told = 0;
  Socket.OnAnswersSent = [&] { ++told; };
  Net.Fail(Operation::SendTo, error_number::NetworkUnreachable, 1);
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Bob, "two");
  Loop.RunOnePass();
  EXPECT_EQ(told, 1);
}

TEST_F(UdpAnswersTest, AreNotToldOfWhenAllOfThemFail) {
  int told = 0;
  Socket.OnAnswersSent = [&] { ++told; };
  Net.Fail(Operation::SendTo, error_number::NetworkUnreachable, 2);
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Bob, "two");
  Loop.RunOnePass();
  EXPECT_EQ(told, 0);
}

TEST_F(UdpAnswersTest, AreAllSentThoughThereAreMoreThanTheQueueHolds) {
  std::vector<std::string> expected;
  for (std::size_t count = 0; count < DatagramBatch::Most; ++count) {
    const std::string text = std::to_string(count);
    expected.push_back("to " + text);
    Net.Arrive(123, Alice, text);
  }
  ASSERT_GT(expected.size(), AnswerQueue::Most);
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), expected);
}

TEST_F(UdpAnswersTest, KeepTheirOrderWithALongOne) {
  OnData = [this] { Answer(Socket.GetText()); };
  const std::string longest(AnswerQueue::LongestAnswer, 'x');
  const std::string longer(AnswerQueue::LongestAnswer + 1, 'x');
  for (const std::string &text : {std::string("one"), longest, longer, std::string("four")}) {
    Net.Arrive(123, Alice, text);
  }
  Loop.RunOnePass();
  EXPECT_EQ(SentTexts(), (std::vector<std::string>{"one", longest, longer, "four"}));
}

TEST_F(UdpAnswersTest, LeaveBeforeAPassInsideALaterHandler) {
  std::size_t sent_behind_the_pass = 0;
  OnData = [&] {
    if (SentAtEach.size() == 1) {
      Answer("answer");
    } else {
      Loop.RunOnePass();
      sent_behind_the_pass = Net.Sent.size();
    }
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Bob, "two");
  Loop.RunOnePass();
  EXPECT_EQ(sent_behind_the_pass, 1U);
  EXPECT_EQ(SentTexts(), std::vector<std::string>{"answer"});
}

TEST_F(UdpAnswersTest, LeaveBeforeAPassInsideTheirOwnHandler) {
  std::size_t sent_behind_the_pass = 0;
  OnData = [&] {
    Answer("answer");
    Loop.RunOnePass();
    sent_behind_the_pass = Net.Sent.size();
  };
  Net.Arrive(123, Alice, "hello");
  Loop.RunOnePass();
  EXPECT_EQ(sent_behind_the_pass, 1U);
  EXPECT_EQ(Net.Sent.size(), 1U);
}

TEST_F(UdpAnswersTest, ToSomebodyElseAreSendsLikeAnyOther) {
  int failure = 0;
  OnData = [&] {
    Socket.SetRemoteHost("10.0.0.9");
    Net.Fail(Operation::SendTo, error_number::NetworkUnreachable);
    failure = Trap([&] { Socket.SendAnswer(BytesOf("lost")); }).Number;
    Socket.SendAnswer(BytesOf("answer"));
    EXPECT_EQ(Net.Sent.size(), 1U);
  };
  Net.Arrive(123, Alice, "hello", Here);
  Loop.RunOnePass();
  EXPECT_EQ(failure, error_number::NetworkUnreachable);
  ASSERT_EQ(Net.Sent.size(), 1U);
  EXPECT_EQ(Net.Sent[0].From, 0U);
}

TEST_F(UdpAnswersTest, ToANameWithoutAFreshAnswerFailWith11001) {
  int failure = 0;
  OnData = [&] {
    Socket.SetRemoteHost("time.example");
    failure = Trap([&] { Socket.SendAnswer(BytesOf("lost")); }).Number;
  };
  Net.Arrive(123, Alice, "hello");
  Loop.RunOnePass();
  EXPECT_EQ(failure, error_number::HostNotFound);
}

}  // namespace
}  // namespace cvl
