// A surface of pixels to paint on. Whatever reaches beyond it is cut off.

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ui/button/box.h"
#include "ui/button/colours.h"
#include "ui/button/raster.h"

namespace cvl {

struct Point {
  int X = 0;
  int Y = 0;
};

class Canvas {
 public:
  /// Makes it WIDTH by HEIGHT black pixels; neither is negative.
  void Resize(int width, int height);

  int Width() const { return Width_; }
  int Height() const { return Height_; }
  Box Bounds() const { return {0, 0, Width_, Height_}; }

  /// Rows from the top, pixels 0xFFRRGGBB.
  const std::uint32_t *Pixels() const { return Pixels_.data(); }
  /// For whoever has means of its own to paint, such as a font. Alphas stay at 0xFF.
  std::uint32_t *Pixels() { return Pixels_.data(); }

  /// The pixel at a place inside.
  std::uint32_t At(int x, int y) const { return Pixels_[Index(x, y)]; }

  void Fill(Colour colour);
  void SetPixel(int x, int y, Colour colour);

  /// The edge of a box, one pixel wide and inside of it. An empty box has none.
  void Frame(const Box &box, Colour colour);

  /// A line across or downwards, in either direction, without the pixel at TO: a line from a
  /// point to itself is nothing.
  void Line(Point from, Point to, Colour colour);

  /// The dotted edge of a box: every second pixel of it turned to its opposite.
  void FocusRect(const Box &box);

  /// Copies the part of a picture that begins at FROM, which may lie outside, to the upper
  /// left corner. Where the picture has no pixel the canvas keeps its own.
  void CopyPart(const Raster &picture, Point from);

  /// Sets a pixel 0xFFRRGGBB.
  void PutPixel(int x, int y, std::uint32_t pixel);

 private:
  std::size_t Index(int x, int y) const;

  int Width_ = 0;
  int Height_ = 0;
  std::vector<std::uint32_t> Pixels_;
};

}  // namespace cvl
