#include "bench/connection_load.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "bench/monotonic.h"

namespace cvl::bench {

namespace {

// A connection that has no end by then is given up.
constexpr int LossMs = 50;
constexpr timeval Patience{0, LossMs * 1000L};

}  // namespace

ConnectionLoad::ConnectionLoad(std::uint16_t port, std::string request, std::size_t answer_length)
    : Port_(port), Request_(std::move(request)), AnswerLength_(answer_length) {}

int ConnectionLoad::Begin() const {
  const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (connection < 0) throw std::system_error(errno, std::generic_category(), "connection load");
  sockaddr_in server{};
  server.sin_family = AF_INET;
  server.sin_port = htons(Port_);
  server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &Patience, sizeof Patience) != 0 ||
      connect(connection, reinterpret_cast<const sockaddr *>(&server), sizeof server) != 0 ||
      (!Request_.empty() && send(connection, Request_.data(), Request_.size(), MSG_NOSIGNAL) < 0)) {
    close(connection);
    return -1;
  }
  return connection;
}

void ConnectionLoad::Finish(int connection, LoadResult &result) const {
  std::array<std::uint8_t, 256> piece;
  std::size_t length = 0;
  ssize_t read = 0;
  while (connection >= 0 && (read = recv(connection, piece.data(), piece.size(), 0)) > 0) {
    length += static_cast<std::size_t>(read);
  }
  if (connection >= 0) close(connection);
  if (connection < 0 || read < 0) {
    ++result.Lost;
  } else if (length < AnswerLength_) {
    ++result.Wrong;
  } else {
    ++result.Answers;
  }
}

LoadResult ConnectionLoad::Run(std::size_t depth, std::int64_t most_ns) {
  LoadResult result;
  const std::int64_t begin = MonotonicNs();
  std::vector<pollfd> open(depth);
  for (pollfd &each : open) {
    each = {Begin(), POLLIN, 0};
  }
  while (MonotonicNs() - begin < most_ns) {
    // Without any that is ready all are late, and Finish gives each its time.
    const bool all_late = poll(open.data(), open.size(), LossMs) <= 0;
    for (pollfd &each : open) {
      if (!all_late && each.revents == 0 && each.fd >= 0) continue;
      Finish(each.fd, result);
      each = {Begin(), POLLIN, 0};
    }
  }
  result.ElapsedNs = MonotonicNs() - begin;
  for (const pollfd &each : open) {
    LoadResult unheard;
    Finish(each.fd, unheard);
  }
  return result;
}

bool ConnectionLoad::WaitForAnswer(std::int64_t most_ns) {
  const std::int64_t end = MonotonicNs() + most_ns;
  LoadResult result;
  while (result.Answers == 0 && MonotonicNs() < end) {
    Finish(Begin(), result);
  }
  return result.Answers > 0;
}

}  // namespace cvl::bench
