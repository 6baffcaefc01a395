#include "bench/connection_load.h"

#include <netinet/in.h>
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
constexpr suseconds_t LossUs = 50000;

}  // namespace

ConnectionLoad::ConnectionLoad(std::uint16_t port, std::string request, std::size_t answer_length)
    : Port_(port), Request_(std::move(request)), AnswerLength_(answer_length) {}

int ConnectionLoad::Begin() const {
  const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (connection < 0) throw std::system_error(errno, std::generic_category(), "connection load");
  const timeval patience{0, LossUs};
  sockaddr_in server{};
  server.sin_family = AF_INET;
  server.sin_port = htons(Port_);
  server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience) != 0 ||
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
  std::vector<int> open;
  for (std::size_t place = 0; place < depth; ++place) {
    open.push_back(Begin());
  }
  for (std::size_t oldest = 0; MonotonicNs() - begin < most_ns; oldest = (oldest + 1) % depth) {
    Finish(open[oldest], result);
    open[oldest] = Begin();
  }
  result.ElapsedNs = MonotonicNs() - begin;
  for (const int connection : open) {
    LoadResult unheard;
    Finish(connection, unheard);
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
