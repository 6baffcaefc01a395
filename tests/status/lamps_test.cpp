#include "status/lamps.h"

#include "tests/status/status_bench.h"

namespace cvl {
namespace {

struct Row {
  const char *Name;
  void (Lamps::*Routine)();
  std::size_t Lamp;
  int Image;
};

constexpr Row Rows[] = {
    {"DataIn", &Lamps::DataIn, 1, LampLitImage},   {"DataInC", &Lamps::DataInC, 1, LampDarkImage},
    {"DataOut", &Lamps::DataOut, 2, LampLitImage}, {"DataOutC", &Lamps::DataOutC, 2, LampDarkImage},
    {"UDPIn", &Lamps::UDPIn, 3, LampLitImage},     {"UDPInC", &Lamps::UDPInC, 3, LampDarkImage},
    {"TCPIn", &Lamps::TCPIn, 4, LampLitImage},     {"TCPInC", &Lamps::TCPInC, 4, LampDarkImage},
};

constexpr int Unset = -1;

class LampsTest : public StatusTest {
 protected:
  /// Calls the routine of ROW on lamps that show nothing yet.
  void Call(const Row &row) {
    for (Picture &lamp : Window.LED) {
      lamp.Image = Unset;
    }
    (LampRow.*row.Routine)();
  }
};

TEST_F(LampsTest, EachRoutineSetsItsOwnLampAlone) {
  ShowWindow();
  for (const Row &row : Rows) {
    Call(row);
    for (std::size_t lamp = 0; lamp < Window.LED.size(); ++lamp) {
      EXPECT_EQ(Window.LED[lamp].Image, lamp == row.Lamp ? row.Image : Unset) << row.Name << lamp;
    }
  }
}

TEST_F(LampsTest, OnlyAWindowOfNormalStateShowsThem) {
  for (const WindowState state : {WindowState::Minimized, WindowState::Maximized}) {
    ShowWindow(state);
    for (const Row &row : Rows) {
      Call(row);
      EXPECT_EQ(Window.LED[row.Lamp].Image, Unset) << row.Name;
    }
  }
}

TEST_F(LampsTest, WithoutAWindowNothingIsShown) {
  ShowWindow();
  State.Flags.Interactive = false;
  for (const Row &row : Rows) {
    Call(row);
    EXPECT_EQ(Window.LED[row.Lamp].Image, Unset) << row.Name;
  }
}

}  // namespace
}  // namespace cvl
