#include "ui/button/raster_painting.h"

#include <algorithm>
#include <cstdint>

namespace cvl {

namespace {

std::uint32_t AlphaOf(std::uint32_t pixel) {
  return pixel >> 24;
}

bool Counts(const Raster &picture, std::uint32_t pixel, Colour mask) {
  if (picture.Kind == RasterKind::Icon) return AlphaOf(pixel) != 0;
  return ColourOfPixel(pixel) != mask;
}

/// As the eye weighs the components, nearer to black than to white.
bool IsDark(std::uint32_t pixel) {
  const Colour colour = ColourOfPixel(pixel);
  return RedOf(colour) * 299 + GreenOf(colour) * 587 + BlueOf(colour) * 114 < 128 * 1000;
}

/// Calls VISIT(x, y, pixel) for each pixel of BOX on the canvas, with the pixel of the
/// picture that falls on it, if it counts.
template <class Visit>
void ForEachStretched(const Canvas &canvas, const Raster &picture, const Box &box, Colour mask,
                      Visit visit) {
  if (box.IsEmpty() || picture.Width == 0 || picture.Height == 0) return;
  const Colour left_out = TranslateColor(mask);
  for (int y = std::max(box.Top, 0); y < std::min(box.Bottom, canvas.Height()); ++y) {
    const auto row = static_cast<int>(std::int64_t{y - box.Top} * picture.Height / box.Height());
    for (int x = std::max(box.Left, 0); x < std::min(box.Right, canvas.Width()); ++x) {
      const auto column =
          static_cast<int>(std::int64_t{x - box.Left} * picture.Width / box.Width());
      const std::uint32_t pixel = picture.At(column, row);
      if (Counts(picture, pixel, left_out)) visit(x, y, pixel);
    }
  }
}

/// One component of OVER upon UNDER, to the nearest.
std::uint32_t Blended(std::uint32_t over, std::uint32_t under, std::uint32_t alpha, int shift) {
  const std::uint32_t sum =
      (over >> shift & 0xFF) * alpha + (under >> shift & 0xFF) * (255 - alpha);
  return (sum + 127) / 255 << shift;
}

std::uint32_t Upon(std::uint32_t over, std::uint32_t under) {
  const std::uint32_t alpha = AlphaOf(over);
  return 0xFF000000U | Blended(over, under, alpha, 16) | Blended(over, under, alpha, 8) |
         Blended(over, under, alpha, 0);
}

void PaintInk(Canvas &canvas, const Raster &picture, const Box &box, Colour mask, Colour colour) {
  ForEachStretched(canvas, picture, box, mask, [&](int x, int y, std::uint32_t pixel) {
    if (IsDark(pixel)) canvas.SetPixel(x, y, colour);
  });
}

}  // namespace

void PaintRaster(Canvas &canvas, const Raster &picture, const Box &box, Colour mask) {
  const bool is_icon = picture.Kind == RasterKind::Icon;
  ForEachStretched(canvas, picture, box, mask, [&](int x, int y, std::uint32_t pixel) {
    canvas.PutPixel(x, y, is_icon ? Upon(pixel, canvas.At(x, y)) : 0xFF000000U | pixel);
  });
}

void PaintSilhouette(Canvas &canvas, const Raster &picture, const Box &box, Colour mask,
                     Colour colour) {
  ForEachStretched(canvas, picture, box, mask,
                   [&](int x, int y, std::uint32_t) { canvas.SetPixel(x, y, colour); });
}

void PaintEmbossed(Canvas &canvas, const Raster &picture, const Box &box, Colour mask) {
  PaintInk(canvas, picture, box.Moved(1, 1), mask, system_colour::Highlight3D);
  PaintInk(canvas, picture, box, mask, system_colour::ButtonShadow);
}

}  // namespace cvl
