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
// Only RuntimeError is caught. Anything else is a mistake of ours and goes through.

#pragma once

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
      Description_ = error.what();
    }
    return Number_ == 0;
  }

  /// The number of the last step's failure, 0 if it went well.
  int Number() const { return Number_; }

  /// The description that belongs to Number; empty if no step has failed yet.
  const std::string &Description() const { return Description_; }

 private:
  int Number_ = 0;
  std::string Description_;
};

}  // namespace cvl
