#include "tools/upstream/upstream.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <sstream>
#include <system_error>

#include "fake_clock.h"
#include "scripted_peer.h"
#include "tools/system/socket_address.h"
#include "tools/wire/ntp_packet.h"

namespace cvl::tools {
namespace {

/// An upstream on a free port, its control pipe and one client. A datagram on loopback
/// has arrived when it is sent, so one pass that doesn't wait sees it.
class UpstreamTest : public testing::Test {
 protected:
  UpstreamTest() {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    ControlOut_ = Descriptor{ends[0]};
    ControlIn_ = Descriptor{ends[1]};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    StopOut_ = Descriptor{ends[0]};
    StopIn_ = Descriptor{ends[1]};
    Options_.Listen.Port = 0;
  }

  void Start() {
    const UpstreamInputs inputs{ControlOut_.Number(), StopOut_.Number()};
    Upstream_ = std::make_unique<Upstream>(Options_, inputs, Clock_, Out_, Err_);
  }

  bool Pass() { return Upstream_->Pass(0); }

  void Command(std::string_view text) {
    ASSERT_EQ(write(ControlIn_.Number(), text.data(), text.size()),
              static_cast<ssize_t>(text.size()));
  }

  void Send(const Bytes &bytes) {
    const sockaddr_in to = ToSocketAddress({LoopbackAddress, Upstream_->Local().Port});
    ASSERT_EQ(sendto(Client_.Number(), bytes.data(), bytes.size(), 0,
                     reinterpret_cast<const sockaddr *>(&to), sizeof to),
              static_cast<ssize_t>(bytes.size()));
  }

  void SendRequest() {
    NtpPacket packet;
    packet.Mode = NtpModeClient;
    packet.Transmit = {1, 2};
    const auto bytes = EncodeNtpPacket(packet);
    Send({bytes.begin(), bytes.end()});
  }

  /// The next answer at the client, or nothing when none has come.
  std::optional<Bytes> Answer() {
    Bytes buffer(1000);
    socklen_t length = sizeof AnswerFrom_;
    const ssize_t count = recvfrom(Client_.Number(), buffer.data(), buffer.size(), MSG_DONTWAIT,
                                   reinterpret_cast<sockaddr *>(&AnswerFrom_), &length);
    if (count < 0) {
      return std::nullopt;
    }
    buffer.resize(static_cast<std::size_t>(count));
    return buffer;
  }

  [[nodiscard]] Endpoint AnswerFrom() const { return FromSocketAddress(AnswerFrom_); }

  FakeClock Clock_;
  UpstreamOptions Options_;
  std::ostringstream Out_;
  std::ostringstream Err_;
  Descriptor ControlOut_;
  Descriptor ControlIn_;
  Descriptor StopOut_;
  Descriptor StopIn_;
  Descriptor Client_ = LoopbackSocket(SOCK_DGRAM);
  std::unique_ptr<Upstream> Upstream_;

 private:
  sockaddr_in AnswerFrom_{};
};

TEST_F(UpstreamTest, AnswersARequest) {
  Start();
  SendRequest();
  EXPECT_TRUE(Pass());
  const auto answer = Answer();
  ASSERT_TRUE(answer);
  const auto packet = DecodeNtpPacket(*answer);
  ASSERT_TRUE(packet);
  EXPECT_EQ(packet->Originate, (NtpTime{1, 2}));
  EXPECT_EQ(packet->Transmit, Clock_.Wall);
  EXPECT_EQ(AnswerFrom(), Upstream_->Local());
  EXPECT_EQ(Out_.str(), "");
  EXPECT_EQ(Err_.str(), "");
}

TEST_F(UpstreamTest, AnswersFromTheAskedAddressWhenItListensOnAll) {
  Options_.Listen.Address = 0;
  Start();
  SendRequest();
  EXPECT_TRUE(Pass());
  ASSERT_TRUE(Answer());
  EXPECT_EQ(AnswerFrom().Address, LoopbackAddress);
}

TEST_F(UpstreamTest, AnswersFromAnotherAddressAndTheSamePort) {
  Options_.Start.From = LoopbackAddress + 1;
  Start();
  SendRequest();
  EXPECT_TRUE(Pass());
  ASSERT_TRUE(Answer());
  EXPECT_EQ(AnswerFrom(), (Endpoint{LoopbackAddress + 1, Upstream_->Local().Port}));
}

TEST_F(UpstreamTest, TellsThatAnAnswerCouldNotBeSent) {
  Options_.Start.From = 0xC0000201;  // 192.0.2.1, an address for examples only
  Start();
  SendRequest();
  EXPECT_TRUE(Pass());
  EXPECT_FALSE(Answer());
  EXPECT_TRUE(Err_.str().starts_with("cvlupstream: cannot answer 127.0.0.1:"));
}

TEST_F(UpstreamTest, SendsADelayedAnswerWhenItIsDue) {
  Options_.Start.DelayMs = 500;
  Start();
  SendRequest();
  EXPECT_TRUE(Pass());
  EXPECT_FALSE(Answer());
  Clock_.Ms += 500;
  EXPECT_TRUE(Pass());
  EXPECT_TRUE(Answer());
}

TEST_F(UpstreamTest, ObeysCommandsBeforeTheRequestsOfTheSamePass) {
  Start();
  SendRequest();
  Command("silent\nnonsense\n");
  EXPECT_TRUE(Pass());
  EXPECT_FALSE(Answer());
  EXPECT_EQ(Out_.str(), "ok\nerror: unknown word\n");

  SendRequest();
  Command("normal\n");
  EXPECT_TRUE(Pass());
  EXPECT_TRUE(Answer());
}

TEST_F(UpstreamTest, EndsOnQuitAndObeysNothingBehindIt) {
  Start();
  Command("quit\nsilent\n");
  EXPECT_FALSE(Pass());
  EXPECT_EQ(Out_.str(), "ok\n");
}

TEST_F(UpstreamTest, EndsWithItsControlInput) {
  Start();
  EXPECT_TRUE(Pass());
  ControlIn_.Close();
  EXPECT_FALSE(Pass());
}

TEST_F(UpstreamTest, EndsWhenTold) {
  Start();
  ASSERT_EQ(write(StopIn_.Number(), "x", 1), 1);
  EXPECT_FALSE(Pass());
}

TEST_F(UpstreamTest, LogsEachDatagram) {
  Options_.Log = true;
  Start();
  Send({0x1B, 0x00});
  Send({});
  EXPECT_TRUE(Pass());
  const std::string client = EndpointText(LocalEndOf(Client_.Number()));
  EXPECT_EQ(Out_.str(), "1000 " + client + " 2 1b00\n1000 " + client + " 0 -\n");
}

TEST_F(UpstreamTest, CannotListenWhereAnotherListens) {
  Start();
  Options_.Listen = Upstream_->Local();
  EXPECT_THROW(Start(), std::system_error);
}

}  // namespace
}  // namespace cvl::tools
