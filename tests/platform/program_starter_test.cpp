#include <gtest/gtest.h>
#include <pthread.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/linux/linux_program_starter.h"

namespace cvl {
namespace {

class ProgramStarterTest : public testing::Test {
 protected:
  ProgramStarterTest() {
    std::string folder = testing::TempDir() + "cvl-start-XXXXXX";
    Folder = mkdtemp(folder.data());
  }
  ~ProgramStarterTest() override { std::filesystem::remove_all(Folder); }

  /// A program that runs the commands of LINES; the file of Report is $REPORT there.
  void Write(const std::string &lines) const {
    std::ofstream(Program()) << "#!/bin/sh\nREPORT='" << Folder << "/report'\n" << lines << "\n";
    chmod(Program().c_str(), 0755);
  }
  std::string Program() const { return Folder + "/a program"; }

  /// Waits for the program that was started last and tells what it has written.
  std::string Report() const {
    while (waitpid(-1, nullptr, 0) < 0 && errno == EINTR) {
    }
    std::ifstream file(Folder + "/report");
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::string Folder;
  LinuxProgramStarter Starter;
};

TEST_F(ProgramStarterTest, HandsOverEachArgumentAsItStands) {
  Write(R"(for word in "$@"; do echo "<$word>" >>"$REPORT"; done)");
  EXPECT_EQ(Starter.Start(Program(), {"/v5.2.0", "/tUPDATEING Chronvale Server", "$HOME \"'*"}), 0);
  EXPECT_EQ(Report(), "</v5.2.0>\n</tUPDATEING Chronvale Server>\n<$HOME \"'*>\n");
}

TEST_F(ProgramStarterTest, DoesNotWait) {
  // It ends when it is told to, which waiting for it would never come to.
  const std::string gate = Folder + "/gate";
  ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
  Write("read line <'" + gate + "'; echo \"$line\" >\"$REPORT\"");
  ASSERT_EQ(Starter.Start(Program(), {}), 0);
  std::ofstream(gate) << "go\n";
  EXPECT_EQ(Report(), "go\n");
}

TEST_F(ProgramStarterTest, GivesNoneOfOurDescriptorsAway) {
  const int ours = dup(STDERR_FILENO);
  Write(R"(for file in /proc/$$/fd/*; do readlink "$file" >>"$REPORT.all"; done
grep -v -e '^/dev/null$' -e "a program" "$REPORT.all" >"$REPORT")");
  EXPECT_EQ(Starter.Start(Program(), {}), 0);
  close(ours);
  EXPECT_EQ(Report(), Folder + "/report.all\n");  // the shell's own
}

TEST_F(ProgramStarterTest, BlocksAndIgnoresNoSignal) {
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, &before);
  const auto handler = std::signal(SIGUSR1, SIG_IGN);
  // The last seven digits: signals 1 to 28, without those that the C library keeps for itself.
  Write(R"(exec sed -nE 's/^Sig(Blk|Ign):.*(.{7})$/\1 \2/p' /proc/self/status >"$REPORT")");
  const int error = Starter.Start(Program(), {});
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  std::signal(SIGUSR1, handler);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(Report(), "Blk 0000000\nIgn 0000000\n");
}

TEST_F(ProgramStarterTest, TellsOfAProgramThatIsMissing) {
  EXPECT_EQ(Starter.Start(Folder + "/none", {}), 53);
}

TEST_F(ProgramStarterTest, TellsOfAFileThatIsNoProgram) {
  std::ofstream(Program()) << "only text\n";
  EXPECT_EQ(Starter.Start(Program(), {}), 70);
}

TEST_F(ProgramStarterTest, TakesThoseThatHaveEndedOffTheSystemsTable) {
  Write("true");
  ASSERT_EQ(Starter.Start(Program(), {}), 0);
  siginfo_t ended{};
  ASSERT_EQ(waitid(P_ALL, 0, &ended, WEXITED | WNOWAIT), 0);
  EXPECT_EQ(Starter.Start(Folder + "/none", {}), 53);
  EXPECT_EQ(waitpid(ended.si_pid, nullptr, 0), -1);
  EXPECT_EQ(errno, ECHILD);
}

}  // namespace
}  // namespace cvl
