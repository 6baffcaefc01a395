#include "ui/button/raster_painting.h"

#include <gtest/gtest.h>

#include "tests/ui_button/sketch.h"

namespace cvl {
namespace {

constexpr Colour NoMask = 0x123457;  // not among the pixels below

/// Six by five pixels of button face.
class RasterPainting : public testing::Test {
 protected:
  RasterPainting() {
    Surface.Resize(6, 5);
    Surface.Fill(0xC0C0C0);
  }

  Canvas Surface;
  Sketch Expected{6, 5, 0xC0C0C0};

  /// Orange, green, black, white, from the upper left.
  RasterRef Four = MakeRaster(RasterKind::Bitmap, 2, 2, {0xFF8000, 0x00FF00, 0x000000, 0xFFFFFF});
};

TEST_F(RasterPainting, PaintsABitmapAtItsPlace) {
  PaintRaster(Surface, *Four, {1, 2, 3, 4}, NoMask);
  Expected.Dot(1, 2, 0xFF8000);
  Expected.Dot(2, 2, 0x00FF00);
  Expected.Dot(1, 3, 0x000000);
  Expected.Dot(2, 3, 0xFFFFFF);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, LeavesOutTheMaskColour) {
  PaintRaster(Surface, *Four, {1, 2, 3, 4}, Rgb(0xFF, 0x80, 0x00));
  Expected.Dot(2, 2, 0x00FF00);
  Expected.Dot(1, 3, 0x000000);
  Expected.Dot(2, 3, 0xFFFFFF);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, LooksUpAMaskThatNamesAColourOfTheSystem) {
  PaintRaster(Surface, *Four, {1, 2, 3, 4}, system_colour::Highlight3D);
  Expected.Dot(1, 2, 0xFF8000);
  Expected.Dot(2, 2, 0x00FF00);
  Expected.Dot(1, 3, 0x000000);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, StretchesByRepeatingPixels) {
  PaintRaster(Surface, *Four, {0, 0, 4, 3}, NoMask);
  Expected.Area(0, 0, 2, 2, 0xFF8000);
  Expected.Area(2, 0, 4, 2, 0x00FF00);
  Expected.Area(0, 2, 2, 3, 0x000000);
  Expected.Area(2, 2, 4, 3, 0xFFFFFF);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, ShrinksBySkippingPixels) {
  PaintRaster(Surface, *Four, {4, 4, 5, 5}, NoMask);
  Expected.Dot(4, 4, 0xFF8000);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, CutsOffWhatReachesBeyondTheCanvas) {
  PaintRaster(Surface, *Four, {-1, -1, 1, 1}, NoMask);
  Expected.Dot(0, 0, 0xFFFFFF);
  ExpectLooks(Surface, Expected);

  PaintRaster(Surface, *Four, {-16384, -16384, 16383, 16383}, NoMask);
  ExpectLooks(Surface, Sketch(6, 5, 0xFFFFFF));
}

TEST_F(RasterPainting, PaintsNothingIntoAnEmptyBoxOrOfAnEmptyPicture) {
  PaintRaster(Surface, *Four, {2, 2, 2, 4}, NoMask);
  PaintRaster(Surface, *Four, {4, 2, 2, 4}, NoMask);
  PaintRaster(Surface, *MakeRaster(RasterKind::Icon, 0, 3, {}), {0, 0, 4, 4}, NoMask);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, BlendsAnIconByItsAlphaAndKnowsNoMask) {
  const RasterRef icon = MakeRaster(RasterKind::Icon, 3, 1, {0xFF00FF00, 0x00FF0000, 0x80FF0000});
  PaintRaster(Surface, *icon, {0, 0, 3, 1}, Rgb(0x00, 0xFF, 0x00));
  Expected.Dot(0, 0, 0x00FF00);
  // Half of 192 under half of 255 or nothing, with an alpha of 128 in 255.
  Expected.Dot(2, 0, 0xE06060);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, DoesNotReadTheAlphaOfABitmap) {
  const RasterRef bitmap = MakeRaster(RasterKind::Bitmap, 2, 1, {0x00112233, 0x80445566});
  PaintRaster(Surface, *bitmap, {0, 0, 2, 1}, NoMask);
  Expected.Dot(0, 0, 0x112233);
  Expected.Dot(1, 0, 0x445566);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, FillsASilhouetteWithOneColour) {
  PaintSilhouette(Surface, *Four, {1, 1, 3, 3}, Rgb(0x00, 0xFF, 0x00), Rgb(176, 176, 176));
  Expected.Dot(1, 1, 0xB0B0B0);
  Expected.Dot(1, 2, 0xB0B0B0);
  Expected.Dot(2, 2, 0xB0B0B0);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, TakesTheSilhouetteOfAnIconFromItsAlpha) {
  const RasterRef icon = MakeRaster(RasterKind::Icon, 2, 1, {0x00FFFFFF, 0x01FFFFFF});
  PaintSilhouette(Surface, *icon, {0, 0, 2, 1}, 0, Rgb(1, 2, 3));
  Expected.Dot(1, 0, 0x010203);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, EmbossesTheDarkPixels) {
  // One dark pixel at the left; the others are light, or not there at all.
  const RasterRef bitmap = MakeRaster(RasterKind::Bitmap, 3, 1, {0x102030, 0xF0F0F0, 0x000001});
  PaintEmbossed(Surface, *bitmap, {1, 1, 4, 2}, Rgb(0, 0, 1));
  Expected.Dot(2, 2, 0xFFFFFF);
  Expected.Dot(1, 1, 0x808080);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, LaysTheShadowOfAnEmbossedPictureOverItsLight) {
  const RasterRef bitmap = MakeRaster(RasterKind::Bitmap, 2, 2, {1, 1, 1, 1});
  PaintEmbossed(Surface, *bitmap, {0, 0, 2, 2}, NoMask);
  Expected.Area(1, 1, 3, 3, 0xFFFFFF);
  Expected.Area(0, 0, 2, 2, 0x808080);
  ExpectLooks(Surface, Expected);
}

TEST_F(RasterPainting, CountsAsDarkWhatIsNearerToBlack) {
  const RasterRef greys = MakeRaster(RasterKind::Bitmap, 2, 1, {0x7F7F7F, 0x808080});
  PaintEmbossed(Surface, *greys, {0, 0, 2, 1}, NoMask);
  Expected.Dot(1, 1, 0xFFFFFF);
  Expected.Dot(0, 0, 0x808080);
  ExpectLooks(Surface, Expected);
}

}  // namespace
}  // namespace cvl
