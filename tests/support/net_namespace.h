// A network of the test's own, with nothing in it but what the test puts there.
//
//   ExpectInNetworkNamespace([&] {
//     ...
//     EXPECT_EQ(...);
//   });

#pragma once

#include <functional>

namespace cvl {

/// Runs WORK in a child process with a user and a network namespace of its own, in which it
/// may take any port and set up interfaces, and nobody else's connections are in its way.
/// Loopback is up. Failed expectations there are printed there and turn the test red, and
/// so does a system that gives ordinary users no namespaces.
void ExpectInNetworkNamespace(const std::function<void()> &work);

}  // namespace cvl
