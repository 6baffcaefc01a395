#include "bench/load_generator.h"

#include <arpa/inet.h>
#include <netinet/udp.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "bench/monotonic.h"

namespace cvl::bench {

namespace {

constexpr std::uint8_t ClientRequest = 0x23;  // leap 0, version 4, mode 3
constexpr std::size_t TransmitField = 40;

// How long to stay away from the socket when little has come: asking all the time would
// keep the server from its own end of it.
constexpr std::int64_t PauseNs = 3000;

/// The eight bytes that tell the requests apart. The first is never 0.
struct Tag {
  std::uint8_t Filled = 0xE7;
  std::uint8_t Padding = 0;
  std::uint16_t Place = 0;
  std::uint32_t Number = 0;
};
static_assert(sizeof(Tag) == 8);

void PauseUntil(std::int64_t moment_ns) {
  while (MonotonicNs() < moment_ns) {
  }
}

}  // namespace

LoadGenerator::LoadGenerator(std::uint16_t port, EchoAt echo_at)
    : Socket_(socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)),
      EchoAt_(static_cast<std::size_t>(echo_at)) {
  sockaddr_in server{};
  server.sin_family = AF_INET;
  server.sin_port = htons(port);
  server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  // The kernel cuts one send into packets, each a datagram by itself to the server. That
  // costs far less than a send for each, and we are to be faster than any server.
  const int segment = PacketLength;
  if (Socket_ < 0 ||
      connect(Socket_, reinterpret_cast<const sockaddr *>(&server), sizeof server) != 0 ||
      setsockopt(Socket_, IPPROTO_UDP, UDP_SEGMENT, &segment, sizeof segment) != 0) {
    throw std::system_error(errno, std::generic_category(), "load generator");
  }
  for (std::size_t at = 0; at < MostAtOnce; ++at) {
    Outgoing_[at * PacketLength] = ClientRequest;
    Vectors_[at] = {Incoming_[at].data(), Incoming_[at].size()};
    Headers_[at].msg_hdr.msg_iov = &Vectors_[at];
    Headers_[at].msg_hdr.msg_iovlen = 1;
  }
}

LoadGenerator::~LoadGenerator() {
  close(Socket_);
}

LoadResult LoadGenerator::Run(std::size_t depth, std::int64_t most_answers, std::int64_t most_ns) {
  DropWaiting();
  Result_ = {};
  Requests_.assign(depth, {});
  Free_.clear();
  const std::int64_t begin = MonotonicNs();
  for (std::size_t place = 0; place < depth; ++place) {
    Free_.push_back(static_cast<std::uint16_t>(place));
  }
  std::int64_t now = begin;
  std::int64_t checked = begin;
  while (Result_.Answers < most_answers && now - begin < most_ns) {
    const std::size_t sent = Free_.size();
    Send(Free_, now);
    Free_.clear();
    if (sent < depth / 4) PauseUntil(now + PauseNs);
    Receive();
    now = MonotonicNs();
    if (now - checked >= LossNs / 4) {
      GiveUpOld(now);
      checked = now;
    }
  }
  Result_.ElapsedNs = now - begin;
  return Result_;
}

bool LoadGenerator::WaitForAnswer(std::int64_t most_ns) {
  constexpr std::int64_t OneTryNs = 20000000;
  const std::int64_t end = MonotonicNs() + most_ns;
  while (MonotonicNs() < end) {
    if (Run(1, 1, OneTryNs).Answers > 0) return true;
  }
  return false;
}

void LoadGenerator::Send(const std::vector<std::uint16_t> &places, std::int64_t now_ns) {
  for (std::size_t from = 0; from < places.size(); from += MostAtOnce) {
    SendSome(places.data() + from, std::min(MostAtOnce, places.size() - from), now_ns);
  }
}

void LoadGenerator::SendSome(const std::uint16_t *places, std::size_t count, std::int64_t now_ns) {
  for (std::size_t at = 0; at < count; ++at) {
    Request &request = Requests_[places[at]];
    request.SentNs = now_ns;
    ++request.Number;
    const Tag tag{.Place = places[at], .Number = request.Number};
    std::memcpy(Outgoing_.data() + at * PacketLength + TransmitField, &tag, sizeof tag);
  }
  // What can't be sent is given up in its time like what was lost on the way.
  static_cast<void>(send(Socket_, Outgoing_.data(), count * PacketLength, 0));
}

void LoadGenerator::Receive() {
  const int count = recvmmsg(Socket_, Headers_.data(), MostAtOnce, MSG_DONTWAIT, nullptr);
  for (int at = 0; at < count; ++at) {
    const auto place = static_cast<std::size_t>(at);
    Judge(Incoming_[place].data(), Headers_[place].msg_len);
  }
}

void LoadGenerator::Judge(const std::uint8_t *answer, std::size_t length) {
  Tag tag;
  std::memcpy(&tag, answer + EchoAt_, sizeof tag);
  if (length != PacketLength || tag.Place >= Requests_.size()) {
    ++Result_.Wrong;
  } else if (tag.Number != Requests_[tag.Place].Number) {
    ++Result_.Late;
  } else {
    ++Result_.Answers;
    Free_.push_back(tag.Place);
    // Not waited for any more, should it come a second time.
    ++Requests_[tag.Place].Number;
  }
}

void LoadGenerator::GiveUpOld(std::int64_t now_ns) {
  // A place whose answer is in has been freed already, so its request isn't outstanding.
  for (const std::uint16_t place : Free_) {
    Requests_[place].SentNs = now_ns;
  }
  for (std::size_t place = 0; place < Requests_.size(); ++place) {
    if (now_ns - Requests_[place].SentNs < LossNs) continue;
    ++Result_.Lost;
    Free_.push_back(static_cast<std::uint16_t>(place));
  }
}

void LoadGenerator::DropWaiting() {
  while (recvmmsg(Socket_, Headers_.data(), MostAtOnce, MSG_DONTWAIT, nullptr) > 0) {
  }
}

}  // namespace cvl::bench
