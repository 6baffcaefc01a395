// The two windows that come and go.

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QWindow>

#include "tests/view_qt/window_bench.h"
#include "view/qt/button_widget.h"

namespace cvl {
namespace {

class SecondaryWindowTest : public WindowTest {
 protected:
  SecondaryWindowTest() { Show(); }

  /// Opens the configuration window and waits for its turn.
  WindowWidget &OpenConfiguration() {
    Server->Others().ShowConfiguration();
    Refresh();
    Activate(*TheView().Configuration());
    return *TheView().Configuration();
  }

  QWidget &Of(WindowWidget &window, const char *name) { return Widget(name, &window); }
};

TEST_F(SecondaryWindowTest, TouchingAWindowShowsNothing) {
  Server->Others().Configuration();
  Refresh();
  EXPECT_EQ(TheView().Configuration(), nullptr);
}

TEST_F(SecondaryWindowTest, OpeningOnceMoreBringsTheSameWindowToTheFront) {
  WindowWidget &first = OpenConfiguration();
  Server->Others().ShowAbout();
  Refresh();
  Activate(*TheView().About());
  Server->Others().ShowConfiguration();
  Refresh();
  EXPECT_EQ(TheView().Configuration(), &first);
  EXPECT_TRUE(BecomesActive(first));
}

TEST_F(SecondaryWindowTest, BothMayBeOpenBesideTheMainWindow) {
  OpenConfiguration();
  Server->Others().ShowAbout();
  Refresh();
  EXPECT_TRUE(TheView().Configuration()->isVisible());
  EXPECT_TRUE(TheView().About()->isVisible());
  Activate(*TheView().Main());
  Click(Widget("RandomCheck"));
  EXPECT_TRUE(Server->Window.RandomCheck.IsTicked()) << "neither stands in its way";
}

TEST_F(SecondaryWindowTest, TheOkButtonClosesTheWindowAndDropsIt) {
  WindowWidget &window = OpenConfiguration();
  const QPointer<QWidget> seen = &window;
  ClickAt(Of(window, "OpenMin"), {8, 8});
  EXPECT_TRUE(Server->Others().Configuration().OpenMin.IsTicked());
  Click(Of(window, "cfgsvrOK"));
  EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr);
  EXPECT_EQ(TheView().Configuration(), nullptr);
  EXPECT_TRUE(QTest::qWaitFor([&] { return seen.isNull(); }, 5000)) << "it stays behind";

  WindowWidget &next = OpenConfiguration();
  EXPECT_FALSE(Widget<QCheckBox>("OpenMin", &next).isChecked()) << "built anew";
}

TEST_F(SecondaryWindowTest, TheCloseButtonDropsThemToo) {
  WindowWidget &window = OpenConfiguration();
  window.close();
  EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr);
  EXPECT_EQ(TheView().Configuration(), nullptr);
  Server->Others().ShowAbout();
  Refresh();
  TheView().About()->close();
  EXPECT_EQ(Server->Others().AboutIfAny(), nullptr);
  EXPECT_EQ(TheView().About(), nullptr);
  EXPECT_FALSE(System.Loop.IsQuitting());
}

TEST_F(SecondaryWindowTest, AWindowThatIsClosedAndOpenedInOneEventIsANewOne) {
  WindowWidget &first = OpenConfiguration();
  const QPointer<QWidget> seen = &first;
  Server->Others().CloseConfiguration();
  Server->Others().ShowConfiguration();
  Refresh();
  ASSERT_NE(TheView().Configuration(), nullptr);
  EXPECT_TRUE(QTest::qWaitFor([&] { return seen.isNull(); }, 5000));
  EXPECT_TRUE(TheView().Configuration()->isVisible());
}

TEST_F(SecondaryWindowTest, TheLogSwitchSwitchesTheLog) {
  WindowWidget &window = OpenConfiguration();
  const bool before = Server->State.Flags.EnableLogging;
  ClickAt(Of(window, "wc3Logs"), {8, 8});
  EXPECT_NE(Server->State.Flags.EnableLogging, before);
}

TEST_F(SecondaryWindowTest, TheTimeZoneButtonOpensTheDialogOfTheDesktop) {
  WindowWidget &window = OpenConfiguration();
  Click(Of(window, "SelTimeZone"));
  EXPECT_TRUE(HasCalled("date and time dialog"));
}

TEST_F(SecondaryWindowTest, TheUpdateButtonIsOffDuringACheckAndOnInANewWindow) {
  WindowWidget &window = OpenConfiguration();
  Click(Of(window, "CheckUpdate"));
  EXPECT_FALSE(Of(window, "CheckUpdate").isEnabled());
  Click(Of(window, "cfgsvrOK"));
  WindowWidget &next = OpenConfiguration();
  EXPECT_TRUE(Of(next, "CheckUpdate").isEnabled());
}

TEST_F(SecondaryWindowTest, AButtonIsPressedWithTheSpaceBar) {
  WindowWidget &window = OpenConfiguration();
  Of(window, "cfgsvrOK").setFocus();
  Press(Qt::Key_Space, {}, &window);
  EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr);
}

TEST_F(SecondaryWindowTest, APressThatIsReleasedElsewhereIsNoClick) {
  WindowWidget &window = OpenConfiguration();
  const QWidget &button = Of(window, "cfgsvrOK");
  const QPoint inside = button.mapTo(&window, button.rect().center());
  QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, inside);
  QTest::mouseMove(window.windowHandle(), QPoint(5, 5));
  QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
  EXPECT_NE(Server->Others().ConfigurationIfAny(), nullptr);
}

TEST_F(SecondaryWindowTest, TheHelpButtonOpensTheMakersPages) {
  Server->Others().ShowAbout();
  Refresh();
  Activate(*TheView().About());
  Click(Widget("Help", TheView().About()));
  ASSERT_EQ(System.Screen.Opened.size(), 1U);
  EXPECT_TRUE(System.Screen.Opened[0].ends_with("/Chronvale/help"));
}

// The Escape key.

TEST_F(SecondaryWindowTest, EscapeClosesTheConfigurationWindowFromEachOfItsControls) {
  for (const char *name : {"Regions", "wc3Logs", "OpenMin", "RunCVL", "CheckUpdate", "SelTimeZone",
                           "cfgsvrOK", "NOLLabel"}) {
    WindowWidget &window = OpenConfiguration();
    Of(window, name).setFocus();
    ASSERT_EQ(Focus(), name);
    Press(Qt::Key_Escape, {}, &window);
    EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr) << name;
    EXPECT_EQ(TheView().Configuration(), nullptr) << name;
  }
}

TEST_F(SecondaryWindowTest, EscapeClosesTheAboutBox) {
  Server->Others().ShowAbout();
  Refresh();
  Activate(*TheView().About());
  Press(Qt::Key_Escape, {}, TheView().About());
  EXPECT_EQ(Server->Others().AboutIfAny(), nullptr);
}

TEST_F(SecondaryWindowTest, EscapeClosesAnOpenListAndNotItsWindow) {
  WindowWidget &window = OpenConfiguration();
  auto &box = Widget<QComboBox>("Regions", &window);
  box.setFocus();
  box.showPopup();
  QWidget &list = *box.view();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(list.window()));
  Press(Qt::Key_Escape, {}, list.window());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !list.isVisible(); }, 5000));
  EXPECT_TRUE(window.isVisible());
}

TEST_F(SecondaryWindowTest, EscapeLeavesTheMainWindow) {
  for (const char *name : {"CVL_TV", "eNTP", "svrCurrent", "Servers", "SyncN", "SyncIntC"}) {
    Widget(name).setFocus();
    Press(Qt::Key_Escape);
  }
  EXPECT_TRUE(TheView().Main()->isVisible());
  EXPECT_FALSE(System.Loop.IsQuitting());
}

// Owner and owned.

TEST_F(SecondaryWindowTest, TheyBelongToTheMainWindow) {
  OpenConfiguration();
  Server->Others().ShowAbout();
  Refresh();
  for (const QWidget *window : {TheView().Configuration(), TheView().About()}) {
    EXPECT_EQ(window->windowHandle()->transientParent(), TheView().Main()->windowHandle());
    EXPECT_EQ(window->windowModality(), Qt::NonModal);
  }
  EXPECT_EQ(TheView().Main()->windowHandle()->transientParent(), nullptr);
}

TEST_F(SecondaryWindowTest, TheyGoToTheTrayWithTheMainWindowAndComeBackWithIt) {
  WindowWidget &window = OpenConfiguration();
  TheView().Main()->showMinimized();
  ASSERT_TRUE(QTest::qWaitFor(
      [&] { return Server->Window.State == WindowState::Minimized && !window.isVisible(); },
      10000));
  RaiseTray(TrayEvent::LeftUp);
  EXPECT_EQ(TheView().Configuration(), &window);
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isMinimized(); }, 10000));
}

}  // namespace
}  // namespace cvl
