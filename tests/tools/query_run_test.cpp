#include "tools/query/query_run.h"

#include <gtest/gtest.h>

#include <sstream>

namespace cvl::tools {
namespace {

/// A network without sockets: whoever is asked over a transport that works says "now",
/// which is an answer of the Daytime service and of no other.
class FakeNetwork {
 public:
  std::vector<Question> Asked;
  std::vector<std::uint16_t> Ports;
  std::vector<std::int64_t> Timeouts;
  Transport Broken = Transport::Tcp;
  bool AnyBroken = false;
  std::ostringstream Out;
  std::ostringstream Err;

  QueryStatus Run(const std::vector<std::string> &arguments) {
    const QueryNetwork network{
        [](const std::string &host) {
          return host == "known" ? std::optional<std::uint32_t>{LoopbackAddress} : std::nullopt;
        },
        [this](const Question &question, const Endpoint &peer, std::chrono::milliseconds timeout) {
          return Answer(question, peer, timeout);
        }};
    return RunQuery(arguments, network, Out, Err);
  }

 private:
  Exchange Answer(const Question &question, const Endpoint &peer,
                  std::chrono::milliseconds timeout) {
    Asked.push_back(question);
    Ports.push_back(peer.Port);
    Timeouts.push_back(timeout.count());
    Exchange exchange;
    exchange.Asked = question;
    exchange.Peer = peer;
    if (!AnyBroken || question.Over != Broken) {
      exchange.Pieces = {{'n', 'o', 'w'}};
      exchange.End = question.Over == Transport::Tcp ? Ending::Closed : Ending::Enough;
    }
    return exchange;
  }
};

TEST(RunQuery, AsksOverBothTransportsAndReportsBoth) {
  FakeNetwork network;
  EXPECT_EQ(network.Run({"daytime", "known"}), QueryAnswered);
  EXPECT_EQ(network.Out.str(),
            "daytime udp 127.0.0.1:13\n"
            "  text             now\n"
            "daytime tcp 127.0.0.1:13\n"
            "  text             now\n");
  EXPECT_EQ(network.Err.str(), "");
}

TEST(RunQuery, IsNotAnsweredWhenOneTransportFails) {
  FakeNetwork network;
  network.AnyBroken = true;
  for (const Transport broken : {Transport::Udp, Transport::Tcp}) {
    network.Broken = broken;
    EXPECT_EQ(network.Run({"daytime", "known"}), QueryNotAnswered);
  }
  EXPECT_EQ(network.Run({"--udp", "daytime", "known"}), QueryAnswered);
}

TEST(RunQuery, AllAsksNineAtTheirOwnPortsAndGoesOnAfterAFailure) {
  FakeNetwork network;
  EXPECT_EQ(network.Run({"all", "known"}), QueryNotAnswered);
  EXPECT_EQ(network.Ports, (std::vector<std::uint16_t>{123, 123, 37, 37, 13, 13, 519, 3777, 3777}));
}

TEST(RunQuery, HandsPortAndTimeoutOn) {
  FakeNetwork network;
  EXPECT_EQ(network.Run({"--port=1313", "--timeout=0.25", "--udp", "daytime", "known"}),
            QueryAnswered);
  EXPECT_EQ(network.Ports, std::vector<std::uint16_t>{1313});
  EXPECT_EQ(network.Timeouts, std::vector<std::int64_t>{250});
}

TEST(RunQuery, ShowsBytesWhenAsked) {
  FakeNetwork network;
  network.Run({"--hex", "--udp", "daytime", "known"});
  EXPECT_EQ(network.Out.str(), "daytime udp 127.0.0.1:13\n     0  6e 6f 77\n");
}

TEST(RunQuery, IsNotAnsweredByAnUnknownHost) {
  FakeNetwork network;
  EXPECT_EQ(network.Run({"ntp", "nowhere"}), QueryNotAnswered);
  EXPECT_TRUE(network.Asked.empty());
  EXPECT_EQ(network.Out.str(), "");
  EXPECT_NE(network.Err.str(), "");
}

TEST(RunQuery, ComplainsAboutABadCommandLineWithoutAsking) {
  FakeNetwork network;
  EXPECT_EQ(network.Run({"--port", "37", "all", "known"}), QueryUsage);
  EXPECT_TRUE(network.Asked.empty());
  EXPECT_EQ(network.Out.str(), "");
  EXPECT_EQ(network.Err.str(),
            "cvlquery: --port names the port of one service, not of all\n"
            "Try cvlquery --help.\n");
}

TEST(RunQuery, ShowsHelpAndVersion) {
  FakeNetwork network;
  EXPECT_EQ(network.Run({"--version"}), QueryAnswered);
  EXPECT_EQ(network.Out.str(), "cvlquery 5.1.1\n");
  EXPECT_EQ(network.Run({"--help"}), QueryAnswered);
  EXPECT_NE(network.Out.str().find("usage: cvlquery"), std::string::npos);
}

}  // namespace
}  // namespace cvl::tools
