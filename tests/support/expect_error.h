// The one way in which tests ask for a failure by its number.
//
//   ExpectRuntimeError(6, [&] { time.GrabTime(); });

#pragma once

#include <gtest/gtest.h>

#include <utility>

#include "base/runtime_error.h"

namespace cvl {

/// Runs WORK and expects it to raise the failure NUMBER. No failure and another failure
/// both turn the test red, at the line of the caller; what is no RuntimeError goes through.
template <class Work>
void ExpectRuntimeError(int number, Work &&work, const char *file = __builtin_FILE(),
                        int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "ExpectRuntimeError");
  try {
    static_cast<void>(std::forward<Work>(work)());
  } catch (const RuntimeError &error) {
    EXPECT_EQ(error.Number(), number) << error.what();
    return;
  }
  ADD_FAILURE() << "expected failure " << number << ", but nothing failed";
}

}  // namespace cvl
