// The way of the windows and of their loop to the end.

#include <sys/eventfd.h>
#include <unistd.h>
#include <QTimer>

#include "tests/support/posted_work.h"
#include "tests/view_qt/window_bench.h"

namespace cvl {
namespace {

/// Runs the view's loop; what the test does comes in as events of the toolkit.
class CloseTest : public WindowTest {
 protected:
  CloseTest() {
    Wakes_ = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    System.Loop.Wakes = SocketHandle{Wakes_};
    Show();
    TheView().CloseWindows();
  }

  ~CloseTest() override {
    Server.reset();
    close(Wakes_);
  }

  /// Runs until the program ends. ACT is done once the window is there; the test fails and
  /// ends when nothing else ends the run.
  void Run(const std::function<void()> &act) {
    QTimer soon;
    soon.setSingleShot(true);
    QObject::connect(&soon, &QTimer::timeout, act);
    soon.start(0);
    QTimer too_late;
    too_late.setSingleShot(true);
    QObject::connect(&too_late, &QTimer::timeout, [&] {
      ADD_FAILURE() << "the run goes on";
      QCoreApplication::exit();
    });
    too_late.start(20000);
    TheView().Run(Models());
  }

  /// The server's loop has something to do.
  void Wake() { ASSERT_EQ(eventfd_write(Wakes_, 1), 0); }
  void Sleep() {
    eventfd_t count = 0;
    eventfd_read(Wakes_, &count);
  }

 private:
  int Wakes_ = -1;
};

TEST_F(CloseTest, TheCloseButtonEndsTheProgram) {
  bool seen = false;
  Run([&] {
    seen = TheView().Main()->isVisible();
    TheView().Main()->close();
  });
  EXPECT_TRUE(seen);
  EXPECT_TRUE(System.Loop.IsQuitting());
  EXPECT_TRUE(HasCalled("store Settings"));
  EXPECT_EQ(TheView().Main(), nullptr);
}

TEST_F(CloseTest, ItEndsWithTheOtherWindowsOpen) {
  Run([&] {
    Server->Others().ShowConfiguration();
    Server->Others().ShowAbout();
    TheView().Refresh();
    TheView().Main()->close();
  });
  EXPECT_EQ(TheView().Configuration(), nullptr);
  EXPECT_EQ(TheView().About(), nullptr);
}

TEST_F(CloseTest, ClosingASecondaryWindowEndsNothing) {
  bool goes_on = false;
  Run([&] {
    Server->Others().ShowAbout();
    TheView().Refresh();
    TheView().About()->close();
    goes_on = !System.Loop.IsQuitting();
    TheView().Main()->close();
  });
  EXPECT_TRUE(goes_on);
}

TEST_F(CloseTest, AStopFromTheServiceManagerEndsIt) {
  std::optional<PostedWork> stop;
  Run([&] {
    stop.emplace(System.Loop, [&] { System.Service.Stop(); });
    Wake();
  });
  EXPECT_TRUE(stop->HasRun);
}

TEST_F(CloseTest, AServerThatHasStoppedBeforehandShowsNothing) {
  System.Service.Stop();
  bool acted = false;
  Run([&] { acted = true; });
  EXPECT_FALSE(acted);
}

TEST_F(CloseTest, WhatTheServersLoopDoesIsSoonOnTheWindow) {
  std::string shown;
  std::optional<PostedWork> work;
  Run([&] {
    work.emplace(System.Loop, [&] {
      Sleep();
      Server->Window.Caption = "Another Title";
      QTimer::singleShot(500, [&] {
        shown = Text(TheView().Main()->windowTitle());
        TheView().Main()->close();
      });
    });
    Wake();
  });
  EXPECT_EQ(shown, "Another Title");
}

TEST_F(CloseTest, AMessageBoxOfAHandlerEndsWithTheProgram) {
  BoxAnswer answer = BoxAnswer::Ok;
  std::optional<PostedWork> ask;
  std::optional<PostedWork> stop;
  Run([&] {
    ask.emplace(System.Loop, [&] {
      Sleep();
      stop.emplace(System.Loop, [&] { System.Service.Stop(); });
      QTimer::singleShot(200, [&] { Wake(); });
      answer =
          TheView().Boxes().Show(BoxOwner::MainWindow, BoxStyle::YesNoInformation, "Title", "Text");
    });
    Wake();
  });
  EXPECT_EQ(answer, BoxAnswer::No);
  EXPECT_TRUE(stop->HasRun) << "the server's loop went on under the box";
}

}  // namespace
}  // namespace cvl
