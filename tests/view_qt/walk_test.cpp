// The windows' widgets, compared one by one with what is wanted.

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QTreeWidget>
#include <set>

#include "tests/view_qt/wanted_controls.h"
#include "tests/view_qt/window_bench.h"
#include "ui/main_window_layout.h"
#include "view/qt/button_widget.h"
#include "view/qt/fitted_label.h"
#include "view/qt/locked_text_box.h"

namespace cvl {
namespace {

template <class Kind>
bool Is(const QWidget &widget) {
  return dynamic_cast<const Kind *>(&widget) != nullptr;
}

bool IsOf(WantedKind kind, const QWidget &widget) {
  switch (kind) {
    case WantedKind::Frame:
      return Is<QGroupBox>(widget);
    case WantedKind::Label:
      return Is<FittedLabel>(widget);
    case WantedKind::Clock:
      return Is<LockedTextBox>(widget);
    case WantedKind::Image:
      return Is<QLabel>(widget) && !Is<FittedLabel>(widget);
    case WantedKind::Tree:
      return Is<QTreeWidget>(widget);
    case WantedKind::Line:
      return Is<QLineEdit>(widget) && !static_cast<const QLineEdit &>(widget).isReadOnly();
    case WantedKind::Check:
      return Is<QCheckBox>(widget) && !static_cast<const QCheckBox &>(widget).isTristate();
    case WantedKind::Combo:
      return Is<QComboBox>(widget) && static_cast<const QComboBox &>(widget).isEditable();
    case WantedKind::ImageCombo:
      return Is<QComboBox>(widget) && !static_cast<const QComboBox &>(widget).isEditable();
    case WantedKind::Button:
      return Is<ButtonWidget>(widget);
  }
  return false;
}

std::string TextOf(const QWidget &widget) {
  if (const auto *frame = dynamic_cast<const QGroupBox *>(&widget)) return Text(frame->title());
  if (const auto *label = dynamic_cast<const FittedLabel *>(&widget)) return Text(label->Text());
  if (const auto *locked = dynamic_cast<const LockedTextBox *>(&widget)) {
    return Text(locked->Text());
  }
  if (const auto *line = dynamic_cast<const QLineEdit *>(&widget)) return Text(line->text());
  if (const auto *box = dynamic_cast<const QCheckBox *>(&widget)) return Text(box->text());
  if (const auto *combo = dynamic_cast<const QComboBox *>(&widget)) {
    return Text(combo->currentText());
  }
  if (Is<ButtonWidget>(widget)) return Text(widget.accessibleName());
  return "";
}

std::string NameOf(const QWidget &widget) {
  return widget.isWindow() ? "" : Text(widget.objectName());
}

void ExpectPlace(const QWidget &widget, const WantedPlace &at) {
  const bool has_place = at.Left != 0 || at.Top != 0 || at.Width != 0;
  if (!has_place) return;
  EXPECT_EQ(widget.pos(), QPoint(at.Left / 15, at.Top / 15));
  if (at.Width == 0) return;
  EXPECT_EQ(widget.size(), QSize(at.Width / 15, at.Height / 15));
}

/// Compares WIDGET with CONTROL in all but what a run changes.
void ExpectControl(const QWidget &widget, const WantedControl &control) {
  EXPECT_TRUE(IsOf(control.Kind, widget));
  EXPECT_EQ(NameOf(*widget.parentWidget()), control.Parent);
  ExpectPlace(widget, control.At);
  if (control.Limit == 0) return;
  const auto *line = dynamic_cast<const QLineEdit *>(&widget);
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->maxLength(), control.Limit);
}

QWidget &Find(const QWidget &window, const std::string &name) {
  auto *widget = window.findChild<QWidget *>(QString::fromStdString(name));
  if (widget == nullptr) throw std::logic_error("no such widget: " + name);
  return *widget;
}

/// The window has all controls of WANTED and no other.
void ExpectControls(const QWidget &window, const std::vector<WantedControl> &wanted) {
  std::set<std::string> names;
  for (const WantedControl &control : wanted) {
    SCOPED_TRACE(control.Name);
    names.insert(control.Name);
    ExpectControl(Find(window, control.Name), control);
  }
  for (const QWidget *widget : window.findChildren<QWidget *>()) {
    const std::string name = NameOf(*widget);
    // What the toolkit's own widgets are made of has names of its own, or none.
    if (name.empty() || name.starts_with("qt_")) continue;
    EXPECT_TRUE(names.contains(name)) << name;
  }
}

/// The main window of a program that hasn't loaded anything.
class WalkAtDesignTest : public testing::Test {
 protected:
  WalkAtDesignTest() { TheView(); }

  TestLoop Loop;
  MainWindow Model;
  ViewEvents Events{Loop, [] {}};
};

TEST_F(WalkAtDesignTest, TheMainWindowHasItsControls) {
  const WindowWidget window(MainWindowLayout(Model), Events);
  ExpectControls(window, WantedMainWindow());
  EXPECT_EQ(Text(window.objectName()), "CVL_Server");
}

TEST_F(WalkAtDesignTest, TextsAndVisibilityAreThoseOfTheDesign) {
  const WindowWidget window(MainWindowLayout(Model), Events);
  for (const WantedControl &control : WantedMainWindow()) {
    const QWidget &widget = Find(window, control.Name);
    EXPECT_EQ(TextOf(widget), control.Text) << control.Name;
    EXPECT_EQ(widget.isVisibleTo(widget.parentWidget()), !control.Hidden) << control.Name;
    EXPECT_TRUE(widget.isEnabled()) << control.Name;
    EXPECT_EQ(Text(widget.toolTip()), "") << control.Name;
  }
}

TEST_F(WalkAtDesignTest, TheRandomDrawIsTickedAndNothingElse) {
  const WindowWidget window(MainWindowLayout(Model), Events);
  for (const QCheckBox *box : window.findChildren<QCheckBox *>()) {
    EXPECT_EQ(box->isChecked(), box->objectName() == "RandomCheck") << NameOf(*box);
  }
}

TEST_F(WalkAtDesignTest, TheClockIsGreenAndTheBannerIsWhite) {
  WindowWidget window(MainWindowLayout(Model), Events);
  const QImage picture = window.grab().toImage();
  const double scale = window.devicePixelRatioF();
  const auto colour_at = [&](QPoint at) { return picture.pixelColor(at * scale); };
  const QWidget &clock = Find(window, "svrCurrent");
  const QColor green = colour_at(clock.mapTo(&window, clock.rect().center()));
  EXPECT_GT(green.green(), green.red() + 64);
  EXPECT_GT(green.green(), green.blue() + 64);
  EXPECT_EQ(colour_at({400, 2}), QColor(Qt::white));
}

class WalkTest : public WindowTest {};

TEST_F(WalkTest, TheWindowIsFixedAndCentredAndHasNoMaximiseButton) {
  Show();
  const QWidget &window = *TheView().Main();
  EXPECT_EQ(Text(window.windowTitle()), "Chronvale Server");
  EXPECT_EQ(window.size(), QSize(403, 401));
  EXPECT_EQ(window.minimumSize(), window.maximumSize());
  EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
  EXPECT_FALSE(window.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
  EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowCloseButtonHint));
  EXPECT_FALSE(window.windowIcon().isNull());
  const QPoint off = window.frameGeometry().center() - window.screen()->geometry().center();
  EXPECT_LE(std::abs(off.x()), 30);
  EXPECT_LE(std::abs(off.y()), 30);
}

TEST_F(WalkTest, TheLoadedWindowShowsTheFirstPanelAndTheStoredBoxes) {
  Show();
  ExpectControls(*TheView().Main(), WantedMainWindow());
  for (int panel = 0; panel < 5; ++panel) {
    const std::string index = "(" + std::to_string(panel) + ")";
    EXPECT_EQ(Widget(("proto_f" + index).c_str()).isVisible(), panel == 0);
    EXPECT_EQ(Widget(("CVLRemHost" + index).c_str()).isVisible(), panel == 0);
  }
  EXPECT_FALSE(Widget("eTCP37").isVisible());
  const QWidget &ntp = Widget("proto_f(2)");
  EXPECT_TRUE(Widget("eTCP123").isVisibleTo(&ntp));
  EXPECT_TRUE(Widget("eUDP123").isVisibleTo(&ntp));
  EXPECT_TRUE(Widget<QCheckBox>("eTCP123").isChecked());
  EXPECT_FALSE(Widget<QCheckBox>("RandomCheck").isChecked());
  EXPECT_EQ(TextOf(Widget("Servers")), "One NA");
  EXPECT_EQ(TextOf(Widget("svrStatlbl")),
            "Server is: Disabled\nTCP: OFF - UDP: OFF\nRequests: 0/t - 0/u");
}

TEST_F(WalkTest, TheTreeHasItsNodesInOrder) {
  Show();
  const auto &tree = Widget<QTreeWidget>("CVL_TV");
  ASSERT_EQ(tree.topLevelItemCount(), 3);
  EXPECT_TRUE(tree.isHeaderHidden());
  const QTreeWidgetItem &root = *tree.topLevelItem(0);
  EXPECT_TRUE(root.isExpanded());
  const char *roots[] = {"CVL Servers", "CVL About/Help", "CVL Advanced Config"};
  for (int at = 0; at < 3; ++at) {
    EXPECT_EQ(Text(tree.topLevelItem(at)->text(0)), roots[at]);
  }
  const char *services[] = {"Time Service Server", "Daytime Service Server",
                            "SNTP v4 Service Server", "UnixTime Service Server",
                            "CVL Server Client Server"};
  ASSERT_EQ(root.childCount(), 5);
  for (int at = 0; at < 5; ++at) {
    EXPECT_EQ(Text(root.child(at)->text(0)), services[at]);
    EXPECT_EQ(root.child(at)->childCount(), 0);
  }
  EXPECT_EQ(tree.topLevelItem(1)->childCount() + tree.topLevelItem(2)->childCount(), 0);
  EXPECT_TRUE(tree.selectedItems().isEmpty());
}

TEST_F(WalkTest, TheMenuShowsALineAndTwoEntries) {
  Show();
  const QMenu *menu = TheView().TrayMenu();
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(Text(menu->title()), "Main");
  const QList<QAction *> entries = menu->actions();
  ASSERT_EQ(entries.size(), 3);
  EXPECT_EQ(Text(entries[0]->text()), "Show Chronvale Server");
  EXPECT_TRUE(entries[1]->isSeparator());
  EXPECT_EQ(Text(entries[2]->text()), "Exit");
  EXPECT_FALSE(menu->isVisible());
}

TEST_F(WalkTest, TheConfigurationWindowHasItsControls) {
  Show();
  Server->Others().ShowConfiguration();
  Refresh();
  const QWidget &window = *TheView().Configuration();
  EXPECT_EQ(Text(window.windowTitle()), "CONFIG - Chronvale Server");
  EXPECT_EQ(Text(window.objectName()), "CVL_ConfigSVR");
  EXPECT_EQ(window.minimumSize(), window.maximumSize());
  EXPECT_FALSE(window.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
  EXPECT_FALSE(window.windowIcon().isNull());
  EXPECT_TRUE(window.isVisible());
  EXPECT_FALSE(window.isModal());
  ExpectControls(window, WantedConfigurationWindow());
  for (const WantedControl &control : WantedConfigurationWindow()) {
    const QWidget &widget = Find(window, control.Name);
    if (control.Name != "Regions") {
      EXPECT_EQ(TextOf(widget), control.Text);
    }
    EXPECT_TRUE(widget.isVisible()) << control.Name;
  }
  EXPECT_EQ(TextOf(Find(window, "Regions")), "NA - North America [USA, Canada, Mexico]");
}

TEST_F(WalkTest, TheAboutBoxHasItsControls) {
  Show();
  Server->Others().ShowAbout();
  Refresh();
  const QWidget &window = *TheView().About();
  EXPECT_EQ(Text(window.windowTitle()), "ABOUT - Chronvale Server");
  EXPECT_EQ(Text(window.objectName()), "CVL_AboutSVR");
  EXPECT_EQ(window.minimumSize(), window.maximumSize());
  EXPECT_TRUE(window.isVisible());
  EXPECT_FALSE(window.isModal());
  ExpectControls(window, WantedAboutBox());
  for (const WantedControl &control : WantedAboutBox()) {
    const QWidget &widget = Find(window, control.Name);
    EXPECT_EQ(TextOf(widget), control.Text);
    EXPECT_TRUE(widget.isVisible()) << control.Name;
  }
}

}  // namespace
}  // namespace cvl
