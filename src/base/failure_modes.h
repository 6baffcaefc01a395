// How a routine meets failures. There are three modes, and each routine shows its
// own in its first lines:
//
//   neither    no helper at all: a failure goes up to the nearest caller in one of
//              the two other modes. One without such a caller ends the process.
//   trap       Failure failure = Trap([&] { ...the routine's body... });
//   continue   ContinueOnFailure mode;
//              mode.Step([&] { TOR_NTP = GrabTime(); });
//              if (!mode.Step([&] { socket.SendData(reply); })) return;
//
// RuntimeError is caught, and memory that runs out, as failure OutOfMemory (7). Any other
// exception is a bug of ours and propagates.

#pragma once

#include <new>
#include <string>
#include <utility>

#include "base/runtime_error.h"

namespace cvl {

/// What a trap caught; the number is 0 when all went well.
struct Failure {
  int Number = 0;
  std::string Description;

  explicit operator bool() const { return Number != 0; }
};

/// Runs a routine's body and lands right behind it when a step fails.
template <class Body>
[[nodiscard]] Failure Trap(Body &&body) {
  try {
    std::forward<Body>(body)();
    return {};
  } catch (const RuntimeError &error) {
    return {error.Number(), error.what()};
  } catch (const std::bad_alloc &) {
    // Short enough to be stored in the string itself: this allocates nothing.
    return {error_number::OutOfMemory, DescriptionOf(error_number::OutOfMemory)};
  }
}

/// Runs a routine's body. True when memory ran out in it; any other failure propagates.
template <class Body>
[[nodiscard]] bool RunsOutOfMemory(Body &&body) {
  try {
    std::forward<Body>(body)();
    return false;
  } catch (const std::bad_alloc &) {
    return true;
  }
}

/// Skips failed steps: each Step runs one step, and the next one can ask how it went.
class ContinueOnFailure {
 public:
  /// Runs one step. False when it failed; what it had done before that stays done.
  template <class Work>
  bool Step(Work &&work) {
    try {
      std::forward<Work>(work)();
      Number_ = 0;
    } catch (const RuntimeError &error) {
      Number_ = error.Number();
    } catch (const std::bad_alloc &) {
      Number_ = error_number::OutOfMemory;
    }
    return Number_ == 0;
  }

  /// The number of the last step's failure, 0 if it went well.
  int Number() const { return Number_; }

 private:
  int Number_ = 0;
};

}  // namespace cvl
