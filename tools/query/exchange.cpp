#include "tools/query/exchange.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <limits>

#include "tools/system/descriptor.h"
#include "tools/system/socket_address.h"

namespace cvl::tools {

namespace {

/// A full datagram fits, so that a length is never told too short.
constexpr std::size_t ReadSize = 65'536;

class Asker {
 public:
  Asker(const Question &question, const Endpoint &peer, std::chrono::milliseconds timeout,
        const Clock &clock)
      : Clock_{clock}, Deadline_{clock.MonotonicMs() + timeout.count()} {
    Result_.Asked = question;
    Result_.Peer = peer;
  }

  Exchange Run() {
    if (Connect() && SendRequest()) {
      ReadAnswer();
    }
    return std::move(Result_);
  }

 private:
  [[nodiscard]] bool IsTcp() const { return Result_.Asked.Over == Transport::Tcp; }

  bool Fail(int error) {
    Result_.End = Ending::Failed;
    Result_.Failure = ErrorText(error);
    return false;
  }

  /// True when the socket is ready for `events`; false when the exchange is over.
  bool Wait(short events) {
    for (;;) {
      const std::int64_t left = Deadline_ - Clock_.MonotonicMs();
      if (left <= 0) {
        Result_.End = Ending::TimedOut;
        return false;
      }
      pollfd watched{Socket_.Number(), events, 0};
      const std::int64_t wait = std::min<std::int64_t>(left, std::numeric_limits<int>::max());
      const int ready = poll(&watched, 1, static_cast<int>(wait));
      const int error = errno;
      if (ready > 0) {
        return true;
      }
      if (ready < 0 && error != EINTR) {
        return Fail(error);
      }
    }
  }

  bool Connect() {
    const int type = (IsTcp() ? SOCK_STREAM : SOCK_DGRAM) | SOCK_NONBLOCK | SOCK_CLOEXEC;
    Socket_ = Descriptor{socket(AF_INET, type, 0)};
    if (!Socket_.IsOpen()) {
      return Fail(errno);
    }
    const sockaddr_in peer = ToSocketAddress(Result_.Peer);
    if (connect(Socket_.Number(), reinterpret_cast<const sockaddr *>(&peer), sizeof peer) == 0) {
      return true;
    }
    const int error = errno;
    if (error != EINPROGRESS) {
      return Fail(error);
    }
    return Wait(POLLOUT) && CheckConnected();
  }

  bool CheckConnected() {
    int error = 0;
    socklen_t length = sizeof error;
    if (getsockopt(Socket_.Number(), SOL_SOCKET, SO_ERROR, &error, &length) != 0) {
      error = errno;
    }
    return error == 0 || Fail(error);
  }

  /// A request is far smaller than any send buffer, so one call takes all of it.
  bool SendRequest() {
    const Bytes request = RequestFor(Result_.Asked, Clock_.WallTime());
    if (IsTcp() && request.empty()) {
      return true;
    }
    if (send(Socket_.Number(), request.data(), request.size(), MSG_NOSIGNAL) < 0) {
      return Fail(errno);
    }
    Result_.Request = request;
    return true;
  }

  void ReadAnswer() {
    Bytes buffer(ReadSize);
    while (!HasEnough(Result_.Asked, Result_.Pieces)) {
      if (!Wait(POLLIN)) {
        return;
      }
      const ssize_t count = recv(Socket_.Number(), buffer.data(), buffer.size(), 0);
      const int error = errno;
      if (count >= 0) {
        if (IsTcp() && count == 0) {
          Result_.End = Ending::Closed;
          return;
        }
        Keep(ByteView{buffer}.first(static_cast<std::size_t>(count)));
      } else if (error != EAGAIN && error != EINTR) {
        Fail(error);
        return;
      }
    }
    Result_.End = Ending::Enough;
  }

  void Keep(ByteView bytes) {
    Result_.LastArrival = Clock_.WallTime();
    if (!IsTcp() || Result_.Pieces.empty()) {
      Result_.Pieces.emplace_back();
    }
    Bytes &piece = Result_.Pieces.back();
    piece.insert(piece.end(), bytes.begin(), bytes.end());
  }

  const Clock &Clock_;
  std::int64_t Deadline_;
  Descriptor Socket_;
  Exchange Result_;
};

}  // namespace

Exchange Ask(const Question &question, const Endpoint &peer, std::chrono::milliseconds timeout,
             const Clock &clock) {
  return Asker{question, peer, timeout, clock}.Run();
}

}  // namespace cvl::tools
