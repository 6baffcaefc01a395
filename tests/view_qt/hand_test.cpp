// What a hand does to the widgets reaches the models.

#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>
#include <QTreeWidget>
#include <QWheelEvent>

#include "tests/view_qt/window_bench.h"

namespace cvl {
namespace {

using testing::ElementsAre;

class HandTest : public WindowTest {
 protected:
  HandTest() { Show(); }

  MainWindow &Model() { return Server->Window; }

  /// A node by its number.
  QTreeWidgetItem &Node(int number) {
    const auto &tree = Widget<QTreeWidget>("CVL_TV");
    if (number == 1) return *tree.topLevelItem(0);
    if (number <= 6) return *tree.topLevelItem(0)->child(number - 2);
    return *tree.topLevelItem(number - 6);
  }

  void ClickNode(int number) {
    const auto &tree = Widget<QTreeWidget>("CVL_TV");
    QWidget &rows = *tree.viewport();
    ClickAt(rows, tree.visualItemRect(&Node(number)).center());
  }

  /// Opens BOX and clicks on one of its entries.
  void Choose(QComboBox &box, int entry) {
    box.showPopup();
    QAbstractItemView &list = *box.view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(list.window()));
    // The list passes over a click that comes with its opening.
    QTest::qWait(QApplication::doubleClickInterval());
    ClickAt(*list.viewport(), list.visualRect(box.model()->index(entry, 0)).center());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !list.isVisible(); }, 5000));
  }

  /// The nodes that a hand has selected from here on.
  std::vector<int> &WatchNodes() {
    Model().CVL_TV.OnNodeClick = [this, handler = Model().CVL_TV.OnNodeClick](std::int16_t node) {
      Nodes_.push_back(node);
      handler(node);
    };
    return Nodes_;
  }

 private:
  std::vector<int> Nodes_;
};

// Boxes.

TEST_F(HandTest, AClickTicksABoxAndItsHandlerRuns) {
  Click(Widget("eNTP"));
  EXPECT_TRUE(Model().eNTP.IsTicked());
  EXPECT_TRUE(Widget("eTCP37").isVisible()) << "on the window when the click is over";
  Click(Widget("eTCP37"));
  EXPECT_TRUE(Model().eTCP37.IsTicked());
  EXPECT_TRUE(System.Net.IsListening(37));
  Click(Widget("eNTP"));
  EXPECT_FALSE(System.Net.IsListening(37));
  EXPECT_FALSE(Widget("eTCP37").isVisible());
}

TEST_F(HandTest, EachBoxOfEachPanelReachesItsOwn) {
  struct Panel {
    CheckBox *Enable;
    CheckBox *Tcp;
    CheckBox *Udp;
    const char *Names[3];
  };
  MainWindow &model = Model();
  const Panel panels[] = {
      {&model.eNTP, &model.eTCP37, &model.eUDP37, {"eNTP", "eTCP37", "eUDP37"}},
      {&model.eDTS, &model.eTCP13, &model.eUDP13, {"eDTS", "eTCP13", "eUDP13"}},
      {&model.eSNTP, &model.eTCP123, &model.eUDP123, {"eSNTP", "eTCP123", "eUDP123"}},
      {&model.eUnix, &model.eTCP519, &model.eUDP519, {"eUnix", "eTCP519", "eUDP519"}},
      {&model.eCVLS, &model.eTCP3777, &model.eUDP3777, {"eCVLS", "eTCP3777", "eUDP3777"}},
  };
  for (int panel = 0; panel < 5; ++panel) {
    ClickNode(panel + 2);
    const Panel &boxes = panels[panel];
    SCOPED_TRACE(boxes.Names[0]);
    if (!boxes.Enable->IsTicked()) Click(Widget(boxes.Names[0]));
    ASSERT_TRUE(boxes.Enable->IsTicked());
    const bool tcp = boxes.Tcp->IsTicked();
    const bool udp = boxes.Udp->IsTicked();
    Click(Widget(boxes.Names[1]));
    EXPECT_NE(boxes.Tcp->IsTicked(), tcp);
    EXPECT_EQ(boxes.Udp->IsTicked(), udp);
    Click(Widget(boxes.Names[2]));
    EXPECT_NE(boxes.Udp->IsTicked(), udp);
  }
}

TEST_F(HandTest, ABoxThatIsSwitchedOffTakesNoClick) {
  Model().RandomCheck.Enabled = false;
  Refresh();
  ClickAt(Widget("RandomCheck"), {8, 8});
  EXPECT_FALSE(Model().RandomCheck.IsTicked());
}

// Lines.

TEST_F(HandTest, APortIsTypedAndRegisteredWithEnter) {
  ClickNode(4);
  std::vector<int> keys;
  Model().SNTP_Ptxt.OnKeyPress = [&, handler = Model().SNTP_Ptxt.OnKeyPress](int key) {
    keys.push_back(key);
    handler(key);
  };
  ASSERT_TRUE(System.Net.IsListening(123));
  auto &line = Widget<QLineEdit>("SNTP_Ptxt");
  Click(line);
  line.selectAll();
  Type("1123");
  EXPECT_EQ(Model().SNTP_Ptxt.Text(), "1123");
  EXPECT_EQ(Text(line.toolTip()), " Hit Enter to Register the Port Change ");
  EXPECT_TRUE(System.Net.IsListening(123)) << "not before Enter";
  Press(Qt::Key_Return);
  EXPECT_THAT(keys, ElementsAre('1', '1', '2', '3', 13));
  EXPECT_TRUE(System.Net.IsListening(1123));
  EXPECT_FALSE(System.Net.IsListening(123));
  EXPECT_EQ(Text(line.toolTip()), " Change Registered Successfully ");
}

TEST_F(HandTest, TheEnterKeyOfTheNumberPadIsEnterToo) {
  std::vector<int> keys;
  Model().SyncN.OnKeyPress = [&](int key) { keys.push_back(key); };
  Click(Widget("SyncN"));
  Press(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_THAT(keys, ElementsAre(13));
}

TEST_F(HandTest, NoMoreThanTheLimitCanBeTyped) {
  auto &line = Widget<QLineEdit>("NTP_Ptxt");
  Click(line);
  line.selectAll();
  Type("1234567");
  EXPECT_EQ(Model().NTP_Ptxt.Text(), "12345");
  EXPECT_EQ(Text(line.text()), "12345");
}

TEST_F(HandTest, WhatTheModelFiltersIsNotOnTheWindow) {
  auto &line = Widget<QLineEdit>("SyncN");
  Click(line);
  line.selectAll();
  Type("12x");
  EXPECT_EQ(Model().SyncN.Text(), "12");
  EXPECT_EQ(Text(line.text()), "12");
}

TEST_F(HandTest, TheCaretStaysWhereTheHandTypes) {
  auto &line = Widget<QLineEdit>("NTP_Ptxt");
  Click(line);
  line.setText("99");
  Model().NTP_Ptxt.SetText("99");
  line.setCursorPosition(1);
  Type("12");
  EXPECT_EQ(Model().NTP_Ptxt.Text(), "9129");
}

TEST_F(HandTest, ACharacterThatTheModelCannotHoldBecomesAQuestionMark) {
  auto &line = Widget<QLineEdit>("CVLRemHost(0)");
  line.clear();
  line.insert(QString::fromUtf8("\u20AC"));
  Q_EMIT line.textEdited(line.text());
  EXPECT_EQ(Model().CVLRemHost[0].Text(), "?");
}

// Lists.

TEST_F(HandTest, AServerIsChosen) {
  int clicks = 0;
  Model().Servers.OnClick = [&] { ++clicks; };
  Choose(Widget<QComboBox>("Servers"), 1);
  EXPECT_EQ(Model().Servers.Selected(), 2);
  EXPECT_EQ(clicks, 1);
}

TEST_F(HandTest, ALongListShowsTwentyRowsAndAScrollBar) {
  for (int at = Model().Servers.Count(); at < 300; ++at)
    Model().Servers.Add("Server " + std::to_string(at + 1) + " NA", 8);
  Model().Servers.Select(150);
  Refresh();
  auto &box = Widget<QComboBox>("Servers");
  box.showPopup();
  const QAbstractItemView &list = *box.view();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(list.window()));
  int rows = 0;
  for (int at = 0; at < box.count(); ++at) {
    const QRect row = list.visualRect(box.model()->index(at, 0));
    if (list.viewport()->rect().contains(row)) ++rows;
  }
  EXPECT_EQ(rows, 20);
  EXPECT_TRUE(list.verticalScrollBar()->isVisible());
  const QRect chosen = list.visualRect(box.model()->index(149, 0));
  EXPECT_TRUE(list.viewport()->rect().contains(chosen)) << "the selected server is in sight";
  EXPECT_LT(list.window()->height(), box.screen()->geometry().height() / 2);
  box.hidePopup();
}

TEST_F(HandTest, AShortListHasNoScrollBar) {
  auto &box = Widget<QComboBox>("SyncIntC");
  box.showPopup();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(box.view()->window()));
  EXPECT_FALSE(box.view()->verticalScrollBar()->isVisible());
  box.hidePopup();
}

TEST_F(HandTest, ATurnOfTheWheelChoosesOnlyWhereTheKeyboardIs) {
  auto &box = Widget<QComboBox>("Servers");
  const auto turn = [&box] {
    const QPointF middle = box.rect().center();
    QWheelEvent event(middle, box.mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&box, &event);
  };
  Widget("CVL_TV").setFocus();
  turn();
  EXPECT_EQ(Server->Window.Servers.Selected(), 1);
  box.setFocus();
  turn();
  EXPECT_EQ(Server->Window.Servers.Selected(), 2);
}

TEST_F(HandTest, AUnitIsChosen) {
  Choose(Widget<QComboBox>("SyncIntC"), 2);
  EXPECT_EQ(Model().SyncIntC.Text(), Model().SyncIntC.List[2]);
}

TEST_F(HandTest, AUnitIsTyped) {
  auto &box = Widget<QComboBox>("SyncIntC");
  Click(*box.lineEdit());
  box.lineEdit()->selectAll();
  Type("Hour/s");
  EXPECT_EQ(Model().SyncIntC.Text(), "Hour/s");
}

TEST_F(HandTest, AUnitThatIsTypedIsNotChosen) {
  int clicks = 0;
  Model().SyncIntC.OnClick = [&] { ++clicks; };
  auto &box = Widget<QComboBox>("SyncIntC");
  Click(*box.lineEdit());
  box.lineEdit()->selectAll();
  Type("Hour/s");
  Press(Qt::Key_Return);
  Click(Widget("SyncN"));
  EXPECT_EQ(clicks, 0);
  EXPECT_EQ(Model().SyncIntC.Text(), "Hour/s");
  EXPECT_EQ(Text(box.currentText()), "Hour/s");
  Choose(box, 2);
  EXPECT_EQ(clicks, 1) << "the same, chosen from the list";
}

TEST_F(HandTest, ARegionIsChosen) {
  Server->Others().ShowConfiguration();
  Refresh();
  Activate(*TheView().Configuration());
  Choose(Widget<QComboBox>("Regions", TheView().Configuration()), 2);
  EXPECT_EQ(Server->State.RegionCode, "EU");
  EXPECT_EQ(Text(Widget<QComboBox>("Regions", TheView().Configuration()).currentText()),
            "EU - Europe [UK, Spain, Italy, France]");
}

// The tree.

TEST_F(HandTest, EachNodePutsItsPanelUp) {
  const std::vector<int> &nodes = WatchNodes();
  for (const int node : {3, 4, 5, 6, 2, 6, 1}) {
    ClickNode(node);
    const int panel = node == 1 ? 0 : node - 2;
    for (int at = 0; at < 5; ++at) {
      const std::string index = "(" + std::to_string(at) + ")";
      EXPECT_EQ(Widget(("proto_f" + index).c_str()).isVisible(), at == panel) << node;
      EXPECT_EQ(Widget(("CVLRemHost" + index).c_str()).isVisible(), at == panel) << node;
    }
    EXPECT_EQ(Model().CVL_TV.Selected, node);
  }
  EXPECT_THAT(nodes, ElementsAre(3, 4, 5, 6, 2, 6, 1)) << "one event a click";
}

TEST_F(HandTest, AClickOnTheSelectedNodeIsAClickToo) {
  const std::vector<int> &nodes = WatchNodes();
  ClickNode(3);
  ClickNode(3);
  EXPECT_THAT(nodes, ElementsAre(3, 3));
}

TEST_F(HandTest, EnterOnTheSelectedNodeIsAClickToo) {
  const std::vector<int> &nodes = WatchNodes();
  ClickNode(3);
  Press(Qt::Key_Return);
  Press(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_THAT(nodes, ElementsAre(3, 3, 3));
}

TEST_F(HandTest, EnterWithNothingSelectedDoesNothing) {
  const std::vector<int> &nodes = WatchNodes();
  Widget("CVL_TV").setFocus();
  Press(Qt::Key_Return);
  EXPECT_TRUE(nodes.empty());
}

TEST_F(HandTest, AClickOrEnterOnTheSelectedNodeOpensItsWindowOnceMore) {
  for (int node : {7, 8}) {
    const auto opened = [&] {
      return (node == 7 ? TheView().About() : TheView().Configuration()) != nullptr;
    };
    const auto close = [&] {
      (node == 7 ? TheView().About() : TheView().Configuration())->close();
      EXPECT_FALSE(opened());
      Activate(*TheView().Main());
    };
    ClickNode(node);
    EXPECT_TRUE(opened());
    close();
    Press(Qt::Key_Return);
    EXPECT_TRUE(opened());
    close();
    ClickNode(node);
    EXPECT_TRUE(opened());
    close();
  }
}

TEST_F(HandTest, ThePanelsNodeKeepsTheHighlightWhenNoneIsClicked) {
  auto &tree = Widget<QTreeWidget>("CVL_TV");
  ClickNode(2);
  ASSERT_TRUE(Node(2).isSelected());
  ClickAt(*tree.viewport(), tree.visualItemRect(&Node(5)).center(), Qt::RightButton);
  Refresh();
  EXPECT_EQ(Model().CVL_TV.Selected, 2);
  EXPECT_TRUE(Node(2).isSelected());
  EXPECT_FALSE(Node(5).isSelected());
}

TEST_F(HandTest, TheArrowKeysWalkThroughTheTree) {
  const std::vector<int> &nodes = WatchNodes();
  ClickNode(2);
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  Press(Qt::Key_Up);
  EXPECT_THAT(nodes, ElementsAre(2, 3, 4, 3));
  EXPECT_TRUE(Widget("proto_f(1)").isVisible());
}

TEST_F(HandTest, ClosingABranchSelectsNothing) {
  const std::vector<int> &nodes = WatchNodes();
  Node(1).setExpanded(false);
  Node(1).setExpanded(true);
  EXPECT_TRUE(nodes.empty());
}

TEST_F(HandTest, ABranchThatAHandClosesStaysClosed) {
  Node(1).setExpanded(false);
  Model().CVL_TV.Selected = 0;
  Refresh();
  EXPECT_FALSE(Node(1).isExpanded());
}

TEST_F(HandTest, TheLastNodesOpenTheSecondaryWindowsAndLeaveThePanel) {
  ClickNode(4);
  const std::string before = Model().svrStatlbl.Caption;
  ClickNode(7);
  ClickNode(8);
  ASSERT_NE(TheView().About(), nullptr);
  ASSERT_NE(TheView().Configuration(), nullptr);
  EXPECT_TRUE(TheView().About()->isVisible());
  EXPECT_TRUE(TheView().Configuration()->isVisible());
  EXPECT_TRUE(Widget("proto_f(2)").isVisible());
  EXPECT_EQ(Model().svrStatlbl.Caption, before);
}

TEST_F(HandTest, AClickOnTheStatusReadsItAnew) {
  ClickNode(4);
  Synchronise();
  AskNtp();
  Click(Widget("svrStatlbl"));
  EXPECT_EQ(Model().svrStatlbl.Caption,
            "Server is: Enabled\r\nTCP: ON - UDP: ON\r\nRequests: 0/t - 1/u");
}

TEST_F(HandTest, AClickOnTheStatusWithNothingSelectedDoesNothing) {
  Model().svrStatlbl.Caption = "As it was";
  Refresh();
  Click(Widget("svrStatlbl"));
  EXPECT_EQ(Model().svrStatlbl.Caption, "As it was");
}

// Minimised and back.

TEST_F(HandTest, MinimisingTakesTheWindowIntoTheTrayAndRestoringBringsItBack) {
  WindowWidget &window = *TheView().Main();
  System.Tray.Calls.clear();
  window.showMinimized();
  ASSERT_TRUE(QTest::qWaitFor([&] { return Model().State == WindowState::Minimized; }, 10000));
  EXPECT_FALSE(Model().Visible);
  ASSERT_FALSE(System.Tray.Calls.empty());
  EXPECT_EQ(System.Tray.Calls.back().Message, TrayMessage::Add);

  RaiseTray(TrayEvent::LeftUp);
  EXPECT_EQ(Model().State, WindowState::Normal);
  EXPECT_TRUE(Model().Visible);
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isMinimized(); }, 10000));
  EXPECT_EQ(System.Tray.Calls.back().Message, TrayMessage::Remove);
  EXPECT_EQ(window.size(), QSize(403, 401));
}

TEST_F(HandTest, WithoutATrayAMinimisedWindowStaysWithinReach) {
  ASSERT_FALSE(QtTray::IsThere()) << "the display of the tests has no tray";
  WindowWidget &window = *TheView().Main();
  window.showMinimized();
  ASSERT_TRUE(QTest::qWaitFor([&] { return Model().State == WindowState::Minimized; }, 10000));
  Refresh();
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(window.isMinimized());
  window.showNormal();
  ASSERT_TRUE(QTest::qWaitFor([&] { return Model().State == WindowState::Normal; }, 10000));
  EXPECT_TRUE(Model().Visible);
}

TEST_F(HandTest, ADoubleClickOnTheTrayEntryRestoresToo) {
  Server->Tray().OnResize(WindowState::Minimized);
  Refresh();
  RaiseTray(TrayEvent::LeftDoubleClick);
  EXPECT_EQ(Model().State, WindowState::Normal);
  EXPECT_TRUE(TheView().Main()->isVisible());
}

TEST_F(HandTest, TheRightButtonOpensTheMenu) {
  QMenu &menu = *TheView().TrayMenu();
  Server->Tray().OnResize(WindowState::Minimized);
  Refresh();
  RaiseTray(TrayEvent::RightUp);
  EXPECT_EQ(System.Tray.ForegroundCalls, 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return menu.isVisible(); }, 5000));
  menu.close();
}

TEST_F(HandTest, TheEntryShowBringsTheWindowBack) {
  QMenu &menu = *TheView().TrayMenu();
  Server->Tray().OnResize(WindowState::Minimized);
  Refresh();
  RaiseTray(TrayEvent::RightUp);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));
  ClickAt(menu, menu.actionGeometry(menu.actions()[0]).center());
  EXPECT_EQ(Model().State, WindowState::Normal);
  EXPECT_TRUE(TheView().Main()->isVisible());
}

TEST_F(HandTest, TheEntryExitEndsTheProgram) {
  QMenu &menu = *TheView().TrayMenu();
  RaiseTray(TrayEvent::RightUp);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));
  ClickAt(menu, menu.actionGeometry(menu.actions()[2]).center());
  EXPECT_TRUE(System.Loop.IsQuitting());
}

}  // namespace
}  // namespace cvl
