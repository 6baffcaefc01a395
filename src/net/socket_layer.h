// What all sockets of the system share.

#pragma once

#include <string>
#include <vector>

#include "net/lingering_closes.h"
#include "net/name_cache.h"
#include "platform/network.h"
#include "platform/resolver.h"

namespace cvl {

/// Identifies a connection that asks to be accepted, while its event lasts.
using RequestId = std::int32_t;

class TcpSocket;

class SocketLayer {
 public:
  /// LOOP, NETWORK and RESOLVER outlive the layer, and the layer all sockets made on it.
  SocketLayer(EventLoop &loop, Network &network, Resolver &resolver);

  EventLoop &Loop;
  Network &System;
  NameCache Names;
  LingeringCloses Lingering;

  /// From here on no socket opens any more; what is open stays so until it is closed.
  void Shut() { Shut_ = true; }

  /// Raises 10050 once the layer is shut.
  void RequireOpen() const;

  /// Opens a socket through OPEN, called with a port: PORT itself, or for 0 free ones of at
  /// most 32767, until one is to be had. Sets PORT to the port taken. Raises the socket's
  /// failure.
  template <class Open>
  SocketHandle OpenOnPort(std::int32_t &port, Open &&open) {
    RequireOpen();
    const bool any = port == 0;
    std::int32_t taken = port;
    Network::Opened opened;
    for (int attempt = 0; attempt < (any ? MostPortAttempts : 1); ++attempt) {
      if (any) taken = DrawPort();
      opened = open(static_cast<std::uint16_t>(taken));
      if (opened.Error != error_number::AddressInUse) break;
    }
    if (opened.Error != 0) throw RuntimeError(opened.Error);
    port = taken;
    return opened.Socket;
  }

  /// Connections are taken only while this much more memory can be had: the log, the settings
  /// and the exchange go on in it, however many connections there are.
  static constexpr std::size_t MemoryKeptBack = std::size_t{256} * 1024;

  /// Whether the memory that is kept back from connections can be had.
  static bool HasMemoryForConnections();

  /// A connection that asks to be accepted.
  struct Request {
    RequestId Id = 0;
    SocketHandle Socket = SocketHandle::None;  ///< None once it is taken
    Endpoint Peer;
    TcpSocket *Taker = nullptr;  ///< the socket that has taken it
  };

  /// Keeps a connection until DropRequest, and gives it a number.
  RequestId AddRequest(SocketHandle socket, Endpoint peer);
  /// Hands a connection over to TAKER; raises 10014 when there is none of that number.
  Request TakeRequest(RequestId id, TcpSocket &taker);
  /// The socket that has taken a connection, null when none has.
  TcpSocket *TakerOf(RequestId id);
  /// Forgets a connection, and closes it unless it was taken.
  void DropRequest(RequestId id);

 private:
  static constexpr int MostPortAttempts = 200;

  static std::int32_t DrawPort();
  std::vector<Request>::iterator FindRequest(RequestId id);

  bool Shut_ = false;
  RequestId LastRequest_ = 0;
  std::vector<Request> Requests_;
};

}  // namespace cvl
