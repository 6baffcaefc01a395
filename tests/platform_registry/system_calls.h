// System calls in the hand of a test: work that runs in a process of its own, which is killed
// at one of its calls, or in which some of them fail.

#pragma once

#include <functional>
#include <initializer_list>
#include <vector>

namespace cvl {

/// Runs WORK in a child process and kills that at its STOP-th stop; it stops at the beginning
/// and at the end of each system call. False when the work was done before that many stops.
bool RunUntilStop(int stop, const std::function<void()> &work);

/// Runs WORK in a child process and returns the numbers of its system calls, in order.
std::vector<long> SystemCallsOf(const std::function<void()> &work);

/// Runs WORK in a child process in which each call of one of these numbers fails with
/// SYSTEM_ERROR and does nothing. Returns what WORK returns, 0 to 255.
int RunFailing(std::initializer_list<long> calls, int system_error,
               const std::function<int()> &work);

/// Runs WORK in a child process in which no file grows beyond MOST bytes, as on a disk with
/// no more room than that.
int RunWithRoomFor(unsigned long most, const std::function<int()> &work);

}  // namespace cvl
