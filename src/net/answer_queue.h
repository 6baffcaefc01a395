// Answers that leave together: asking the system to send costs more time than making a
// short answer does, and it can be asked for many at once.

#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "platform/network.h"

namespace cvl {

class AnswerQueue {
 public:
  /// At most so many, so that the first of a batch doesn't wait long for the last.
  static constexpr std::size_t Most = 16;
  /// A longer answer is none for the queue.
  static constexpr std::size_t LongestAnswer = 64;

  bool IsEmpty() const { return Count_ == 0; }
  bool IsFull() const { return Count_ == Most; }

  /// Keeps a copy of BYTES until SendAll; the queue mustn't be full.
  void Add(std::span<const std::uint8_t> bytes, Endpoint to, Ipv4Address from) {
    std::array<std::uint8_t, LongestAnswer> &kept = Bytes_[Count_];
    std::copy(bytes.begin(), bytes.end(), kept.begin());
    Network::Outgoing &datagram = Datagrams_[Count_];
    datagram.Bytes = std::span(kept).first(bytes.size());
    datagram.To = to;
    datagram.From = from;
    ++Count_;
  }

  /// Sends them in their order through SOCKET, and the queue is empty. Those that fail are
  /// lost. Returns how many left.
  std::size_t SendAll(Network &network, SocketHandle socket) {
    const std::size_t left = network.SendAll(socket, std::span(Datagrams_).first(Count_));
    Count_ = 0;
    return left;
  }

 private:
  std::size_t Count_ = 0;
  std::array<Network::Outgoing, Most> Datagrams_;
  std::array<std::array<std::uint8_t, LongestAnswer>, Most> Bytes_;
};

}  // namespace cvl
