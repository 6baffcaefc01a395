// What a screen reader sees, through the toolkit's accessibility interfaces.

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>

#include "tests/view_qt/wanted_controls.h"
#include "tests/view_qt/window_bench.h"

namespace cvl {
namespace {

using testing::Contains;
using testing::Not;

std::string NameOf(QAccessibleInterface &interface) {
  return Text(interface.text(QAccessible::Name));
}

class AccessibleTest : public WindowTest {
 protected:
  AccessibleTest() {
    StoreAllServices();
    Show();
  }

  QAccessibleInterface &Interface(const char *name, QWidget *window = nullptr) const {
    return InterfaceOf(Widget(name, window));
  }

  static QAccessibleInterface &InterfaceOf(QWidget &widget) {
    QAccessibleInterface *found = QAccessible::queryAccessibleInterface(&widget);
    if (found == nullptr) throw std::logic_error("no interface");
    return *found;
  }

  WindowWidget &OpenConfiguration() {
    Server->Others().ShowConfiguration();
    Refresh();
    Activate(*TheView().Configuration());
    return *TheView().Configuration();
  }

  static QStringList ActionsOf(QAccessibleInterface &interface) {
    return interface.actionInterface()->actionNames();
  }

  /// Everything in WINDOW that a user can operate or that shows a state has a name.
  static void ExpectNames(QWidget &window) {
    for (QWidget *widget : window.findChildren<QWidget *>()) {
      if (widget->objectName().isEmpty() || widget->objectName().startsWith("qt_")) continue;
      QAccessibleInterface &interface = InterfaceOf(*widget);
      if (interface.role() == QAccessible::Grouping) continue;
      EXPECT_NE(NameOf(interface), "") << Text(widget->objectName());
    }
  }
};

TEST_F(AccessibleTest, EveryControlHasAName) {
  ExpectNames(*TheView().Main());
  ExpectNames(OpenConfiguration());
  Server->Others().ShowAbout();
  Refresh();
  ExpectNames(*TheView().About());
}

// Buttons.

TEST_F(AccessibleTest, AButtonHasRoleNameAndPressAction) {
  WindowWidget &window = OpenConfiguration();
  QAccessibleInterface &button = Interface("SelTimeZone", &window);
  EXPECT_EQ(button.role(), QAccessible::PushButton);
  EXPECT_EQ(NameOf(button), "Time Zone");
  EXPECT_TRUE(button.state().focusable);
  EXPECT_FALSE(button.state().disabled);
  ASSERT_NE(button.actionInterface(), nullptr);
  EXPECT_EQ(ActionsOf(button).front(), QAccessibleActionInterface::pressAction());
  button.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(HasCalled("date and time dialog"));
}

TEST_F(AccessibleTest, ThePressActionOpensAnAddressOnce) {
  Server->Others().ShowAbout();
  Refresh();
  Interface("Help", TheView().About())
      .actionInterface()
      ->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(System.Screen.Opened.size(), 1U);
}

TEST_F(AccessibleTest, AButtonMayCloseItsWindowWhenPressed) {
  WindowWidget &window = OpenConfiguration();
  Interface("cfgsvrOK", &window)
      .actionInterface()
      ->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(Server->Others().ConfigurationIfAny(), nullptr);
}

TEST_F(AccessibleTest, ADisabledButtonCannotBePressed) {
  WindowWidget &window = OpenConfiguration();
  Server->Others().Configuration().SelTimeZone.Enabled = false;
  Refresh();
  QAccessibleInterface &button = Interface("SelTimeZone", &window);
  EXPECT_TRUE(button.state().disabled);
  EXPECT_THAT(ActionsOf(button), Not(Contains(QAccessibleActionInterface::pressAction())));
  button.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_FALSE(HasCalled("date and time dialog"));
}

TEST_F(AccessibleTest, AButtonSaysThatItIsPressed) {
  WindowWidget &window = OpenConfiguration();
  QAccessibleInterface &button = Interface("SelTimeZone", &window);
  EXPECT_FALSE(button.state().pressed);
  Server->Others().Configuration().SelTimeZone.OnMouseDown(1, 0, 5, 5);
  EXPECT_TRUE(button.state().pressed);
}

TEST_F(AccessibleTest, AnAccessKeyIsTheKeyOfThePressAction) {
  WindowWidget &window = OpenConfiguration();
  QAccessibleActionInterface &actions = *Interface("SelTimeZone", &window).actionInterface();
  const QString press = QAccessibleActionInterface::pressAction();
  EXPECT_TRUE(actions.keyBindingsForAction(press).isEmpty());
  Server->Others().Configuration().SelTimeZone.SetCaption("Time &Zone");
  EXPECT_EQ(actions.keyBindingsForAction(press), QStringList("Alt+Z"));
  EXPECT_EQ(NameOf(Interface("SelTimeZone", &window)), "Time Zone");
}

// Boxes.

TEST_F(AccessibleTest, ABoxHasTheNameOfTheLabelBesideIt) {
  const std::pair<const char *, const char *> beside[] = {
      {"NTP_Ptxt", "Label1"},        {"DS_Ptxt", "Label2"},         {"SNTP_Ptxt", "Label4"},
      {"Unix_Ptxt", "Label5"},       {"CVLS_Ptxt", "Label6"},       {"SyncN", "UpdateLbl"},
      {"CVLRemHost(0)", "lastULBL"}, {"CVLRemHost(1)", "lastULBL"}, {"CVLRemHost(2)", "lastULBL"},
      {"CVLRemHost(3)", "lastULBL"}, {"CVLRemHost(4)", "lastULBL"}};
  for (const auto &[box, label] : beside) {
    QAccessibleInterface &interface = Interface(box);
    EXPECT_EQ(interface.role(), QAccessible::EditableText) << box;
    EXPECT_EQ(NameOf(interface), NameOf(Interface(label))) << box;
    EXPECT_EQ(interface.text(QAccessible::Value), Widget(box).property("text").toString());
  }
  WindowWidget &window = OpenConfiguration();
  EXPECT_EQ(NameOf(Interface("Regions", &window)), NameOf(Interface("RegionLbl", &window)));
}

TEST_F(AccessibleTest, ATickBoxHasItsOwnText) {
  EXPECT_EQ(Interface("RandomCheck").role(), QAccessible::CheckBox);
  EXPECT_EQ(NameOf(Interface("RandomCheck")), "Randomize Atomic Time Servers");
  EXPECT_EQ(NameOf(Interface("eTCP37")), "Enable TCP");
}

TEST_F(AccessibleTest, ADropDownBoxHasNameAndValue) {
  QAccessibleInterface &servers = Interface("Servers");
  EXPECT_EQ(servers.role(), QAccessible::ComboBox);
  EXPECT_EQ(NameOf(servers), "Time servers");
  EXPECT_EQ(Text(servers.text(QAccessible::Value)), "One NA");
  QAccessibleInterface &unit = Interface("SyncIntC");
  EXPECT_EQ(NameOf(unit), "Unit of the interval");
  EXPECT_EQ(Text(unit.text(QAccessible::Value)), "Minutes/s");
  EXPECT_TRUE(unit.state().editable);
}

TEST_F(AccessibleTest, ADropDownBoxHasItsListAndItsLine) {
  QAccessibleInterface &servers = Interface("Servers");
  ASSERT_EQ(servers.childCount(), 1);
  EXPECT_EQ(servers.child(0)->object(), Widget<QComboBox>("Servers").view());
  EXPECT_EQ(servers.child(1), nullptr);
  QAccessibleInterface &unit = Interface("SyncIntC");
  ASSERT_EQ(unit.childCount(), 2);
  QAccessibleInterface *line = unit.child(1);
  EXPECT_EQ(line->role(), QAccessible::EditableText);
  EXPECT_EQ(unit.indexOfChild(line), 1);
  EXPECT_EQ(unit.indexOfChild(unit.child(0)), 0);
  EXPECT_EQ(unit.indexOfChild(&servers), -1);
  const QPoint middle = line->rect().center();
  EXPECT_EQ(unit.childAt(middle.x(), middle.y()), line);
  EXPECT_EQ(unit.childAt(0, 0), nullptr);
}

TEST_F(AccessibleTest, ADropDownBoxOpensAndCloses) {
  QAccessibleInterface &unit = Interface("SyncIntC");
  const QString menu = QAccessibleActionInterface::showMenuAction();
  EXPECT_THAT(ActionsOf(unit), Contains(menu));
  QWidget &list = *Widget<QComboBox>("SyncIntC").view();
  EXPECT_TRUE(unit.state().collapsed);
  unit.actionInterface()->doAction(menu);
  EXPECT_TRUE(list.isVisible());
  EXPECT_TRUE(unit.state().expanded);
  unit.actionInterface()->doAction(menu);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !list.isVisible(); }, 5000));
}

TEST_F(AccessibleTest, TheClockIsALockedBox) {
  QAccessibleInterface &clock = Interface("svrCurrent");
  EXPECT_EQ(clock.role(), QAccessible::EditableText);
  EXPECT_EQ(NameOf(clock), "Clock");
  EXPECT_TRUE(clock.state().readOnly);
  EXPECT_TRUE(clock.state().focusable);
  ASSERT_NE(clock.textInterface(), nullptr);
  Server->Window.svrCurrent.SetText("Noon");
  Refresh();
  EXPECT_EQ(Text(clock.textInterface()->text(0, clock.textInterface()->characterCount())), "Noon");
}

// What only shows.

TEST_F(AccessibleTest, LabelsAreStaticTextsWithTheirTextAsName) {
  Server->Window.Status.Caption = "first\rsecond";
  Refresh();
  for (const WantedControl &control : WantedMainWindow()) {
    if (control.Kind != WantedKind::Label) continue;
    EXPECT_EQ(Interface(control.Name.c_str()).role(), QAccessible::StaticText) << control.Name;
  }
  EXPECT_EQ(NameOf(Interface("Label1")), "on Port:");
  EXPECT_EQ(NameOf(Interface("NOLLabel")), "Chronvale SVR v5.1");
  EXPECT_EQ(NameOf(Interface("Status")), "first\nsecond");
}

TEST_F(AccessibleTest, LampsSayNameAndState) {
  Synchronise();
  Advance(1000);
  const char *names[] = {"Source", "Receive", "Transmit", "UDP", "TCP"};
  for (int lamp = 0; lamp < 5; ++lamp) {
    QAccessibleInterface &interface = Interface(("LED(" + std::to_string(lamp) + ")").c_str());
    EXPECT_EQ(interface.role(), QAccessible::Graphic);
    EXPECT_EQ(NameOf(interface), names[lamp]);
  }
  const auto state = [this](const char *lamp) {
    return Text(Interface(lamp).text(QAccessible::Description));
  };
  EXPECT_EQ(state("LED(3)"), "off");
  AskNtp();
  EXPECT_EQ(state("LED(3)"), "on");
  EXPECT_EQ(state("LED(4)"), "off");
  Advance(1000);
  EXPECT_EQ(state("LED(3)"), "off");
}

TEST_F(AccessibleTest, TheTreeAndItsNodesHaveNames) {
  QAccessibleInterface &tree = Interface("CVL_TV");
  EXPECT_EQ(tree.role(), QAccessible::Tree);
  EXPECT_EQ(NameOf(tree), "Services");
  ASSERT_NE(tree.tableInterface(), nullptr);
  QAccessibleInterface *node = tree.tableInterface()->cellAt(2, 0);
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->role(), QAccessible::TreeItem);
  EXPECT_EQ(NameOf(*node), "Daytime Service Server");
}

TEST_F(AccessibleTest, FramesAreGroupsWithTheirCaptions) {
  EXPECT_EQ(Interface("proto_f(0)").role(), QAccessible::Grouping);
  EXPECT_EQ(NameOf(Interface("proto_f(0)")), "Time Protocol Server");
}

}  // namespace
}  // namespace cvl
