#include "ui/button/canvas.h"

#include <gtest/gtest.h>

#include "tests/ui_button/sketch.h"
#include "ui/button/region.h"

namespace cvl {
namespace {

constexpr Colour Red = 0x0000FF;
constexpr std::uint32_t RedDot = 0xFF0000;

/// Eight by six white pixels.
class CanvasTest : public testing::Test {
 protected:
  CanvasTest() {
    Surface.Resize(8, 6);
    Surface.Fill(0xFFFFFF);
  }

  Canvas Surface;
  Sketch Expected{8, 6, 0xFFFFFF};
};

TEST_F(CanvasTest, FillsAllOfItself) {
  Surface.Fill(Red);
  ExpectLooks(Surface, Sketch(8, 6, RedDot));
}

TEST_F(CanvasTest, IsOpaque) {
  Surface.SetPixel(1, 1, Red);
  for (int at = 0; at < 48; ++at)
    EXPECT_EQ(Surface.Pixels()[at] >> 24, 0xFFU);
}

TEST_F(CanvasTest, KeepsItsRowsOneBehindTheOther) {
  Surface.SetPixel(3, 2, Red);
  EXPECT_EQ(Surface.Pixels()[2 * 8 + 3], 0xFFFF0000U);
}

TEST_F(CanvasTest, IsBlackWhenItIsNew) {
  Surface.Resize(2, 3);
  ExpectLooks(Surface, Sketch(2, 3, 0));
}

TEST_F(CanvasTest, SetsNoPixelOutside) {
  for (const Point p : {Point{-1, 0}, Point{0, -1}, Point{8, 0}, Point{0, 6}}) {
    Surface.SetPixel(p.X, p.Y, Red);
  }
  ExpectLooks(Surface, Expected);
}

TEST_F(CanvasTest, LeavesOutTheLastPixelOfALine) {
  Surface.Line({1, 1}, {4, 1}, Red);
  Surface.Line({6, 0}, {6, 3}, Red);
  for (const int x : {1, 2, 3})
    Expected.Dot(x, 1, RedDot);
  for (const int y : {0, 1, 2})
    Expected.Dot(6, y, RedDot);
  ExpectLooks(Surface, Expected);
}

TEST_F(CanvasTest, LeavesOutTheLastPixelBackwardsToo) {
  Surface.Line({4, 1}, {1, 1}, Red);
  Surface.Line({6, 3}, {6, 0}, Red);
  for (const int x : {4, 3, 2})
    Expected.Dot(x, 1, RedDot);
  for (const int y : {3, 2, 1})
    Expected.Dot(6, y, RedDot);
  ExpectLooks(Surface, Expected);
}

TEST_F(CanvasTest, DrawsNoLineFromAPointToItself) {
  Surface.Line({2, 2}, {2, 2}, Red);
  ExpectLooks(Surface, Expected);
}

TEST_F(CanvasTest, CutsLinesOff) {
  Surface.Line({-1000000, 2}, {1000000, 2}, Red);
  Surface.Line({5, 1000000}, {5, -1000000}, Red);
  Surface.Line({-1, 0}, {-1, 6}, Red);
  Surface.Line({0, 6}, {8, 6}, Red);
  for (int x = 0; x < 8; ++x)
    Expected.Dot(x, 2, RedDot);
  for (int y = 0; y < 6; ++y)
    Expected.Dot(5, y, RedDot);
  ExpectLooks(Surface, Expected);
}

TEST_F(CanvasTest, FramesInsideTheBox) {
  Surface.Frame({1, 1, 5, 4}, Red);
  for (const int x : {1, 2, 3, 4}) {
    Expected.Dot(x, 1, RedDot);
    Expected.Dot(x, 3, RedDot);
  }
  Expected.Dot(1, 2, RedDot);
  Expected.Dot(4, 2, RedDot);
  ExpectLooks(Surface, Expected);
}

TEST_F(CanvasTest, ShowsOfAFrameThatReachesOutOnlyWhatIsInside) {
  Surface.Frame({0, 0, 9, 7}, Red);
  for (int x = 0; x < 8; ++x)
    Expected.Dot(x, 0, RedDot);
  for (int y = 0; y < 6; ++y)
    Expected.Dot(0, y, RedDot);
  ExpectLooks(Surface, Expected);
}

TEST_F(CanvasTest, DrawsNoFrameOfAnEmptyBox) {
  Surface.Frame({3, 1, 3, 5}, Red);
  Surface.Frame({5, 1, 2, 5}, Red);
  Surface.Frame({1, 4, 5, 4}, Red);
  Surface.Frame({1, 4, 5, 2}, Red);
  ExpectLooks(Surface, Expected);
}

TEST_F(CanvasTest, DotsTheEdgeOfAFocusRectangle) {
  Surface.Fill(Rgb(0xC0, 0x10, 0x00));
  Surface.FocusRect({1, 1, 6, 4});
  Sketch dotted(8, 6, 0xC01000);
  for (const Point p : {Point{1, 1}, {3, 1}, {5, 1}, {1, 3}, {3, 3}, {5, 3}}) {
    dotted.Dot(p.X, p.Y, 0x3FEFFF);
  }
  ExpectLooks(Surface, dotted);
}

TEST_F(CanvasTest, TakesAFocusRectangleAwayBySettingItAgain) {
  Surface.FocusRect({-2, -2, 7, 5});
  Surface.FocusRect({-2, -2, 7, 5});
  ExpectLooks(Surface, Expected);
}

TEST_F(CanvasTest, CopiesPartOfAPicture) {
  std::vector<std::uint32_t> pixels;
  for (std::uint32_t at = 0; at < 100; ++at)
    pixels.push_back(0x00000100 + at);
  const RasterRef picture = MakeRaster(RasterKind::Bitmap, 10, 10, pixels);

  Surface.CopyPart(*picture, {1, 2});
  for (int x = 0; x < 8; ++x) {
    for (int y = 0; y < 6; ++y) {
      Expected.Dot(x, y, static_cast<std::uint32_t>(0x100 + (y + 2) * 10 + x + 1));
    }
  }
  ExpectLooks(Surface, Expected);
}

TEST_F(CanvasTest, KeepsItsPixelsWhereThePictureHasNone) {
  const RasterRef picture = MakeRaster(RasterKind::Bitmap, 2, 1, {0x112233, 0x445566});
  Surface.CopyPart(*picture, {-3, -1});
  Expected.Dot(3, 1, 0x112233);
  Expected.Dot(4, 1, 0x445566);
  ExpectLooks(Surface, Expected);

  Surface.CopyPart(*picture, {100, 100});
  ExpectLooks(Surface, Expected);
}

TEST(Region, IsABoxWithoutTheBoxesTakenAway) {
  Region region({0, 0, 5, 4});
  region.Remove({0, 0, 2, 1});
  region.Remove({4, 3, 5, 4});
  const std::vector<std::string> shape = {"  ###", "#####", "#####", "#### "};
  for (int y = -1; y <= 4; ++y) {
    for (int x = -1; x <= 5; ++x) {
      const bool is_inside = x >= 0 && x < 5 && y >= 0 && y < 4 &&
                             shape[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] == '#';
      EXPECT_EQ(region.Contains(x, y), is_inside) << x << ", " << y;
    }
  }
}

}  // namespace
}  // namespace cvl
