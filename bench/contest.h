// Servers that are measured beside each other: they take turns under the same load, round by
// round, so that whatever else the machine does meets them alike.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace cvl::bench {

/// Each server has one core to itself, and the load has the other.
inline constexpr int LoadCore = 0;
inline constexpr int ServerCore = 1;

/// What one round has seen.
struct LoadResult {
  std::int64_t Answers = 0;  ///< whole, and to a request that was waited for
  std::int64_t Lost = 0;     ///< requests without an answer in time; each is replaced
  std::int64_t Late = 0;     ///< answers to requests that had been given up
  std::int64_t Wrong = 0;    ///< answers that are not whole, or to no request of ours
  std::int64_t ElapsedNs = 0;
};

/// A server and the load for it.
class Contender {
 public:
  explicit Contender(std::string name) : Name(std::move(name)) {}
  virtual ~Contender() = default;
  Contender(const Contender &) = delete;
  Contender &operator=(const Contender &) = delete;

  const std::string Name;

  /// False when the server doesn't answer, or has ended.
  virtual bool WaitUntilReady() = 0;

  /// One round with DEPTH requests outstanding.
  virtual LoadResult Load(std::size_t depth) = 0;

  /// Processor time that the server has used so far, in nanoseconds.
  virtual std::int64_t ProcessorNs() const = 0;
};

using Contenders = std::vector<std::unique_ptr<Contender>>;

/// Waits for each contender. False, with a line that names it, when one doesn't answer.
bool AllReady(const Contenders &contenders);

/// Runs ROUNDS rounds with DEPTH requests outstanding, and more while the medians still move,
/// and prints, as medians, what each contender has shown, then how the first compares with each
/// of the others and how well that is known. Says so when the medians never stand still.
void Compete(const Contenders &contenders, std::size_t depth, int rounds);

/// The number of rounds that the arguments of a benchmark ask for: the first, if there is one.
int RoundsOf(int count, char **arguments);

}  // namespace cvl::bench
