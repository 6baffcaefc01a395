// Loads an NTP server on loopback with a fixed number of requests outstanding.

#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include <netinet/in.h>
#include <sys/socket.h>

#include "bench/contest.h"

namespace cvl::bench {

/// Where a server puts the eight bytes by which an answer is known: those of the transmit
/// field of the request.
enum class EchoAt : std::size_t {
  Originate = 24,  ///< an NTP server
  Transmit = 40,   ///< one that sends back what it got
};

class LoadGenerator {
 public:
  /// For the server on PORT of 127.0.0.1. Raises std::system_error when there is no socket
  /// to be had.
  LoadGenerator(std::uint16_t port, EchoAt echo_at);
  ~LoadGenerator();
  LoadGenerator(const LoadGenerator &) = delete;
  LoadGenerator &operator=(const LoadGenerator &) = delete;

  /// Keeps DEPTH requests outstanding until MOST_ANSWERS have come or MOST_NS have passed.
  LoadResult Run(std::size_t depth, std::int64_t most_answers, std::int64_t most_ns);

  /// Asks until an answer has come. False if there was none within MOST_NS.
  bool WaitForAnswer(std::int64_t most_ns);

  /// A request that is this old is given up: far more than a loaded server takes, and
  /// little beside a run. Our server gives no answers in millisecond 999, and all that is
  /// outstanding then comes to this.
  static constexpr std::int64_t LossNs = 2000000;

 private:
  static constexpr std::size_t PacketLength = 48;
  /// Datagrams in one send or one receipt.
  static constexpr std::size_t MostAtOnce = 64;

  struct Request {
    std::uint32_t Number = 0;  ///< how many went out in this place before it
    std::int64_t SentNs = 0;
  };

  void Send(const std::vector<std::uint16_t> &places, std::int64_t now_ns);
  void SendSome(const std::uint16_t *places, std::size_t count, std::int64_t now_ns);
  void Receive();
  void Judge(const std::uint8_t *answer, std::size_t length);
  void GiveUpOld(std::int64_t now_ns);
  void DropWaiting();

  int Socket_;
  std::size_t EchoAt_;
  std::vector<Request> Requests_;    // by place; as many as are outstanding
  std::vector<std::uint16_t> Free_;  // places whose next request is to be sent
  LoadResult Result_;

  std::array<std::uint8_t, MostAtOnce * PacketLength> Outgoing_{};
  // A little more room than an answer has, so that a longer one shows.
  std::array<std::array<std::uint8_t, 64>, MostAtOnce> Incoming_{};
  std::array<iovec, MostAtOnce> Vectors_{};
  std::array<mmsghdr, MostAtOnce> Headers_{};
};

}  // namespace cvl::bench
