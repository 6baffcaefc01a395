#include "platform/linux/error_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

namespace cvl {
namespace {

TEST(SocketErrorOf, TurnsTheSystemsNumbersIntoWinsocks) {
  const std::pair<int, int> rows[]{
      {0, 0},
      {EACCES, 10013},
      {EPERM, 10013},
      {EINVAL, 10014},
      {EMFILE, 10024},
      {ENFILE, 10024},
      {EAGAIN, 10035},
      {EWOULDBLOCK, 10035},
      {EINPROGRESS, 10035},
      {EMSGSIZE, 10040},
      {EADDRINUSE, 10048},
      {EADDRNOTAVAIL, 10049},
      {ENETDOWN, 10050},
      {ENETUNREACH, 10051},
      {ECONNABORTED, 10053},
      {ECONNRESET, 10054},
      {EPIPE, 10054},
      {ENOBUFS, 10055},
      {ENOSPC, 10055},
      {ENOMEM, 10055},
      {ENOTCONN, 10057},
      {ETIMEDOUT, 10060},
      {ECONNREFUSED, 10061},
      {EHOSTUNREACH, 10065},
  };
  for (const auto &[system, ours] : rows) {
    EXPECT_EQ(SocketErrorOf(system), ours) << system;
  }
}

TEST(SocketErrorOf, HasANumberForWhatTheTableLacks) {
  EXPECT_EQ(SocketErrorOf(EXDEV), 10014);
  EXPECT_EQ(SocketErrorOf(-1), 10014);
}

TEST(FileErrorOf, TurnsTheSystemsNumbersIntoTheRunTimes) {
  const std::pair<int, int> rows[]{
      {0, 0},      {ENOENT, 53}, {ENOTDIR, 53}, {ENOSPC, 61}, {EDQUOT, 61},
      {EFBIG, 61}, {EACCES, 70}, {EPERM, 70},   {EROFS, 70},
  };
  for (const auto &[system, ours] : rows) {
    EXPECT_EQ(FileErrorOf(system), ours) << system;
  }
}

TEST(FileErrorOf, HasANumberForWhatTheTableLacks) {
  EXPECT_EQ(FileErrorOf(EISDIR), 75);
  EXPECT_EQ(FileErrorOf(EIO), 75);
}

// The environment is read once in a process, so each of these takes a fresh one.
class TraceFailureDeathTest : public testing::Test {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

  [[noreturn]] static void TraceSome(const char *setting) {
    setenv("CHRONVALE_TRACE", setting, 1);
    TraceFailure("recvmsg", EAGAIN);
    TraceFailure("connect", EINPROGRESS);
    TraceFailure("bind", EACCES);
    TraceFailure("lookup of \x1B[31mtime\xFF\n", "no such name");
    std::_Exit(0);
  }
};

TEST_F(TraceFailureDeathTest, WritesAPlainLineForWhatReallyFailed) {
  EXPECT_EXIT(TraceSome("1"), testing::ExitedWithCode(0),
              testing::StrEq("cvlserver: bind: Permission denied\n"
                             "cvlserver: lookup of ?[31mtime??: no such name\n"));
}

TEST_F(TraceFailureDeathTest, IsSilentUnlessItIsAskedFor) {
  EXPECT_EXIT(TraceSome("0"), testing::ExitedWithCode(0), testing::StrEq(""));
  EXPECT_EXIT(TraceSome(""), testing::ExitedWithCode(0), testing::StrEq(""));
}

}  // namespace
}  // namespace cvl
