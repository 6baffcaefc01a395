#include "scripted_peer.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <utility>

#include "tools/system/socket_address.h"

namespace cvl::tools {

namespace {

/// So that a test whose client never asks fails instead of hanging.
constexpr timeval ReadLimit{10, 0};

}  // namespace

AnswerScript Always(std::vector<Bytes> pieces) {
  return [pieces = std::move(pieces)](const Bytes &) { return pieces; };
}

Descriptor LoopbackSocket(int type) {
  Descriptor result{socket(AF_INET, type | SOCK_CLOEXEC, 0)};
  const sockaddr_in address = ToSocketAddress({LoopbackAddress, 0});
  EXPECT_EQ(bind(result.Number(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
  EXPECT_EQ(setsockopt(result.Number(), SOL_SOCKET, SO_RCVTIMEO, &ReadLimit, sizeof ReadLimit), 0);
  return result;
}

ScriptedPeer::ScriptedPeer(Transport transport, PeerScript script)
    : Script_{std::move(script)},
      Socket_{LoopbackSocket(transport == Transport::Tcp ? SOCK_STREAM : SOCK_DGRAM)},
      Where_{LocalEndOf(Socket_.Number())} {
  if (transport == Transport::Tcp) {
    EXPECT_EQ(listen(Socket_.Number(), 1), 0);
    Thread_ = std::thread{[this] { ServeTcp(); }};
  } else {
    Thread_ = std::thread{[this] { ServeUdp(); }};
  }
}

ScriptedPeer::~ScriptedPeer() {
  Join();
}

const Bytes &ScriptedPeer::Request() {
  Join();
  return Request_;
}

void ScriptedPeer::Join() {
  if (Thread_.joinable()) {
    Thread_.join();
  }
}

void ScriptedPeer::ServeUdp() {
  Bytes buffer(2048);
  sockaddr_in sender{};
  socklen_t length = sizeof sender;
  const ssize_t count = recvfrom(Socket_.Number(), buffer.data(), buffer.size(), 0,
                                 reinterpret_cast<sockaddr *>(&sender), &length);
  ASSERT_GE(count, 0) << "nobody asked";
  buffer.resize(static_cast<std::size_t>(count));
  Request_ = buffer;
  for (const Bytes &piece : Script_.Answer(Request_)) {
    sendto(Socket_.Number(), piece.data(), piece.size(), MSG_NOSIGNAL,
           reinterpret_cast<const sockaddr *>(&sender), length);
  }
}

void ScriptedPeer::ServeTcp() {
  Connection_ = Descriptor{accept(Socket_.Number(), nullptr, nullptr)};
  ASSERT_TRUE(Connection_.IsOpen()) << "nobody connected";
  Request_.resize(Script_.RequestLength);
  if (Script_.RequestLength > 0) {
    ASSERT_EQ(recv(Connection_.Number(), Request_.data(), Request_.size(), MSG_WAITALL),
              static_cast<ssize_t>(Request_.size()));
  }
  for (const Bytes &piece : Script_.Answer(Request_)) {
    send(Connection_.Number(), piece.data(), piece.size(), MSG_NOSIGNAL);
  }
  if (Script_.Closes) {
    Connection_.Close();
  }
}

}  // namespace cvl::tools
