// Keeps two time servers that were set on each other from keeping each other busy.

#pragma once

#include <array>
#include <cstdint>

#include "platform/address.h"

namespace cvl {

/// Counts the datagrams of one socket's suspicious senders, second by second. A sender is
/// suspicious when its port is a service's: one below 1024, or the socket's own.
class LoopGuard {
 public:
  /// At most this many datagrams of one address get through in a second.
  static constexpr int MostPerSecond = 50;

  /// Whether a sender's port is one that an answer can start a loop with.
  static bool IsSuspicious(std::uint16_t sender_port, std::int32_t own_port) {
    return sender_port < 1024 || sender_port == own_port;
  }

  /// Counts one datagram. True when it may pass.
  bool Admit(Ipv4Address sender, std::int64_t monotonic_ms);

 private:
  // An address has its place in one row. Where a row is full, the address with the least
  // datagrams gives way: never one that is being held back.
  static constexpr std::size_t Rows = 256;
  static constexpr std::size_t PerRow = 8;

  struct Entry {
    Ipv4Address Sender = 0;
    int Count = 0;
    std::int64_t BeganMs = 0;
  };

  std::array<std::array<Entry, PerRow>, Rows> Table_{};
};

}  // namespace cvl
