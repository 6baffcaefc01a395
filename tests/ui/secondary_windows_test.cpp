#include "ui/secondary_windows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/test_loop.h"

namespace cvl {
namespace {

class SecondaryWindowsTest : public testing::Test {
 protected:
  SecondaryWindowsTest() {
    State.RegionCode = "NA";
    State.Start.MakerHost = "www.maker.example";
  }

  TestLoop Loop;
  MainWindow Main;
  RunState State;
  SecondaryWindows Windows{Loop, Main, State};
};

TEST_F(SecondaryWindowsTest, TheConfigurationWindowIsTitledAfterTheMainWindow) {
  Main.Caption = "Another Title";
  EXPECT_EQ(Windows.Configuration().Caption, "CONFIG - Another Title");
}

TEST_F(SecondaryWindowsTest, TheRegionsAreListedInTheirOrder) {
  EXPECT_THAT(Windows.Configuration().Regions.List,
              testing::ElementsAre("NA - North America [USA, Canada, Mexico]",
                                   "SA - South America [Chile , Brazil, Columbia]",
                                   "EU - Europe [UK, Spain, Italy, France]",
                                   "AF - Africa [Kenya, Egypt, South Africa]",
                                   "AW - West Asia [Afghanistan, Russia, Indonesia]",
                                   "AE - East Asia [Bangladesh, Thailand, India, China]",
                                   "AP - Asia Pacific [Australia, Japan, New Zealand]"));
}

TEST_F(SecondaryWindowsTest, TheRegionInForceIsShown) {
  const char *codes[] = {"NA", "SA", "EU", "AF", "AW", "AE", "AP"};
  for (std::size_t at = 0; at < 7; ++at) {
    State.RegionCode = codes[at];
    Windows.CloseConfiguration();
    const ConfigurationWindow &window = Windows.Configuration();
    EXPECT_EQ(window.Regions.Text(), window.Regions.List[at]);
  }
}

TEST_F(SecondaryWindowsTest, ACodeThatMatchesNoRegionLeavesTheDesignText) {
  for (const char *code : {"", "XX", "na", "N", "NAA"}) {
    State.RegionCode = code;
    Windows.CloseConfiguration();
    EXPECT_EQ(Windows.Configuration().Regions.Text(), "North America NA") << code;
  }
}

TEST_F(SecondaryWindowsTest, TheLogSwitchShowsWhetherTheLogIsOn) {
  State.Flags.EnableLogging = true;
  EXPECT_TRUE(Windows.Configuration().wc3Logs.IsTicked());
  Windows.CloseConfiguration();
  State.Flags.EnableLogging = false;
  EXPECT_FALSE(Windows.Configuration().wc3Logs.IsTicked());
}

TEST_F(SecondaryWindowsTest, TheTwoBoxesWithoutEffectStartUnticked) {
  EXPECT_FALSE(Windows.Configuration().OpenMin.IsTicked());
  EXPECT_FALSE(Windows.Configuration().RunCVL.IsTicked());
}

TEST_F(SecondaryWindowsTest, TouchingMakesAWindowUnseenAndShowingShowsIt) {
  int made = 0;
  Windows.OnConfigurationMade = [&](ConfigurationWindow &) { ++made; };
  EXPECT_EQ(Windows.ConfigurationIfAny(), nullptr);
  EXPECT_FALSE(Windows.Configuration().Visible);
  EXPECT_NE(Windows.ConfigurationIfAny(), nullptr);
  Windows.ShowConfiguration();
  EXPECT_TRUE(Windows.Configuration().Visible);
  EXPECT_EQ(made, 1);
}

TEST_F(SecondaryWindowsTest, ShowingOneThatIsOpenBringsItToTheFront) {
  int raised = 0;
  Windows.ShowConfiguration();
  Windows.ShowAbout();
  Windows.Configuration().OnShow = [&] { ++raised; };
  Windows.About().OnShow = [&] { ++raised; };
  Windows.ShowConfiguration();
  Windows.ShowAbout();
  EXPECT_EQ(raised, 2);
}

TEST_F(SecondaryWindowsTest, AClosedWindowIsBuiltAnewAtTheNextTouch) {
  Windows.ShowConfiguration();
  Windows.Configuration().CheckUpdate.Enabled = false;
  Windows.Configuration().OpenMin.SetValue(Tick::On);
  Windows.CloseConfiguration();
  EXPECT_EQ(Windows.ConfigurationIfAny(), nullptr);
  EXPECT_TRUE(Windows.Configuration().CheckUpdate.Enabled);
  EXPECT_FALSE(Windows.Configuration().OpenMin.IsTicked());
  EXPECT_FALSE(Windows.Configuration().Visible);
}

TEST_F(SecondaryWindowsTest, AWindowMayBeClosedByAHandlerOfItsOwnControl) {
  ConfigurationWindow &window = Windows.Configuration();
  window.wc3Logs.OnClick = [&] {
    Windows.CloseConfiguration();
    window.RunCVL.SetValue(Tick::On);  // still there until it is buried
  };
  window.wc3Logs.SetValue(Tick::On);
  Windows.Bury();
  EXPECT_EQ(Windows.ConfigurationIfAny(), nullptr);
}

TEST_F(SecondaryWindowsTest, ClosingWhatIsNotThereIsHarmless) {
  Windows.CloseConfiguration();
  Windows.CloseAbout();
  Windows.Bury();
  EXPECT_EQ(Windows.AboutIfAny(), nullptr);
}

TEST_F(SecondaryWindowsTest, TheAboutBoxTellsTheVersionAndWhereHelpIs) {
  const AboutBox &about = Windows.About();
  EXPECT_EQ(about.Caption, "ABOUT - Chronvale Server");
  EXPECT_EQ(about.ROT.Caption, "About Chronvale Server v5.1.1");
  EXPECT_EQ(about.Help.URL(), "http://www.maker.example/Chronvale/help");
}

}  // namespace
}  // namespace cvl
