// What the models hold is what the widgets show.

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>

#include "tests/view_qt/window_bench.h"
#include "ui/art/artwork.h"
#include "view/qt/button_widget.h"
#include "view/qt/fitted_label.h"
#include "view/qt/locked_text_box.h"
#include "view/qt/qt_images.h"

namespace cvl {
namespace {

class MirrorTest : public WindowTest {
 protected:
  MirrorTest() { Show(); }

  std::string Line(const char *name) const { return Text(Widget<QLineEdit>(name).text()); }
  std::string Shown(const char *name) const { return Text(Widget<FittedLabel>(name).Text()); }

  std::string Clock() const { return Text(Widget<LockedTextBox>("svrCurrent").Text()); }

  /// The number of the image that a lamp shows, 0 for none of the lamps'.
  int ImageOfLamp(const char *name) const {
    const QImage shown = Widget<QLabel>(name).pixmap().toImage();
    for (const int image : {LampDarkImage, LampLitImage}) {
      if (shown == TablePixmap(image, TheView().Main()->devicePixelRatioF()).toImage()) {
        return image;
      }
    }
    return 0;
  }

  MainWindow &Model() { return Server->Window; }
};

TEST_F(MirrorTest, BoxesTakeTheTicksOfTheModel) {
  Model().eDTS.SetValue(Tick::On);
  Model().RandomCheck.SetValue(Tick::On);
  Refresh();
  EXPECT_TRUE(Widget<QCheckBox>("eDTS").isChecked());
  EXPECT_TRUE(Widget<QCheckBox>("RandomCheck").isChecked());
  Model().RandomCheck.SetValue(Tick::Off);
  Refresh();
  EXPECT_FALSE(Widget<QCheckBox>("RandomCheck").isChecked());
}

TEST_F(MirrorTest, ATickedEnableBoxShowsItsTwoBoxes) {
  Model().eNTP.SetValue(Tick::On);
  Refresh();
  EXPECT_TRUE(Widget("eTCP37").isVisible());
  EXPECT_TRUE(Widget("eUDP37").isVisible());
  Model().eNTP.SetValue(Tick::Off);
  Refresh();
  EXPECT_FALSE(Widget("eTCP37").isVisible());
}

TEST_F(MirrorTest, LinesTakeTheTextsOfTheModelCutAtTheirLimits) {
  Model().DS_Ptxt.SetText("123456789");
  Model().SyncN.SetText("123456789");
  Model().CVLRemHost[0].SetText("192.168.100.200");
  Refresh();
  EXPECT_EQ(Line("DS_Ptxt"), "12345");
  EXPECT_EQ(Line("SyncN"), "123456");
  EXPECT_EQ(Line("CVLRemHost(0)"), "192.168.100.200");
}

TEST_F(MirrorTest, CharactersAreBytes) {
  Model().CVLRemHost[0].SetText("caf\xE9");
  Model().Status.Caption = "\xFC\xDF";
  Refresh();
  EXPECT_EQ(Widget<QLineEdit>("CVLRemHost(0)").text(), QString::fromUtf8("caf\u00E9"));
  EXPECT_EQ(Widget<FittedLabel>("Status").Text(), QString::fromUtf8("\u00FC\u00DF"));
}

TEST_F(MirrorTest, LabelsBreakTheirLinesAtBothKindsOfBreak) {
  Model().Status.Caption = "one\rtwo\rthree";
  Model().svrStatlbl.Caption = "one\r\ntwo";
  Refresh();
  EXPECT_EQ(Shown("Status"), "one\ntwo\nthree");
  EXPECT_EQ(Shown("svrStatlbl"), "one\ntwo");
}

TEST_F(MirrorTest, AnAmpersandIsOneInALabel) {
  Model().Status.Caption = "NIST & friends";
  Refresh();
  EXPECT_EQ(Shown("Status"), "NIST & friends");
  EXPECT_EQ(Widget<FittedLabel>("Status").Flags() & Qt::TextShowMnemonic, 0);
}

TEST_F(MirrorTest, TheServersAreListedAnewWhenTheListIs) {
  const auto &box = Widget<QComboBox>("Servers");
  Model().Servers.Clear();
  Refresh();
  EXPECT_EQ(box.count(), 0);
  EXPECT_EQ(Text(box.currentText()), "");
  Model().Servers.Add("Three NA", 9);
  Model().Servers.Add("Four NA", 10);
  Model().Servers.Select(2);
  Refresh();
  ASSERT_EQ(box.count(), 2);
  EXPECT_EQ(Text(box.itemText(0)), "Three NA");
  EXPECT_EQ(Text(box.currentText()), "Four NA");
  Model().Servers.Select(1);
  Refresh();
  EXPECT_EQ(Text(box.currentText()), "Three NA");
}

TEST_F(MirrorTest, AnItemOfEqualTextAndAnotherPictureIsSeen) {
  const auto &box = Widget<QComboBox>("Servers");
  Model().Servers.Clear();
  Model().Servers.Add("One NA", 20);
  Model().Servers.Add("Two NA", 8);
  Refresh();
  EXPECT_EQ(box.itemData(0).toInt(), 20);
}

TEST_F(MirrorTest, TheTextOfTheUnitNeedNotBeOneOfTheList) {
  const auto &box = Widget<QComboBox>("SyncIntC");
  ASSERT_EQ(box.count(), 4);
  EXPECT_EQ(Text(box.currentText()), "Minutes/s");
  Model().SyncIntC.SetText("Hour/s");
  Refresh();
  EXPECT_EQ(Text(box.currentText()), "Hour/s");
  Model().SyncIntC.SetText("Fortnight/s");
  Refresh();
  EXPECT_EQ(Text(box.currentText()), "Fortnight/s");
  EXPECT_EQ(box.count(), 4);
}

TEST_F(MirrorTest, NodesThatAreAddedAreSeen) {
  const auto &tree = Widget<QTreeWidget>("CVL_TV");
  Model().CVL_TV.Add("Sixth", 1, 35);
  Refresh();
  ASSERT_EQ(tree.topLevelItem(0)->childCount(), 6);
  EXPECT_EQ(Text(tree.topLevelItem(0)->child(5)->text(0)), "Sixth");
}

TEST_F(MirrorTest, VisibleAndEnabledAndTipReachTheWidget) {
  const QWidget &box = Widget("RandomCheck");
  Model().RandomCheck.Enabled = false;
  Model().RandomCheck.Tip.Set(" A tip ");
  Refresh();
  EXPECT_FALSE(box.isEnabled());
  EXPECT_EQ(Text(box.toolTip()), " A tip ");
  Model().RandomCheck.Enabled = true;
  Model().RandomCheck.Visible = false;
  Refresh();
  EXPECT_TRUE(box.isEnabled());
  EXPECT_FALSE(box.isVisible());
  Model().RandomCheck.Visible = true;
  Refresh();
  EXPECT_TRUE(box.isVisible());
}

TEST_F(MirrorTest, TheTipOfTheClockTellsTheZone) {
  EXPECT_TRUE(Widget("svrCurrent").toolTip().startsWith(" Time Zone: "));
}

TEST_F(MirrorTest, ARequestShowsItsClientAndItsMoment) {
  Synchronise();
  System.Net.Dial(123, At("10.0.0.7", 4000));
  Refresh();
  EXPECT_EQ(Line("CVLRemHost(2)"), "10.0.0.7");
  EXPECT_EQ(Text(Widget("CVLRemHost(2)").toolTip()), std::string(" ") + NoonText + " ");
}

TEST_F(MirrorTest, ATitleThatChangesIsSeen) {
  Model().Caption = "Another Title";
  Refresh();
  EXPECT_EQ(Text(TheView().Main()->windowTitle()), "Another Title");
}

// The clock.

TEST_F(MirrorTest, TheClockAdvancesWithEachTick) {
  EXPECT_EQ(Clock(), "");
  System.Clock.Pass(1000);
  Advance(1000);
  EXPECT_EQ(Clock(),
            "   THU OCTOBER 3 2002 12:00:01 PM\n   UTC OCTOBER 3 2002 12:00:01 PM\n"
            "   Chronvale Server 5100");
  System.Clock.Pass(1000);
  Advance(1000);
  EXPECT_NE(Clock().find("12:00:02 PM"), std::string::npos);
}

TEST_F(MirrorTest, APauseFreezesTheClock) {
  Advance(1000);
  const std::string before = Clock();
  ASSERT_NE(before, "");
  System.Service.Pause();
  System.Clock.Pass(5000);
  Advance(5000);
  EXPECT_EQ(Clock(), before);
  System.Service.Continue();
  Advance(1000);
  EXPECT_NE(Clock(), before);
}

// The lamps.

TEST_F(MirrorTest, ARequestLightsItsLampsUntilTheNextTick) {
  Synchronise();
  Advance(1000);
  EXPECT_EQ(ImageOfLamp("LED(3)"), LampDarkImage);
  AskNtp();
  EXPECT_EQ(ImageOfLamp("LED(3)"), LampLitImage);
  EXPECT_EQ(ImageOfLamp("LED(4)"), LampDarkImage) << "no stream";
  Advance(1000);
  for (const char *lamp : {"LED(1)", "LED(2)", "LED(3)", "LED(4)"}) {
    EXPECT_EQ(ImageOfLamp(lamp), LampDarkImage) << lamp;
  }
}

TEST_F(MirrorTest, AMinimisedOrMaximisedWindowLeavesItsLamps) {
  Synchronise();
  Advance(1000);
  for (const WindowState state : {WindowState::Minimized, WindowState::Maximized}) {
    Model().State = state;
    AskNtp();
    EXPECT_EQ(ImageOfLamp("LED(3)"), LampDarkImage);
  }
  Model().State = WindowState::Normal;
  AskNtp();
  EXPECT_EQ(ImageOfLamp("LED(3)"), LampLitImage);
}

TEST_F(MirrorTest, ThePauseLeavesTheLampsAsTheyAre) {
  Synchronise();
  AskNtp();
  ASSERT_EQ(ImageOfLamp("LED(3)"), LampLitImage);
  System.Service.Pause();
  Advance(3000);
  EXPECT_EQ(ImageOfLamp("LED(3)"), LampLitImage);
}

// Buttons.

TEST_F(MirrorTest, AButtonThatIsSwitchedOffLooksSo) {
  Server->Others().ShowConfiguration();
  Refresh();
  QRBButtons &button = Server->Others().Configuration().CheckUpdate;
  const std::vector<std::uint32_t> before(
      button.Surface().Pixels(), button.Surface().Pixels() + button.Width() * button.Height());
  button.Enabled = false;
  Refresh();
  EXPECT_FALSE(Widget("CheckUpdate", TheView().Configuration()).isEnabled());
  EXPECT_FALSE(std::equal(before.begin(), before.end(), button.Surface().Pixels()));
}

}  // namespace
}  // namespace cvl
