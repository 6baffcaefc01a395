#include "ui/button/canvas.h"

#include <algorithm>
#include <cassert>

namespace cvl {

void Canvas::Resize(int width, int height) {
  assert(width >= 0 && height >= 0);
  Width_ = width;
  Height_ = height;
  Pixels_.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), PixelOf(0));
}

void Canvas::Fill(Colour colour) {
  std::fill(Pixels_.begin(), Pixels_.end(), PixelOf(colour));
}

void Canvas::SetPixel(int x, int y, Colour colour) {
  PutPixel(x, y, PixelOf(colour));
}

void Canvas::Frame(const Box &box, Colour colour) {
  if (box.IsEmpty()) return;
  Line({box.Left, box.Top}, {box.Right, box.Top}, colour);
  Line({box.Left, box.Bottom - 1}, {box.Right, box.Bottom - 1}, colour);
  Line({box.Left, box.Top}, {box.Left, box.Bottom}, colour);
  Line({box.Right - 1, box.Top}, {box.Right - 1, box.Bottom}, colour);
}

void Canvas::Line(Point from, Point to, Colour colour) {
  assert(from.X == to.X || from.Y == to.Y);
  const std::uint32_t pixel = PixelOf(colour);
  if (from.Y == to.Y) {
    if (from.Y < 0 || from.Y >= Height_) return;
    // Backwards the pixel left out is the one furthest left.
    const int left = from.X <= to.X ? from.X : to.X + 1;
    const int right = from.X <= to.X ? to.X : from.X + 1;
    for (int x = std::max(left, 0); x < std::min(right, Width_); ++x)
      PutPixel(x, from.Y, pixel);
  } else if (from.X >= 0 && from.X < Width_) {
    const int top = from.Y <= to.Y ? from.Y : to.Y + 1;
    const int bottom = from.Y <= to.Y ? to.Y : from.Y + 1;
    for (int y = std::max(top, 0); y < std::min(bottom, Height_); ++y)
      PutPixel(from.X, y, pixel);
  }
}

void Canvas::FocusRect(const Box &box) {
  for (int y = std::max(box.Top, 0); y < std::min(box.Bottom, Height_); ++y) {
    for (int x = std::max(box.Left, 0); x < std::min(box.Right, Width_); ++x) {
      const bool on_edge =
          x == box.Left || x == box.Right - 1 || y == box.Top || y == box.Bottom - 1;
      if (on_edge && (x + y) % 2 == 0) Pixels_[Index(x, y)] ^= 0x00FFFFFF;
    }
  }
}

void Canvas::CopyPart(const Raster &picture, Point from) {
  for (int y = 0; y < Height_; ++y) {
    for (int x = 0; x < Width_; ++x) {
      if (!picture.Contains(from.X + x, from.Y + y)) continue;
      Pixels_[Index(x, y)] = 0xFF000000U | picture.At(from.X + x, from.Y + y);
    }
  }
}

void Canvas::PutPixel(int x, int y, std::uint32_t pixel) {
  if (Bounds().Contains(x, y)) Pixels_[Index(x, y)] = pixel;
}

std::size_t Canvas::Index(int x, int y) const {
  assert(Bounds().Contains(x, y));
  return static_cast<std::size_t>(y) * static_cast<std::size_t>(Width_) +
         static_cast<std::size_t>(x);
}

}  // namespace cvl
