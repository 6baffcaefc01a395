// The loop where the system refuses to watch, and where memory runs out.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <new>

#include "platform/linux/epoll_loop.h"
#include "tests/platform/loop_parts.h"
#include "tests/support/expect_error.h"

namespace cvl {
namespace {

class EpollRefusals : public testing::Test {
 protected:
  EpollLoop Loop;
};

TEST_F(EpollRefusals, RaisesTheFailureOfASocketThatTheSystemRefusesToWatch) {
  // The kernel watches no ordinary file.
  const int file = open("/dev/null", O_RDONLY | O_CLOEXEC);
  ASSERT_GE(file, 0);
  HandlerOf socket([](Readiness) { FAIL() << "never watched"; });
  ExpectRuntimeError(error_number::AccessDenied,
                     [&] { Loop.Watch(SocketHandle{file}, {.Read = true}, socket); });
  close(file);

  // A descriptor that reuses the number is watched as a new one.
  Bell bell;
  ASSERT_EQ(bell.Handle(), SocketHandle{file});
  int events = 0;
  HandlerOf heir([&](Readiness) { ++events; });
  bell.Ring();
  Loop.Watch(bell.Handle(), {.Read = true}, heir);
  Loop.RunOnePass();
  EXPECT_EQ(events, 1);
  Loop.Unwatch(bell.Handle());
}

TEST_F(EpollRefusals, WatchesNoLongerWhatTheSystemRefusesToWatchOtherwise) {
  Bell bell;
  HandlerOf socket([](Readiness) { FAIL() << "the watch is over"; });
  Loop.Watch(bell.Handle(), {.Read = true}, socket);
  const int number = static_cast<int>(bell.Handle());
  const int file = open("/dev/null", O_RDONLY | O_CLOEXEC);
  ASSERT_GE(file, 0);
  ASSERT_EQ(dup2(file, number), number);  // the bell is closed, and its watch gone with it
  ExpectRuntimeError(error_number::AccessDenied,
                     [&] { Loop.Watch(SocketHandle{number}, {.Write = true}, socket); });
  close(file);
  Loop.RunOnePass();
}

TEST_F(EpollRefusals, MemoryThatRunsOutInAnEventIsFatalFailure7) {
  Bell bell;
  HandlerOf socket([](Readiness) { throw std::bad_alloc(); });
  int fatal = 0;
  Loop.OnFatal = [&](const RuntimeError &error) {
    fatal = error.Number();
    EXPECT_STREQ(error.what(), "Out of memory");
    throw FatalReached{error.Number()};
  };
  Loop.Watch(bell.Handle(), {.Read = true}, socket);
  bell.Ring();
  EXPECT_THROW(Loop.RunOnePass(), FatalReached);
  EXPECT_EQ(fatal, error_number::OutOfMemory);
  Loop.Unwatch(bell.Handle());
}

}  // namespace
}  // namespace cvl
