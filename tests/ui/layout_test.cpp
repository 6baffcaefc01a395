#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "tests/support/test_loop.h"
#include "ui/about_box.h"
#include "ui/configuration_window.h"
#include "ui/main_window_layout.h"

namespace cvl {
namespace {

std::string NameOf(std::string_view name, int index) {
  return std::string(name) + (index < 0 ? "" : "(" + std::to_string(index) + ")");
}

/// The three windows, and what holds for each of them.
class LayoutTest : public testing::Test {
 protected:
  LayoutTest() {
    Layouts = {MainWindowLayout(Main), ConfigurationWindowLayout(Configuration),
               AboutBoxLayout(About)};
  }

  TestLoop Loop;
  RunState State;
  MainWindow Main;
  ConfigurationWindow Configuration{Loop, Main, State};
  AboutBox About{Loop, Main, "maker.example"};
  std::vector<WindowLayout> Layouts;
};

TEST_F(LayoutTest, EachControlHasANameOfItsOwnAndComesBehindItsParent) {
  for (const WindowLayout &layout : Layouts) {
    std::set<std::string> known = {""};
    for (const PlacedControl &control : layout.Controls) {
      const ControlLayout &row = *control.Layout;
      EXPECT_TRUE(known.contains(NameOf(row.Parent, row.ParentIndex))) << row.Name;
      EXPECT_TRUE(known.insert(NameOf(row.Name, row.Index)).second) << row.Name;
    }
  }
}

TEST_F(LayoutTest, NoControlReachesBeyondItsParent) {
  for (const WindowLayout &layout : Layouts) {
    std::map<std::string, Place> places = {{"", {0, 0, layout.Width, layout.Height}}};
    for (const PlacedControl &control : layout.Controls) {
      const ControlLayout &row = *control.Layout;
      const Place &parent = places.at(NameOf(row.Parent, row.ParentIndex));
      places[NameOf(row.Name, row.Index)] = row.At;
      const std::string name(row.Name);
      // The banner begins above the window, and its second text and the last user's box end
      // a pixel or two beyond theirs.
      EXPECT_GE(row.At.Top, name == "Frame1" ? -90 : 0) << name;
      EXPECT_GE(row.At.Left, 0) << name;
      EXPECT_LE(row.At.Left + row.At.Width, parent.Width + 15) << name;
      EXPECT_LE(row.At.Top + row.At.Height, parent.Height) << name;
    }
  }
}

TEST_F(LayoutTest, PositionsAreWholePixels) {
  for (const WindowLayout &layout : Layouts) {
    for (const PlacedControl &control : layout.Controls) {
      const Place &at = control.Layout->At;
      for (const int twips : {at.Left, at.Top, at.Width, at.Height}) {
        EXPECT_EQ(twips % TwipsPerPixel, 0) << control.Layout->Name;
      }
    }
  }
}

/// What a model holds at design, beside what the table says of it.
struct DesignCheck {
  const ControlLayout &Row;

  void operator()(std::monostate) const {}
  void operator()(const Control *model) const { EXPECT_EQ(model->Visible, Row.Visible); }
  void operator()(const Picture *model) const { EXPECT_EQ(model->Visible, Row.Visible); }
  void operator()(const Label *model) const {
    EXPECT_EQ(model->Visible, Row.Visible);
    EXPECT_THAT(model->Caption, testing::StartsWith(std::string(Row.Text)));
  }
  void operator()(const CheckBox *model) const { EXPECT_EQ(model->Visible, Row.Visible); }
  void operator()(const TextBox *model) const {
    EXPECT_EQ(model->Visible, Row.Visible);
    EXPECT_EQ(model->Text(), Row.Text);
    EXPECT_EQ(model->MaxLength(), Row.MaxLength);
  }
  void operator()(const ComboBox *model) const {
    EXPECT_EQ(model->Visible, Row.Visible);
    EXPECT_EQ(model->Text(), Row.Text);
  }
  void operator()(const ImageCombo *model) const {
    EXPECT_EQ(model->Visible, Row.Visible);
    EXPECT_EQ(model->Count(), 0);
  }
  void operator()(const TreeView *model) const { EXPECT_EQ(model->Visible, Row.Visible); }
  void operator()(const QRBButtons *model) const { EXPECT_EQ(model->Caption(), Row.Text); }
};

TEST_F(LayoutTest, TheTablesSayWhatTheModelsHoldAtDesign) {
  for (const WindowLayout &layout : Layouts) {
    for (const PlacedControl &control : layout.Controls) {
      SCOPED_TRACE(control.Layout->Name);
      std::visit(DesignCheck{*control.Layout}, control.Model);
    }
  }
}

TEST_F(LayoutTest, EveryControlOfAModelIsTiedToIt) {
  std::size_t tied = 0;
  std::set<const void *> models;
  for (const PlacedControl &control : Layouts[0].Controls) {
    std::visit(
        [&](auto model) {
          if constexpr (!std::is_same_v<decltype(model), std::monostate>) {
            ++tied;
            models.insert(model);
          }
        },
        control.Model);
  }
  // 15 boxes and 5 port boxes, tree, 5 panels, 5 last clients, service text, clock, 5 lamps,
  // status, and the five of the synchronisation.
  EXPECT_EQ(tied, 15u + 5 + 1 + 5 + 5 + 1 + 1 + 5 + 1 + 4);
  EXPECT_EQ(models.size(), tied);
}

TEST_F(LayoutTest, TheMainWindowIs403By401Pixels) {
  EXPECT_EQ(Layouts[0].Width / TwipsPerPixel, 403);
  EXPECT_EQ(Layouts[0].Height / TwipsPerPixel, 401);
}

TEST_F(LayoutTest, LampsStandAboveTheLabelsThatTheyOverlap) {
  bool labels_seen = false;
  for (const PlacedControl &control : Layouts[0].Controls) {
    if (control.Layout->Name == "Label3") labels_seen = true;
    if (control.Layout->Name == "LED") {
      EXPECT_TRUE(labels_seen);
    }
  }
}

TEST_F(LayoutTest, TheMenuHasShowALineAndExit) {
  const auto entries = MainMenuEntries(Main);
  EXPECT_EQ(entries[0]->Caption, "Show Chronvale Server");
  EXPECT_EQ(entries[1]->Caption, "-");
  EXPECT_EQ(entries[2]->Caption, "Exit");
  EXPECT_EQ(Main.mnuMain.Caption, "Main");
}

}  // namespace
}  // namespace cvl
