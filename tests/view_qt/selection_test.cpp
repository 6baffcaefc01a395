// Texts that the user can select and copy.

#include <QClipboard>
#include <QTextCursor>

#include "tests/view_qt/window_bench.h"
#include "view/qt/fitted_label.h"
#include "view/qt/locked_text_box.h"

namespace cvl {
namespace {

class SelectionTest : public WindowTest {
 protected:
  SelectionTest() {
    Show();
    System.Clock.Pass(1000);
    Advance(1000);
    QGuiApplication::clipboard()->clear();
  }

  static std::string Clipboard() { return Text(QGuiApplication::clipboard()->text()); }

  /// Selects all of the text of WIDGET with the mouse and the keyboard, and copies it.
  std::string Copy(QWidget &widget) {
    ClickAt(widget, {2, 2});
    Press(Qt::Key_A, Qt::ControlModifier, widget.window());
    Press(Qt::Key_C, Qt::ControlModifier, widget.window());
    return Clipboard();
  }

  /// Presses the mouse at one place of WIDGET and moves it to another.
  void Drag(QWidget &widget, QPoint from, QPoint to) {
    QTest::mousePress(widget.window()->windowHandle(), Qt::LeftButton, {},
                      widget.mapTo(widget.window(), from));
    QTest::mouseMove(widget.window()->windowHandle(), widget.mapTo(widget.window(), to));
  }
  void Release(QWidget &widget, QPoint at) {
    QTest::mouseRelease(widget.window()->windowHandle(), Qt::LeftButton, {},
                        widget.mapTo(widget.window(), at));
  }

  LockedTextBox &Clock() { return Widget<LockedTextBox>("svrCurrent"); }
};

TEST_F(SelectionTest, TheClockTakesTheKeyboardButNoText) {
  const std::string before = Server->Window.svrCurrent.Text();
  ASSERT_NE(before, "");
  Click(*Clock().viewport());
  EXPECT_EQ(Focus(), "svrCurrent");
  Type("x");
  Press(Qt::Key_Delete);
  Press(Qt::Key_Return);
  EXPECT_EQ(Server->Window.svrCurrent.Text(), before);
  EXPECT_EQ(Text(Clock().Text()), Text(Clock().toPlainText()));
  EXPECT_TRUE(Clock().isReadOnly());
  Press(Qt::Key_Tab);
  EXPECT_EQ(Focus(), "Servers") << "a tab goes on to the next control";
}

TEST_F(SelectionTest, TheClockIsSelectedAndCopied) {
  EXPECT_EQ(Copy(*Clock().viewport()),
            "   THU OCTOBER 3 2002 12:00:01 PM\n   UTC OCTOBER 3 2002 12:00:01 PM\n"
            "   Chronvale Server 5100");
}

TEST_F(SelectionTest, TheClocksSelectionOutlastsATick) {
  Clock().setFocus();
  QTextCursor selection = Clock().textCursor();
  selection.setPosition(6);
  selection.setPosition(3, QTextCursor::KeepAnchor);
  Clock().setTextCursor(selection);
  System.Clock.Pass(1000);
  Advance(1000);
  EXPECT_NE(Text(Clock().Text()).find("12:00:02"), std::string::npos);
  EXPECT_EQ(Clock().textCursor().anchor(), 6);
  EXPECT_EQ(Clock().textCursor().position(), 3);
  Press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(Clipboard(), "THU");
}

TEST_F(SelectionTest, AShorterTextCutsTheSelection) {
  Clock().selectAll();
  Clock().SetText("short");
  EXPECT_EQ(Text(Clock().textCursor().selectedText()), "short");
  Clock().SetText("");
  EXPECT_FALSE(Clock().textCursor().hasSelection());
}

TEST_F(SelectionTest, StatusTextsAreCopied) {
  Server->Window.Status.Caption = "first\rsecond";
  Refresh();
  EXPECT_EQ(Copy(Widget("Status")), "first\nsecond");
  EXPECT_EQ(Copy(Widget("svrStatlbl")),
            "Server is: Disabled\nTCP: OFF - UDP: OFF\nRequests: 0/t - 0/u");
}

TEST_F(SelectionTest, VersionTextsAreCopied) {
  EXPECT_EQ(Copy(Widget("NOLLabel")), "Chronvale SVR v5.1");
  Server->Others().ShowConfiguration();
  Refresh();
  Activate(*TheView().Configuration());
  EXPECT_EQ(Copy(Widget("NOLLabel", TheView().Configuration())), "Chronvale SVR v5.0");
  Server->Others().ShowAbout();
  Refresh();
  Activate(*TheView().About());
  EXPECT_EQ(Copy(Widget("NOLLabel", TheView().About())), "Chronvale SVR v5.0");
  EXPECT_EQ(Copy(Widget("ROT", TheView().About())), "About Chronvale Server v5.1.1");
}

TEST_F(SelectionTest, NoOtherLabelTakesTheFocus) {
  Widget("CVL_TV").setFocus();
  for (const char *name : {"ROT", "lastULBL", "LEDLBL", "Label3", "UpdateLbl", "Label1"}) {
    Click(Widget(name));
    EXPECT_EQ(Focus(), "CVL_TV") << name;
  }
}

TEST_F(SelectionTest, ALabelsSelectionOutlastsANewText) {
  auto &label = Widget<FittedLabel>("Status");
  label.SetText("Status: 1");
  label.setSelection(0, 6);
  label.SetText("Status: 2");
  EXPECT_EQ(Text(label.selectedText()), "Status");
  label.setSelection(4, 5);
  label.SetText("State");
  EXPECT_EQ(Text(label.selectedText()), "e") << "cut at the end of the text";
}

TEST_F(SelectionTest, ATextThatIsBeingSelectedWaitsForTheButton) {
  auto &label = Widget<FittedLabel>("Status");
  Server->Window.Status.Caption = "before";
  Refresh();
  Drag(label, {1, 6}, {60, 6});
  Server->Window.Status.Caption = "after";
  Refresh();
  EXPECT_EQ(Text(label.Text()), "before");
  EXPECT_EQ(Text(label.selectedText()), "before");
  Release(label, {60, 6});
  Refresh();
  EXPECT_EQ(Text(label.Text()), "after");
}

TEST_F(SelectionTest, ATextIsNeverTakenForMarkup) {
  Server->Window.Status.Caption = "<b>bold</b>";
  Refresh();
  EXPECT_EQ(Copy(Widget("Status")), "<b>bold</b>");
}

}  // namespace
}  // namespace cvl
