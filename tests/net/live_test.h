// A socket layer on the kernel's network, on loopback, for the tests of this folder.

#pragma once

#include <gtest/gtest.h>
#include <poll.h>

#include <chrono>

#include "net/socket_layer.h"
#include "net/udp_socket.h"
#include "platform/linux/epoll_loop.h"
#include "platform/linux/linux_network.h"
#include "tests/net/recording_service.h"
#include "tests/support/expect_error.h"
#include "tests/support/fake_resolver.h"
#include "tests/support/net_peer.h"
#include "tests/support/test_loop.h"

namespace cvl {

class LiveTest : public testing::Test {
 protected:
  LiveTest() {
    Loop.OnFatal = [](const RuntimeError &error) { throw ProcessEnded(error); };
  }

  /// Whether the loop has something to do now.
  bool IsReady() {
    pollfd loop{static_cast<int>(Loop.Descriptor()), POLLIN, 0};
    return poll(&loop, 1, 0) > 0;
  }

  /// Runs the loop until STATE holds. False when it doesn't within a generous time.
  template <class State>
  [[nodiscard]] bool Until(State &&state) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!state()) {
      if (std::chrono::steady_clock::now() > deadline) return false;
      // A client may have something to take in though the loop has nothing to do.
      pollfd loop{static_cast<int>(Loop.Descriptor()), POLLIN, 0};
      poll(&loop, 1, 1);
      Loop.RunOnePass();
    }
    return true;
  }

  /// Runs the loop until nothing would wake it. False when it spins.
  [[nodiscard]] bool ComesToRest() {
    for (int passes = 0; passes < 1000; ++passes) {
      if (!IsReady()) return true;
      Loop.RunOnePass();
    }
    return false;
  }

  EpollLoop Loop;
  LinuxNetwork Net;
  FakeResolver Resolver{Loop};
  SocketLayer Layer{Loop, Net, Resolver};
};

}  // namespace cvl
