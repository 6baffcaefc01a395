#include "platform/linux/rights.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "platform/linux/run_program.h"
#include "tests/platform_service/scratch.h"

namespace cvl {
namespace {

using testing::HasSubstr;

constexpr Capabilities MayBindPorts = Capabilities{1} << CAP_NET_BIND_SERVICE;
constexpr Capabilities MaySetClock = Capabilities{1} << CAP_SYS_TIME;
constexpr Capabilities MayAccessFiles = Capabilities{1} << CAP_DAC_OVERRIDE;

/// Runs WORK in a child process as the mapped root of a user namespace of its own.
void AsRoot(const std::function<void()> &work) {
  const std::string map = "0 " + std::to_string(geteuid()) + " 1";
  const pid_t child = fork();
  if (child == 0) {
    if (unshare(CLONE_NEWUSER) != 0) _exit(1);
    std::ofstream("/proc/self/uid_map") << map << std::flush;
    if (geteuid() != 0) _exit(2);
    work();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFEXITED(status));
  ASSERT_EQ(WEXITSTATUS(status), 0) << "the child could not be set up";
}

class RightsTest : public testing::Test {
 protected:
  /// The lines of the status of this process that are about its rights.
  void Report(const std::string &name) const {
    std::ifstream status("/proc/self/status");
    std::ofstream report(Directory / name);
    for (std::string line; std::getline(status, line);) {
      if (line.compare(0, 3, "Cap") == 0 || line.compare(0, 3, "NoN") == 0) report << line << '\n';
    }
  }

  /// The report of a process that has BITS and no others.
  static std::string Limited(const std::string &bits, const std::string &bounding) {
    return "CapInh:\t0000000000000000\nCapPrm:\t" + bits + "\nCapEff:\t" + bits + "\nCapBnd:\t" +
           bounding + "\nCapAmb:\t0000000000000000\nNoNewPrivs:\t1\n";
  }

  ScratchDirectory Directory;
};

TEST(NeededCapabilities, AreThoseOfPortsAndClock) {
  EXPECT_EQ(NeededCapabilities(0, 0), MayBindPorts | MaySetClock);
  EXPECT_EQ(NeededCapabilities(1000, 1000), MayBindPorts | MaySetClock);
}

TEST(NeededCapabilities, IncludeThatOfFilesInADirectoryOfAnotherUser) {
  EXPECT_EQ(NeededCapabilities(0, 1000), MayBindPorts | MaySetClock | MayAccessFiles);
}

TEST_F(RightsTest, GoDownToPortsAndClock) {
  AsRoot([this] {
    GiveUpRights(Directory.Path());
    Report("rights");
  });
  EXPECT_EQ(ReadText(Directory / "rights"), Limited("0000000002000400", "0000000002000400"));
}

TEST_F(RightsTest, AreTheSameWithoutADirectory) {
  AsRoot([this] {
    GiveUpRights(Directory / "missing");
    Report("rights");
  });
  EXPECT_EQ(ReadText(Directory / "rights"), Limited("0000000002000400", "0000000002000400"));
}

TEST_F(RightsTest, ArePassedOnToProgramsThatAreStarted) {
  AsRoot([this] {
    GiveUpRights(Directory.Path());
    const std::string report = Directory / "rights";
    _exit(RunProgram({"sh", "-c", "grep -E '^(Cap|NoN)' /proc/self/status >'" + report + "'"}));
  });
  EXPECT_EQ(ReadText(Directory / "rights"), Limited("0000000002000400", "0000000002000400"));
}

TEST_F(RightsTest, GoWithoutTheRightToLimitOthers) {
  AsRoot([this] {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct sets[_LINUX_CAPABILITY_U32S_3]{};
    sets[0].permitted = CAP_TO_MASK(CAP_SYS_TIME) | CAP_TO_MASK(CAP_CHOWN);
    sets[0].effective = sets[0].permitted;
    if (syscall(SYS_capset, &header, sets) != 0) _exit(3);
    GiveUpRights(Directory.Path());
    Report("rights");
  });
  const std::string report = ReadText(Directory / "rights");
  EXPECT_THAT(report, HasSubstr("CapPrm:\t0000000002000000\nCapEff:\t0000000002000000\n"));
  EXPECT_THAT(report, HasSubstr("NoNewPrivs:\t1\n"));
}

TEST_F(RightsTest, AreNoneForAnOrdinaryUser) {
  const pid_t child = fork();
  if (child == 0) {
    // Without any capability, as after a change to an ordinary user.
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3]{};
    syscall(SYS_capset, &header, none);
    GiveUpRights(Directory.Path());
    Report("rights");
    _exit(0);
  }
  waitpid(child, nullptr, 0);
  const std::string report = ReadText(Directory / "rights");
  EXPECT_THAT(report, HasSubstr("CapPrm:\t0000000000000000\nCapEff:\t0000000000000000\n"));
  EXPECT_THAT(report, HasSubstr("NoNewPrivs:\t1\n"));
}

}  // namespace
}  // namespace cvl
