// Loads a stream service on loopback with connections: each asks once and reads to the end.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bench/contest.h"

namespace cvl::bench {

class ConnectionLoad {
 public:
  /// For the service on PORT of 127.0.0.1. REQUEST is sent on each connection, if it isn't
  /// empty; a whole answer has at least ANSWER_LENGTH bytes.
  ConnectionLoad(std::uint16_t port, std::string request, std::size_t answer_length);

  /// Keeps DEPTH connections open, each replaced at its end, until MOST_NS have passed.
  LoadResult Run(std::size_t depth, std::int64_t most_ns);

  /// Connects until an answer has come. False if there was none within MOST_NS.
  bool WaitForAnswer(std::int64_t most_ns);

 private:
  /// A connection on which the request has been sent, or -1.
  int Begin() const;
  /// Reads to the end, closes and judges.
  void Finish(int connection, LoadResult &result) const;

  std::uint16_t Port_;
  std::string Request_;
  std::size_t AnswerLength_;
};

}  // namespace cvl::bench
