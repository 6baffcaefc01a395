// Passes inside a handler, and sockets that close there: what becomes of the batch at hand.

#include "tests/net/udp_socket_test.h"

namespace cvl {
namespace {

TEST_F(UdpSocketTest, ANestedPassGoesOnWithTheBatchInOrder) {
  Bind();
  std::vector<std::string> story;
  OnData = [&] {
    const std::string text = Socket.GetText();
    story.push_back(text + " begins");
    if (text == "one") Loop.RunOnePass();
    story.push_back(text + " ends");
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Alice, "two");
  Net.Arrive(123, Alice, "three");
  Loop.Drain();
  EXPECT_EQ(story, (std::vector<std::string>{"one begins", "two begins", "two ends", "three begins",
                                             "three ends", "one ends"}));
}

TEST_F(UdpSocketTest, DatagramsThatComeDuringANestedPassKeepTheOrder) {
  Bind();
  OnData = [&] {
    Texts.push_back(Socket.GetText());
    if (Texts.size() == 1) {
      Net.Arrive(123, Alice, "three");
      Loop.RunOnePass();
      Loop.RunOnePass();
    }
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Alice, "two");
  Loop.Drain();
  EXPECT_EQ(Texts, (std::vector<std::string>{"one", "two", "three"}));
}

TEST_F(UdpSocketTest, TheDatagramAtHandIsStillThereAfterANestedPass) {
  Bind();
  OnData = [&] {
    if (Sizes.size() == 1) Loop.RunOnePass();
    Texts.push_back(Socket.GetText());
  };
  Net.Arrive(123, Alice, "outer");
  Net.Arrive(123, Bob, "inner");
  Loop.Drain();
  EXPECT_EQ(Texts, (std::vector<std::string>{"inner", "outer"}));
}

TEST_F(UdpSocketTest, TheDatagramAtHandIsNotOverwrittenByOneThatComesInANestedPass) {
  Bind();
  OnData = [&] {
    if (Sizes.size() == 1) {
      Net.Arrive(123, Bob, "inner");
      Loop.RunOnePass();
    }
    Texts.push_back(Socket.GetText());
  };
  Net.Arrive(123, Alice, "outer");
  Loop.Drain();
  EXPECT_EQ(Texts, (std::vector<std::string>{"outer", "inner"}));
}

TEST_F(UdpSocketTest, AReadDatagramStaysReadAfterANestedPass) {
  Bind();
  int failure = 0;
  OnData = [&] {
    if (Sizes.size() > 1) return;
    static_cast<void>(Socket.GetText());
    Loop.RunOnePass();
    failure = Trap([&] { static_cast<void>(Socket.GetText()); }).Number;
  };
  Net.Arrive(123, Alice, "outer");
  Net.Arrive(123, Bob, "inner");
  Loop.Drain();
  EXPECT_EQ(failure, error_number::WouldBlock);
}

TEST_F(UdpSocketTest, AHandlerMayCloseItsSocket) {
  Bind();
  OnData = [&] { Socket.Close(); };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Alice, "two");
  Loop.Drain();
  EXPECT_EQ(Sizes.size(), 1U);
  EXPECT_EQ(Net.OpenCount(), 0U);
}

TEST_F(UdpSocketTest, AHandlerMayOpenItsSocketAnewAndTheBatchIsGone) {
  Bind(123);
  OnData = [&] {
    Texts.push_back(Socket.GetText());
    if (Texts.size() > 1) return;
    Socket.Close();
    Bind(124);
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Alice, "two");
  Loop.Drain();
  Net.Arrive(124, Alice, "three");
  Loop.Drain();
  EXPECT_EQ(Texts, (std::vector<std::string>{"one", "three"}));
}

TEST_F(UdpSocketTest, ADatagramDoesNotOutliveItsSocketsOpening) {
  Bind(123);
  int failure = 0;
  OnData = [&] {
    if (Sizes.size() == 1) {
      Loop.RunOnePass();
      failure = Trap([&] { Texts.push_back(Socket.GetText()); }).Number;
    } else {
      Socket.Close();
      Bind(124);
      Net.Arrive(124, Bob, "three");
      Loop.RunOnePass();
    }
  };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Bob, "two");
  Loop.RunOnePass();
  EXPECT_EQ(failure, error_number::WouldBlock);
  EXPECT_TRUE(Texts.empty());
}

TEST_F(UdpSocketTest, NothingIsHandedOutAfterQuit) {
  Bind();
  OnData = [&] { Loop.Quit(); };
  Net.Arrive(123, Alice, "one");
  Net.Arrive(123, Alice, "two");
  Loop.Drain();
  EXPECT_EQ(Sizes.size(), 1U);
}

}  // namespace
}  // namespace cvl
