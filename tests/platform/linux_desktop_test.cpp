#include "platform/linux/linux_desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/runtime_error.h"
#include "tests/support/fake_program_starter.h"

namespace cvl {
namespace {

using Started = FakeProgramStarter::Started;

TEST(LinuxDesktop, HandsAddressesToTheDesktopsOpener) {
  FakeProgramStarter programs;
  LinuxDesktop desktop{programs};
  desktop.OpenAddress("http://www.maker.example/Chronvale/help");
  desktop.OpenAddress("mailto:somebody@maker.example");
  EXPECT_THAT(programs.Programs,
              testing::ElementsAre(Started{"xdg-open", {"http://www.maker.example/Chronvale/help"}},
                                   Started{"xdg-open", {"mailto:somebody@maker.example"}}));
}

TEST(LinuxDesktop, TakesTheFirstDateAndTimeDialogThatThereIs) {
  FakeProgramStarter programs;
  LinuxDesktop desktop{programs};
  desktop.OpenDateAndTime();
  EXPECT_THAT(programs.Programs,
              testing::ElementsAre(Started{"gnome-control-center", {"datetime"}}));
}

TEST(LinuxDesktop, TriesEachDialogAndIsSilentWhereThereIsNone) {
  FakeProgramStarter programs;
  programs.Error = error_number::FileNotFound;
  LinuxDesktop desktop{programs};
  desktop.OpenDateAndTime();
  ASSERT_GT(programs.Programs.size(), 3u);
  EXPECT_EQ(programs.Programs[1], (Started{"kcmshell6", {"kcm_clock"}}));
}

}  // namespace
}  // namespace cvl
