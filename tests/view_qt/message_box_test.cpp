// Message boxes on the desktop.

#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QWindow>

#include "tests/support/posted_work.h"
#include "tests/view_qt/window_bench.h"

namespace cvl {
namespace {

class MessageBoxTest : public WindowTest {
 protected:
  MessageBoxTest() { Show(); }

  /// Shows a box; ACT is done to it as soon as it can be used.
  BoxAnswer Ask(BoxOwner owner, BoxStyle style, std::function<void(QMessageBox &)> act) {
    bool seen = false;
    QTimer wait;
    QObject::connect(&wait, &QTimer::timeout, [&] {
      auto *box = dynamic_cast<QMessageBox *>(QApplication::activeModalWidget());
      if (box == nullptr || QApplication::activeWindow() != box) return;
      wait.stop();
      seen = true;
      act(*box);
    });
    wait.start(10);
    const BoxAnswer answer =
        TheView().Boxes().Show(owner, style, Title, "First line\r\nSecond & last");
    EXPECT_TRUE(seen);
    return answer;
  }

  std::string Title = "A title";

  void PressButton(QMessageBox &box, QMessageBox::StandardButton button) {
    ASSERT_NE(box.button(button), nullptr);
    Click(*box.button(button));
  }
};

TEST_F(MessageBoxTest, ItShowsTitleTextAndOneButton) {
  Ask(BoxOwner::None, BoxStyle::Ok, [&](QMessageBox &box) {
    EXPECT_EQ(Text(box.windowTitle()), "A title");
    EXPECT_EQ(Text(box.text()), "First line\nSecond & last");
    EXPECT_EQ(box.icon(), QMessageBox::NoIcon);
    EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
    EXPECT_EQ(box.parentWidget(), nullptr);
    PressButton(box, QMessageBox::Ok);
  });
}

TEST_F(MessageBoxTest, AWarningHasItsMarkAndItsOwner) {
  Server->Others().ShowConfiguration();
  Refresh();
  const BoxAnswer answer =
      Ask(BoxOwner::ConfigurationWindow, BoxStyle::OkExclamation, [&](QMessageBox &box) {
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
        EXPECT_EQ(box.parentWidget(), TheView().Configuration());
        PressButton(box, QMessageBox::Ok);
      });
  EXPECT_EQ(answer, BoxAnswer::Ok);
}

TEST_F(MessageBoxTest, AQuestionIsAnsweredByItsButtons) {
  for (const auto &choice :
       {std::pair(QMessageBox::Yes, BoxAnswer::Yes), std::pair(QMessageBox::No, BoxAnswer::No)}) {
    const BoxAnswer answer =
        Ask(BoxOwner::MainWindow, BoxStyle::YesNoInformation, [&](QMessageBox &box) {
          EXPECT_EQ(box.icon(), QMessageBox::Information);
          EXPECT_EQ(box.standardButtons(), QMessageBox::Yes | QMessageBox::No);
          EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Yes));
          EXPECT_EQ(box.parentWidget(), TheView().Main());
          PressButton(box, choice.first);
        });
    EXPECT_EQ(answer, choice.second);
  }
}

TEST_F(MessageBoxTest, EnterPressesTheFirstButton) {
  const BoxAnswer answer = Ask(BoxOwner::MainWindow, BoxStyle::YesNoInformation,
                               [&](QMessageBox &box) { Press(Qt::Key_Return, {}, &box); });
  EXPECT_EQ(answer, BoxAnswer::Yes);
}

TEST_F(MessageBoxTest, EscapeSaysNoOrOk) {
  const auto escape = [&](QMessageBox &box) { Press(Qt::Key_Escape, {}, &box); };
  EXPECT_EQ(Ask(BoxOwner::MainWindow, BoxStyle::YesNoInformation, escape), BoxAnswer::No);
  EXPECT_EQ(Ask(BoxOwner::MainWindow, BoxStyle::Ok, escape), BoxAnswer::Ok);
}

TEST_F(MessageBoxTest, AnOwnerThatNobodySeesOwnsNothing) {
  Server->Tray().OnResize(WindowState::Minimized);
  TheView().Main()->hide();
  Server->Others().Configuration();
  for (const BoxOwner owner : {BoxOwner::MainWindow, BoxOwner::ConfigurationWindow}) {
    Ask(owner, BoxStyle::Ok, [&](QMessageBox &box) {
      EXPECT_EQ(box.parentWidget(), nullptr);
      PressButton(box, QMessageBox::Ok);
    });
  }
}

TEST_F(MessageBoxTest, ItIsAsWideAsItsTitleBarNeeds) {
  const int height = TheView().Main()->windowHandle()->frameMargins().top();
  ASSERT_GT(height, 0) << "the window manager draws title bars";
  Title = "Chronvale Server AUTO Update Available!";
  Ask(BoxOwner::MainWindow, BoxStyle::Ok, [&](QMessageBox &box) {
    QFont font = box.font();
    font.setBold(true);
    const QString title = box.windowTitle();
    EXPECT_GE(box.width(), QFontMetrics(font).horizontalAdvance(title) + 150);
    // A window manager with larger letters than the toolkit's has higher title bars.
    font.setPixelSize(height * 7 / 10);
    EXPECT_GE(box.width(), QFontMetrics(font).horizontalAdvance(title) + 5 * height);
    PressButton(box, QMessageBox::Ok);
  });
}

// Which window is in front when the box has been answered.

TEST_F(MessageBoxTest, TheOwnerOfABoxComesToTheFront) {
  Server->Others().ShowConfiguration();
  Refresh();
  WindowWidget &window = *TheView().Configuration();
  Activate(*TheView().Main());
  Ask(BoxOwner::ConfigurationWindow, BoxStyle::OkExclamation,
      [&](QMessageBox &box) { PressButton(box, QMessageBox::Ok); });
  EXPECT_TRUE(BecomesActive(window));
}

TEST_F(MessageBoxTest, ASecondaryWindowComesBackAfterABoxOfTheMainWindow) {
  Server->Others().ShowConfiguration();
  Refresh();
  WindowWidget &window = *TheView().Configuration();
  Activate(window);
  Ask(BoxOwner::MainWindow, BoxStyle::YesNoInformation,
      [&](QMessageBox &box) { PressButton(box, QMessageBox::No); });
  EXPECT_TRUE(BecomesActive(window));
}

TEST_F(MessageBoxTest, AWindowThatClosesUnderItsBoxStaysClosed) {
  Server->Others().ShowConfiguration();
  Refresh();
  Activate(*TheView().Configuration());
  Ask(BoxOwner::MainWindow, BoxStyle::Ok, [&](QMessageBox &box) {
    Server->Others().CloseConfiguration();
    Refresh();
    PressButton(box, QMessageBox::Ok);
  });
  EXPECT_EQ(TheView().Configuration(), nullptr);
}

TEST_F(MessageBoxTest, TheServerGoesOnMeanwhile) {
  Ask(BoxOwner::MainWindow, BoxStyle::Ok, [&](QMessageBox &box) {
    Synchronise();
    AskNtp();
    EXPECT_EQ(Server->State.Requests.ReqUDP123, 1);
    PressButton(box, QMessageBox::Ok);
  });
}

TEST_F(MessageBoxTest, AQuestionIsAnsweredAsUnseenWhenTheServerEnds) {
  const BoxAnswer answer =
      Ask(BoxOwner::MainWindow, BoxStyle::YesNoInformation, [&](QMessageBox &) {
        System.Service.Stop();
        TheView().Refresh();
      });
  EXPECT_EQ(answer, BoxAnswer::No);
}

TEST_F(MessageBoxTest, AWarningIsAnsweredAsUnseenWhenTheServerEnds) {
  const BoxAnswer answer = Ask(BoxOwner::None, BoxStyle::OkExclamation, [&](QMessageBox &) {
    System.Service.Stop();
    TheView().Refresh();
  });
  EXPECT_EQ(answer, BoxAnswer::Ok);
}

}  // namespace
}  // namespace cvl
