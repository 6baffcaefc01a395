#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/systemd_unit.h"
#include "tests/platform_service/scratch.h"

namespace cvl {

namespace {

/// A systemctl that writes down its words and does as the test says.
class UnitInstallTest : public testing::Test {
 protected:
  UnitInstallTest() { LetSystemctl("exit 0"); }

  void LetSystemctl(const std::string &commands) {
    WriteScript(Programs / "systemctl",
                "echo \"$@\" >> '" + (Programs / "calls") + "'\n" + commands + "\n");
  }
  std::string Calls() const { return ReadText(Programs / "calls"); }
  std::string UnitPath() const { return Units / "CVLServer.service"; }
  bool HasUnit() const { return std::filesystem::exists(UnitPath()); }

  ScratchDirectory Units;
  ScratchDirectory Programs;
  ScopedVariable Path{"PATH", Programs.Path().c_str()};
  ServiceUnit Unit{.Name = "CVLServer",
                   .Description = "Chronvale Server Services",
                   .Executable = "/opt/chronvale/cvlserver",
                   .ProgramDirectory = "/opt/chronvale",
                   .SettingsFile = "/opt/chronvale/registry.reg"};
};

TEST_F(UnitInstallTest, WritesTheUnitThenHasItReadThenEnabled) {
  EXPECT_TRUE(InstallUnit(Unit, Units.Path()));
  EXPECT_EQ(ReadText(UnitPath()), UnitText(Unit));
  EXPECT_EQ(Calls(), "daemon-reload\nenable CVLServer.service\n");
}

TEST_F(UnitInstallTest, LeavesOutTheStartWithTheMachineWhereNoneIsWanted) {
  Unit.StartsAutomatically = false;
  EXPECT_TRUE(InstallUnit(Unit, Units.Path()));
  EXPECT_EQ(Calls(), "daemon-reload\n");
}

TEST_F(UnitInstallTest, WritesOverAnOlderUnit) {
  WriteText(UnitPath(), "[Unit]\nDescription=old\n");
  EXPECT_TRUE(InstallUnit(Unit, Units.Path()));
  EXPECT_EQ(ReadText(UnitPath()), UnitText(Unit));
}

TEST_F(UnitInstallTest, FailsWithEachStepOfIts) {
  EXPECT_FALSE(InstallUnit(Unit, Units / "missing"));
  EXPECT_EQ(Calls(), "") << "nothing to be read";

  LetSystemctl("[ $1 != daemon-reload ]");
  EXPECT_FALSE(InstallUnit(Unit, Units.Path()));
  EXPECT_EQ(Calls(), "daemon-reload\n");

  LetSystemctl("[ $1 != enable ]");
  EXPECT_FALSE(InstallUnit(Unit, Units.Path()));
  EXPECT_EQ(Calls(), "daemon-reload\ndaemon-reload\nenable CVLServer.service\n");
}

TEST_F(UnitInstallTest, FailsWithoutSystemctl) {
  std::filesystem::remove(Programs / "systemctl");
  EXPECT_FALSE(InstallUnit(Unit, Units.Path()));
}

TEST_F(UnitInstallTest, RefusesAPathThatWouldBeginALineOfTheUnit) {
  Unit.ProgramDirectory = "/opt/two\nUser=root";
  EXPECT_FALSE(InstallUnit(Unit, Units.Path()));
  EXPECT_FALSE(HasUnit());
}

TEST_F(UnitInstallTest, RefusesAProgramThatSystemdWouldNotStart) {
  for (const char *path : {"/opt/a\"b/cvlserver", "/opt/a'b/cvlserver", "/opt/a\\b/cvlserver"}) {
    Unit.Executable = path;
    EXPECT_FALSE(InstallUnit(Unit, Units.Path())) << path;
  }
  EXPECT_FALSE(HasUnit());
}

TEST_F(UnitInstallTest, DisablesTheUnitRemovesItAndHasThatRead) {
  ASSERT_TRUE(InstallUnit(Unit, Units.Path()));
  std::filesystem::remove(Programs / "calls");
  EXPECT_TRUE(UninstallUnit("CVLServer", Units.Path()));
  EXPECT_FALSE(HasUnit());
  EXPECT_EQ(Calls(), "disable CVLServer.service\ndaemon-reload\n");
}

TEST_F(UnitInstallTest, CannotRemoveWhatIsNotInstalled) {
  EXPECT_FALSE(UninstallUnit("CVLServer", Units.Path()));
  EXPECT_EQ(Calls(), "");
}

TEST_F(UnitInstallTest, KeepsTheUnitThatCannotBeDisabled) {
  ASSERT_TRUE(InstallUnit(Unit, Units.Path()));
  LetSystemctl("[ $1 != disable ]");
  EXPECT_FALSE(UninstallUnit("CVLServer", Units.Path()));
  EXPECT_TRUE(HasUnit());
}

TEST(UnitDirectory, IsTheAdministratorsUnlessAnotherIsNamed) {
  {
    const ScopedVariable named("CHRONVALE_UNIT_DIR", "/run/units");
    EXPECT_EQ(UnitDirectory(), "/run/units");
  }
  for (const char *value : {static_cast<const char *>(nullptr), ""}) {
    const ScopedVariable unnamed("CHRONVALE_UNIT_DIR", value);
    EXPECT_EQ(UnitDirectory(), "/etc/systemd/system");
  }
}

}  // namespace

}  // namespace cvl
