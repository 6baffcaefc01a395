#include "platform/linux/run_program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <sstream>

#include "tests/platform_service/scratch.h"

namespace cvl {

namespace {

/// Signals 32 and 33 are the C library's own and can't be set.
constexpr std::uint64_t OfTheLibrary = 0x180000000;

TEST(RunProgram, ReturnsTheExitStatus) {
  EXPECT_EQ(RunProgram({"true"}), 0);
  EXPECT_EQ(RunProgram({"false"}), 1);
  EXPECT_EQ(RunProgram({"sh", "-c", "exit 7"}), 7);
}

TEST(RunProgram, TellsAProgramThatIsNotThereOrWasKilledFromOneThatEnded) {
  EXPECT_EQ(RunProgram({"/nonexistent/program"}), -1);
  EXPECT_EQ(RunProgram({"sh", "-c", "kill -9 $$"}), -1);
}

TEST(RunProgram, ReturnsTheStandardOutputWithTheStatus) {
  std::string output = "before";
  EXPECT_EQ(RunProgram({"sh", "-c", "echo one; echo error >&2; echo two; exit 3"}, output), 3);
  EXPECT_EQ(output, "one\ntwo\n");
  EXPECT_EQ(RunProgram({"/nonexistent/program"}, output), -1);
  EXPECT_EQ(output, "");
}

TEST(RunProgram, ReadsALongOutputToItsEndAndReturnsItsStart) {
  std::string output;
  EXPECT_EQ(RunProgram({"head", "-c", "1000000", "/dev/zero"}, output), 0);
  EXPECT_EQ(output, std::string(65536, '\0'));
}

TEST(RunProgram, HandsWordsOnAsTheyAre) {
  const ScratchDirectory directory;
  WriteScript(directory / "show", "for word; do echo \"<$word>\"; done > \"$0.out\"\n");
  EXPECT_EQ(RunProgram({directory / "show", "a b", "$HOME; exit 1", "", "'"}), 0);
  EXPECT_EQ(ReadText(directory / "show.out"), "<a b>\n<$HOME; exit 1>\n<>\n<'>\n");
}

TEST(RunProgram, StartsItWithACleanSignalMaskAndNoneOfOurDescriptors) {
  const ScratchDirectory directory;
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, &before), 0);
  const auto handler = std::signal(SIGPIPE, SIG_IGN);
  // One that nobody marked to be closed.
  const std::string secret = directory / "secret";
  const int leaked = open(secret.c_str(), O_RDWR | O_CREAT, 0600);
  ASSERT_GE(leaked, 0);

  // No shell in between: some clear the mask themselves.
  EXPECT_EQ(RunProgram({"cp", "/proc/self/status", directory / "status"}), 0);
  // The copier stumbles over the descriptor by which it reads the folder.
  EXPECT_NE(
      RunProgram({"cp", "--recursive", "--no-dereference", "/proc/self/fd", directory / "fd"}), -1);
  std::istringstream status(ReadText(directory / "status"));
  int sets = 0;
  for (std::string field; status >> field;) {
    if (field != "SigBlk:" && field != "SigIgn:") continue;
    std::uint64_t set = 0;
    status >> std::hex >> set;
    EXPECT_EQ(set & ~OfTheLibrary, 0U) << field;
    ++sets;
  }
  EXPECT_EQ(sets, 2);
  EXPECT_EQ(std::filesystem::read_symlink(directory / "fd/2"), "/dev/null");
  for (const auto &file : std::filesystem::directory_iterator(directory / "fd")) {
    EXPECT_NE(std::filesystem::read_symlink(file), secret);
  }

  close(leaked);
  std::signal(SIGPIPE, handler);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace

}  // namespace cvl
