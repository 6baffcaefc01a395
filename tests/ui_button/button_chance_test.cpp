// Buttons of all sizes with any properties, to which anything happens. Nothing is painted
// beyond the surface: its bounds are asserted, and the sanitizers watch over them.

#include <gtest/gtest.h>

#include <random>

#include "tests/ui_button/fake_view.h"

namespace cvl {
namespace {

/// A button and the hand of chance.
class Chance {
 public:
  explicit Chance(unsigned seed) : Dice_(seed) {
    View.TwipsPerPixel = Roll(1, 200);
    View.Behind = [this] { return Backdrop{AnyPicture(), Roll(-50, 50), Roll(-50, 50)}; };
    Button.Attach(&View);
  }

  void Step() {
    switch (Roll(0, 30)) {
      case 0:
        return Button.Resize(Roll(-5, 90), Roll(-5, 60));
      case 1:
        return Button.SetButtonStyle(Roll(-1, 5));
      case 2:
        return Button.SetCaption(OneOf({"", "OK", "&Check for Software Updates", "&", "a&&b"}));
      case 3:
        return Button.SetPicture(AnyPicture());
      case 4:
        return Button.SetPictureHover(AnyPicture());
      case 5:
        return Button.SetPictureSize(Roll(-1, 5));
      case 6:
        return Button.SetPictureWidth(AnyNumber());
      case 7:
        return Button.SetPictureHeight(AnyNumber());
      case 8:
        return Button.SetPicturePosition(Roll(-1, 4));
      case 9:
        return Button.SetBEVEL(static_cast<std::int16_t>(AnyNumber()));
      case 10:
        return Button.SetBEVELDEPTH(static_cast<std::int16_t>(AnyNumber()));
      case 11:
        return Button.SetBackColor(AnyColour());
      case 12:
        return Button.SetForeColor(AnyColour());
      case 13:
        return Button.SetMaskColor(AnyColour());
      case 14:
        return Button.SetTransparentBG(Coin());
      case 15:
        return Button.SetXPDefaultColors(Coin());
      case 16:
        return Button.SetXPColor_Hover(AnyColour());
      case 17:
        return Button.SetXPColor_Pressed(AnyColour());
      case 18:
        return Button.SetEnabled(Coin());
      case 19:
        View.Designs = Roll(0, 9) == 0;
        return Button.AmbientChanged();
      default:
        return Happen();
    }
  }

  FakeView View;
  TestLoop Loop;
  QRBButtons Button{Loop, "chance"};

 private:
  void Happen() {
    switch (Roll(0, 9)) {
      case 0:
        return Button.GotFocus();
      case 1:
        return Button.LostFocus();
      case 2:
        return Button.OnMouseDown(Roll(1, 4), 0, AnyPlace(), AnyPlace());
      case 3:
        return Button.OnDoubleClick();
      case 4:
        return Button.OnMouseUp(Roll(1, 4), 0, AnyPlace(), AnyPlace());
      case 5:
        return Button.OnKeyDown(Roll(31, 33), 0);
      case 6:
        return Button.OnKeyUp(Roll(31, 33), 0);
      case 7:
        View.PointerIsHere = Coin();
        return Loop.Advance(10);
      default:
        return Button.OnMouseMove(0, 0, AnyPlace(), AnyPlace());
    }
  }

  int Roll(int least, int most) { return std::uniform_int_distribution(least, most)(Dice_); }
  bool Coin() { return Roll(0, 1) == 1; }
  int AnyPlace() { return Roll(-10, 70); }
  Colour AnyColour() { return static_cast<Colour>(Dice_()); }
  int AnyNumber() { return Coin() ? Roll(-4, 40) : static_cast<int>(Dice_()); }
  const char *OneOf(std::initializer_list<const char *> texts) {
    return texts.begin()[Roll(0, static_cast<int>(texts.size()) - 1)];
  }

  RasterRef AnyPicture() {
    if (Roll(0, 3) == 0) return nullptr;
    const int width = Roll(0, 40);
    const int height = Roll(0, 40);
    std::vector<std::uint32_t> pixels;
    for (int at = 0; at < width * height; ++at) {
      pixels.push_back(static_cast<std::uint32_t>(Dice_()));
    }
    return MakeRaster(Coin() ? RasterKind::Icon : RasterKind::Bitmap, width, height, pixels);
  }

  std::mt19937 Dice_;
};

std::vector<std::uint32_t> PixelsOf(const Canvas &surface) {
  const auto count =
      static_cast<std::size_t>(surface.Width()) * static_cast<std::size_t>(surface.Height());
  return {surface.Pixels(), surface.Pixels() + count};
}

bool IsOpaque(const std::vector<std::uint32_t> &pixels) {
  return std::all_of(pixels.begin(), pixels.end(), [](auto pixel) { return pixel >> 24 == 0xFF; });
}

TEST(AnyButton, PaintsWithinItsSurfaceWhateverHappens) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    Chance chance(seed);
    for (int step = 0; step < 150; ++step) {
      chance.Step();
      ASSERT_TRUE(IsOpaque(PixelsOf(chance.Button.Surface())))
          << "seed " << seed << ", step " << step;
    }
  }
}

/// What a painting shows is a matter of state alone: nothing of the one before is left.
TEST(AnyButton, LooksTheSameWhenItIsPaintedAgain) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    Chance chance(seed);
    for (int step = 0; step < 60; ++step)
      chance.Step();
    chance.View.Behind = [] { return Backdrop(); };
    chance.Button.Refresh();
    const std::vector<std::uint32_t> first = PixelsOf(chance.Button.Surface());
    chance.Button.Refresh();
    ASSERT_EQ(first, PixelsOf(chance.Button.Surface())) << "seed " << seed;
  }
}

}  // namespace
}  // namespace cvl
