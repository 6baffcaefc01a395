// A server of one exchange on a free loopback port, run by a thread of its own.
//
//   ScriptedPeer peer{Transport::Tcp, {.Answer = Always({{1, 2, 3, 4}})}};
//   Ask(question, peer.Where(), ...);

#pragma once

#include <functional>
#include <thread>
#include <vector>

#include "tools/query/service.h"
#include "tools/system/descriptor.h"
#include "tools/system/endpoint.h"
#include "tools/wire/bytes.h"

namespace cvl::tools {

using AnswerScript = std::function<std::vector<Bytes>(const Bytes &request)>;

/// The same pieces, whatever was asked.
AnswerScript Always(std::vector<Bytes> pieces);

struct PeerScript {
  AnswerScript Answer = Always({});  ///< each piece is one send, over UDP one datagram
  std::size_t RequestLength = 0;     ///< TCP: bytes to read before answering
  bool Closes = true;                ///< TCP: close behind the answer
};

class ScriptedPeer {
 public:
  ScriptedPeer(Transport transport, PeerScript script);
  ~ScriptedPeer();
  ScriptedPeer(const ScriptedPeer &) = delete;
  ScriptedPeer &operator=(const ScriptedPeer &) = delete;

  [[nodiscard]] const Endpoint &Where() const { return Where_; }

  /// Waits for the end of the exchange and gives what was asked.
  const Bytes &Request();

 private:
  void ServeUdp();
  void ServeTcp();
  void Join();

  PeerScript Script_;
  Descriptor Socket_;
  Descriptor Connection_;
  Endpoint Where_;
  Bytes Request_;
  std::thread Thread_;
};

/// A socket on a free loopback port with a time limit for what it reads.
Descriptor LoopbackSocket(int type);

}  // namespace cvl::tools
