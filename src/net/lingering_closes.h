// Connections that are closed for us but not yet for their peers.
//
// A connection closed while input lies unread turns into a reset, and a reset can throw
// away the answer on its way. So a closing connection first ends its own stream and reads
// on until the peer ends his, for a short while and for a limited number at a time.

#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <vector>

#include "platform/network.h"

namespace cvl {

class LingeringCloses {
 public:
  /// Such closing ends after this long,
  static constexpr std::int64_t LingerMs = 2000;
  /// and beyond this many, connections are closed at once.
  static constexpr std::size_t MostLingering = 1024;
  /// Most peers end at once. So a connection with nothing left to send isn't watched until it
  /// has been looked at, after at most this long.
  static constexpr std::int64_t LookMs = 100;
  /// Beyond this many that wait for their look, the oldest have it early, a few in a row:
  /// few enough to hold up no request, and together cheaper than each by itself.
  static constexpr std::size_t MostUnseen = 256;
  static constexpr std::size_t LooksInARow = 8;

  LingeringCloses(EventLoop &loop, Network &network);
  ~LingeringCloses();
  LingeringCloses(const LingeringCloses &) = delete;
  LingeringCloses &operator=(const LingeringCloses &) = delete;

  /// Takes over a connected socket that isn't watched any more. UNSENT goes out first. Without
  /// the memory for that the socket is closed at once.
  void Add(SocketHandle socket, std::vector<std::uint8_t> unsent);

  std::size_t Count() const { return Closing_.size(); }

 private:
  class Closing;

  void LookAtUnseen(std::size_t most);
  void Expire();
  void Remove(Closing &closing);

  EventLoop &Loop_;
  Network &Network_;
  LoopTimer LookTimer_;
  LoopTimer Timer_;
  std::list<std::unique_ptr<Closing>> Closing_;                // the oldest first
  std::list<std::unique_ptr<Closing>>::iterator FirstUnseen_;  // those behind it are unseen too
  std::size_t Unseen_ = 0;
};

}  // namespace cvl
