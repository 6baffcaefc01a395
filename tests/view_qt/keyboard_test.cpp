// The windows without a mouse.

#include <QCheckBox>
#include <QComboBox>

#include "tests/view_qt/window_bench.h"
#include "view/qt/button_widget.h"

namespace cvl {
namespace {

using Names = std::vector<std::string>;

class KeyboardTest : public WindowTest {
 protected:
  /// Where the focus goes with each press of KEY, until it comes back to where it was.
  Names Walk(QWidget &window, Qt::Key key, Qt::KeyboardModifiers held = {}) {
    const std::string first = Focus();
    Names walked;
    do {
      walked.push_back(Focus());
      Press(key, held, &window);
    } while (Focus() != first && walked.size() < 40);
    return walked;
  }
};

TEST_F(KeyboardTest, TheTabKeyWalksEachPanelAsTheEyeReads) {
  StoreAllServices();
  Show();
  const Names panels[] = {{"eNTP", "NTP_Ptxt", "eTCP37", "eUDP37", "CVLRemHost(0)"},
                          {"eDTS", "DS_Ptxt", "eTCP13", "eUDP13", "CVLRemHost(1)"},
                          {"eSNTP", "SNTP_Ptxt", "eTCP123", "eUDP123", "CVLRemHost(2)"},
                          {"eUnix", "Unix_Ptxt", "eTCP519", "eUDP519", "CVLRemHost(3)"},
                          {"eCVLS", "CVLS_Ptxt", "eTCP3777", "eUDP3777", "CVLRemHost(4)"}};
  for (std::int16_t node = 2; node <= 6; ++node) {
    Server->Window.CVL_TV.OnNodeClick(node);
    Refresh();
    Widget("CVL_TV").setFocus();
    Names wanted = {"CVL_TV"};
    const Names &panel = panels[node - 2];
    wanted.insert(wanted.end(), panel.begin(), panel.end());
    wanted.insert(wanted.end(), {"svrCurrent", "Servers", "RandomCheck", "SyncN", "SyncIntC"});
    EXPECT_EQ(Walk(*TheView().Main(), Qt::Key_Tab), wanted);
  }
}

TEST_F(KeyboardTest, TheWayBackIsTheSame) {
  Show();
  Widget("CVL_TV").setFocus();
  EXPECT_EQ(Walk(*TheView().Main(), Qt::Key_Backtab, Qt::ShiftModifier),
            (Names{"CVL_TV", "SyncIntC", "SyncN", "RandomCheck", "Servers", "svrCurrent",
                   "CVLRemHost(0)", "NTP_Ptxt", "eNTP"}));
}

TEST_F(KeyboardTest, TheFocusStartsInTheTree) {
  Show();
  EXPECT_EQ(Focus(), "CVL_TV");
  EXPECT_EQ(Server->Window.CVL_TV.Selected, 0) << "which selects nothing";
}

TEST_F(KeyboardTest, TheSpaceBarTicksABox) {
  Show();
  Widget("eNTP").setFocus();
  Press(Qt::Key_Space);
  EXPECT_TRUE(Server->Window.eNTP.IsTicked());
}

TEST_F(KeyboardTest, TheArrowKeysChooseAServer) {
  Show();
  int clicks = 0;
  Server->Window.Servers.OnClick = [&] { ++clicks; };
  Widget("Servers").setFocus();
  Press(Qt::Key_Down);
  EXPECT_EQ(Server->Window.Servers.Selected(), 2);
  EXPECT_EQ(clicks, 1);
}

TEST_F(KeyboardTest, TheArrowKeysChooseAUnit) {
  Show();
  Server->Window.SyncIntC.Choose(1);
  Refresh();
  Widget("SyncIntC").setFocus();
  Press(Qt::Key_Down);
  EXPECT_EQ(Server->Window.SyncIntC.Text(), Server->Window.SyncIntC.List[2]);
}

TEST_F(KeyboardTest, TheConfigurationWindowIsWalkedFromTopToBottom) {
  Show();
  Server->Others().ShowConfiguration();
  Refresh();
  WindowWidget &window = *TheView().Configuration();
  Activate(window);
  Widget("Regions", &window).setFocus();
  EXPECT_EQ(Walk(window, Qt::Key_Tab), (Names{"Regions", "wc3Logs", "OpenMin", "RunCVL",
                                              "CheckUpdate", "SelTimeZone", "cfgsvrOK"}));
}

TEST_F(KeyboardTest, AButtonWithTheFocusHasItsDarkOutline) {
  Show();
  Server->Others().ShowConfiguration();
  Refresh();
  WindowWidget &window = *TheView().Configuration();
  Activate(window);
  Widget("cfgsvrOK", &window).setFocus();
  EXPECT_TRUE(Server->Others().Configuration().cfgsvrOK.HasFocus());
  Widget("SelTimeZone", &window).setFocus();
  EXPECT_FALSE(Server->Others().Configuration().cfgsvrOK.HasFocus());
  EXPECT_TRUE(Server->Others().Configuration().SelTimeZone.HasFocus());
}

TEST_F(KeyboardTest, AButtonThatDisablesItselfKeepsTheFocus) {
  Show();
  Server->Others().ShowConfiguration();
  Refresh();
  WindowWidget &window = *TheView().Configuration();
  Activate(window);
  QRBButtons &model = Server->Others().Configuration().CheckUpdate;
  Widget("CheckUpdate", &window).setFocus();
  Press(Qt::Key_Space, {}, &window);
  ASSERT_FALSE(model.Enabled);
  ASSERT_FALSE(Widget("CheckUpdate", &window).isEnabled());
  EXPECT_EQ(Focus(), "CheckUpdate");
  EXPECT_TRUE(model.HasFocus());
  Press(Qt::Key_Space, {}, &window);
  EXPECT_FALSE(model.IsDown()) << "it takes no keys meanwhile";

  model.Enabled = true;
  Refresh();
  EXPECT_EQ(Focus(), "CheckUpdate");
  EXPECT_TRUE(model.HasFocus());
}

TEST_F(KeyboardTest, TheFocusComesBackWithAButtonAfterAnotherWindow) {
  Show();
  Server->Others().ShowConfiguration();
  Refresh();
  WindowWidget &window = *TheView().Configuration();
  Activate(window);
  QRBButtons &model = Server->Others().Configuration().CheckUpdate;
  Widget("CheckUpdate", &window).setFocus();
  model.Enabled = false;
  Refresh();
  Server->Others().ShowAbout();
  Refresh();
  Activate(*TheView().About());
  EXPECT_FALSE(model.HasFocus());
  Server->Others().CloseAbout();
  Refresh();
  Activate(window);
  model.Enabled = true;
  Refresh();
  EXPECT_EQ(Focus(), "CheckUpdate");
  EXPECT_TRUE(model.HasFocus());
}

TEST_F(KeyboardTest, TheTabKeyGoesOnFromADisabledButton) {
  Show();
  Server->Others().ShowConfiguration();
  Refresh();
  WindowWidget &window = *TheView().Configuration();
  Activate(window);
  QRBButtons &model = Server->Others().Configuration().CheckUpdate;
  Widget("CheckUpdate", &window).setFocus();
  model.Enabled = false;
  Refresh();
  Press(Qt::Key_Tab, {}, &window);
  EXPECT_EQ(Focus(), "SelTimeZone");
  model.Enabled = true;
  Refresh();
  EXPECT_EQ(Focus(), "SelTimeZone") << "the user has gone elsewhere";
}

TEST_F(KeyboardTest, TheAltKeyWithTheUnderlinedLetterClicksAButton) {
  Show();
  Server->Others().ShowConfiguration();
  Refresh();
  WindowWidget &window = *TheView().Configuration();
  Activate(window);
  Server->Others().Configuration().SelTimeZone.SetCaption("Time &Zone");
  Press(Qt::Key_Z, Qt::AltModifier, &window);
  EXPECT_TRUE(HasCalled("date and time dialog"));
  EXPECT_EQ(Text(Widget("SelTimeZone", &window).accessibleName()), "Time Zone");
}

TEST_F(KeyboardTest, ACaptionWithoutAMarkHasNoAccessKey) {
  Show();
  Server->Others().ShowConfiguration();
  Refresh();
  WindowWidget &window = *TheView().Configuration();
  Activate(window);
  for (const Qt::Key key : {Qt::Key_T, Qt::Key_O, Qt::Key_C}) {
    Press(key, Qt::AltModifier, &window);
  }
  EXPECT_FALSE(HasCalled("date and time dialog"));
  EXPECT_NE(Server->Others().ConfigurationIfAny(), nullptr);
}

}  // namespace
}  // namespace cvl
