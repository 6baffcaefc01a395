#include "platform/linux/systemd_unit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/linux/run_program.h"
#include "tests/platform_service/scratch.h"

namespace cvl {

namespace {

using testing::HasSubstr;
using testing::Not;

ServiceUnit UnitIn(const std::string &directory) {
  return {.Name = "CVLServer",
          .Description = "Chronvale Server Services",
          .Executable = directory + "/cvlserver",
          .ProgramDirectory = directory,
          .SettingsFile = directory + "/registry.reg"};
}

/// Runs systemd-analyze with WORDS and returns what it said, its status in the last line.
/// DIRECTORY is for its output.
std::string Analyze(const ScratchDirectory &directory, const std::string &words) {
  const std::string out = directory / "out";
  const int status = RunProgram({"sh", "-c", "systemd-analyze " + words + " > " + out + " 2>&1"});
  return ReadText(out) + "status " + std::to_string(status) + "\n";
}

bool CanAnalyze() {
  return RunProgram({"systemd-analyze", "--version"}) == 0;
}

TEST(SystemdUnit, HasTheLinesThatTheServiceLivesBy) {
  const std::string text = UnitText(UnitIn("/opt/chronvale"));
  for (const char *line :
       {"Description=Chronvale Server Services", "Type=notify", "Restart=on-failure",
        "RestartSec=1", "StartLimitIntervalSec=0", "WatchdogSec=30",
        "ExecStart=/opt/chronvale/cvlserver", "DynamicUser=yes", "StateDirectory=chronvale-server",
        "Environment=CHRONVALE_HOME=/var/lib/chronvale-server",
        "AmbientCapabilities=CAP_NET_BIND_SERVICE CAP_SYS_TIME",
        "CapabilityBoundingSet=CAP_NET_BIND_SERVICE CAP_SYS_TIME", "WantedBy=multi-user.target"}) {
    EXPECT_THAT(text, HasSubstr(std::string("\n") + line + "\n"));
  }
}

TEST(SystemdUnit, HasNoGapLeft) {
  const std::string text = UnitText(UnitIn("/opt/chronvale"));
  for (const char *gap : {"@Name@", "@Description@", "@Executable@", "@ServerFile@",
                          "@SettingsFile@", "@BindReadOnlyPaths@", "@RestartSteps@"}) {
    EXPECT_THAT(text, Not(HasSubstr(gap)));
  }
}

TEST(SystemdUnit, HasGrowingRestartsWhereSystemdKnowsThem) {
  ServiceUnit unit = UnitIn("/opt/chronvale");
  EXPECT_THAT(UnitText(unit), HasSubstr("\nRestartSec=1\nWatchdogSec=30\n"));
  unit.HasGrowingRestarts = true;
  EXPECT_THAT(UnitText(unit), HasSubstr("\nRestartSec=1\nRestartSteps=8\n"
                                        "RestartMaxDelaySec=60\nWatchdogSec=30\n"));
}

TEST(KnowsGrowingRestarts, FollowsTheVersionOfSystemd) {
  const ScratchDirectory programs;
  const ScopedVariable path("PATH", programs.Path().c_str());
  EXPECT_FALSE(KnowsGrowingRestarts()) << "without systemctl";
  const auto with = [&programs](const std::string &commands) {
    WriteScript(programs / "systemctl", commands);
    return KnowsGrowingRestarts();
  };
  EXPECT_TRUE(with("[ \"$*\" = --version ] && echo 'systemd 254 (254.5-1)'"));
  EXPECT_TRUE(with("echo 'systemd 257~rc1 (257~rc1-3)'; echo '+PAM +AUDIT'"));
  EXPECT_FALSE(with("echo 'systemd 253 (253.1)'"));
  EXPECT_FALSE(with("echo 'systemd 252 (252.39-1~deb12u1)'"));
  EXPECT_FALSE(with("echo 'systemd 254 (254.5-1)'; exit 1"));
  EXPECT_FALSE(with("echo 'something 300'"));
  EXPECT_FALSE(with("exit 0"));
}

TEST(SystemdUnit, StopsTheOtherClockDaemonsFirst) {
  const std::string text = UnitText(UnitIn("/opt/chronvale"));
  for (const char *other :
       {"systemd-timesyncd", "chronyd", "chrony", "ntpd", "ntp", "ntpsec", "openntpd"}) {
    EXPECT_THAT(text,
                testing::ContainsRegex(std::string("\nConflicts=[^\n]*") + other + "\\.service"));
    EXPECT_THAT(text, testing::ContainsRegex(std::string("\nAfter=[^\n]*") + other + "\\.service"));
  }
}

TEST(SystemdUnit, TakesOverServerFileAndSettingsWithoutWritingOverAny) {
  const std::string text = UnitText(UnitIn("/opt/chronvale"));
  EXPECT_THAT(text, HasSubstr("\nExecStartPre=-/bin/cp --no-clobber /opt/chronvale/QRB_CVLS4.CVL "
                              "/var/lib/chronvale-server/QRB_CVLS4.CVL\n"));
  EXPECT_THAT(text, HasSubstr("\nExecStartPre=-/bin/cp --no-clobber /opt/chronvale/registry.reg "
                              "/var/lib/chronvale-server/registry.reg\n"));
}

TEST(SystemdUnit, BringsBackDirectoriesThatItsRestrictionsHide) {
  EXPECT_THAT(UnitText(UnitIn("/opt/chronvale")), Not(HasSubstr("\nBindReadOnlyPaths=")));
  EXPECT_THAT(UnitText(UnitIn("/homes/a")), Not(HasSubstr("\nBindReadOnlyPaths=")));
  for (const char *hidden : {"/home/a/bin", "/root/bin", "/run/user/1000/bin", "/tmp/b"}) {
    EXPECT_THAT(UnitText(UnitIn(hidden)),
                HasSubstr(std::string("\nBindReadOnlyPaths=-") + hidden + "\n"));
  }
}

TEST(SystemdUnit, BringsBackEachDirectoryOnce) {
  ServiceUnit unit = UnitIn("/home/a/bin");
  unit.ProgramDirectory = "/home/a/time";
  unit.SettingsFile = "/home/a/time/registry.reg";
  EXPECT_THAT(UnitText(unit), HasSubstr("\nBindReadOnlyPaths=-/home/a/bin\n"
                                        "BindReadOnlyPaths=-/home/a/time\n"
                                        "PrivateDevices="));
}

TEST(SystemdUnit, WritesPathsSoThatTheyAreReadAsTheyAre) {
  ServiceUnit unit = UnitIn("/home/a b/100%/\"x\"/c:d/$e");
  unit.Description = "100 %";
  const std::string text = UnitText(unit);
  EXPECT_THAT(text, HasSubstr("\nDescription=100 %%\n"));
  EXPECT_THAT(text, HasSubstr("\nExecStart=\"/home/a b/100%%/\\\"x\\\"/c:d/$e/cvlserver\"\n"));
  EXPECT_THAT(text, HasSubstr(" \"/home/a b/100%%/\\\"x\\\"/c:d/$$e/QRB_CVLS4.CVL\" "));
  EXPECT_THAT(text, HasSubstr("\nBindReadOnlyPaths=\"-/home/a b/100%%/\\\"x\\\"/c\\:d/$e\"\n"));
}

TEST(SystemdUnit, DoesNotFillWhatCameOutOfAGap) {
  EXPECT_THAT(UnitText(UnitIn("/opt/@Name@")),
              HasSubstr("\nExecStart=\"/opt/@Name@/cvlserver\"\n"));
}

TEST(SystemdUnit, IsFoundWellFormedBySystemd) {
  ASSERT_TRUE(CanAnalyze()) << "the test needs systemd-analyze";
  const ScratchDirectory directory;
  for (const char *name : {"plain", "a b 100% c:d $e"}) {
    const std::string home = directory / name;
    std::filesystem::create_directory(home);
    WriteScript(home + "/cvlserver", "exit 0\n");
    WriteText(directory / "CVLServer.service", UnitText(UnitIn(home)));
    EXPECT_EQ(Analyze(directory, "verify --man=no " + (directory / "CVLServer.service")),
              "status 0\n");
  }
}

TEST(SystemdUnit, ExposesLittle) {
  ASSERT_TRUE(CanAnalyze()) << "the test needs systemd-analyze";
  const ScratchDirectory directory;
  WriteText(directory / "CVLServer.service", UnitText(UnitIn("/opt/chronvale")));
  // The threshold is in tenths.
  EXPECT_THAT(Analyze(directory, "security --offline=true --threshold=21 --no-pager " +
                                     (directory / "CVLServer.service")),
              HasSubstr("status 0\n"));
}

}  // namespace

}  // namespace cvl
