#include "tests/platform_service/notify_socket.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>

namespace cvl {

NotifySocket::NotifySocket() {
  const std::string path = Directory_ / "notify";
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  EXPECT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  Socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  EXPECT_EQ(bind(Socket_, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
  Variable_ = std::make_unique<ScopedVariable>("NOTIFY_SOCKET", path.c_str());
}

NotifySocket::~NotifySocket() {
  close(Socket_);
}

std::vector<std::string> NotifySocket::Take() {
  std::vector<std::string> messages;
  std::array<char, 4096> buffer;
  for (;;) {
    const ssize_t length = recv(Socket_, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (length < 0) return messages;
    messages.emplace_back(buffer.data(), static_cast<std::size_t>(length));
  }
}

}  // namespace cvl
