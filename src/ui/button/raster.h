// A picture as its pixels: what a button shows beside its caption, or as its cursor.

#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace cvl {

/// A bitmap is opaque but for the pixels of a mask colour; an icon has its alpha.
enum class RasterKind { Bitmap, Icon };

/// Rows from the top, pixels 0xAARRGGBB; Width times Height of them.
struct Raster {
  RasterKind Kind = RasterKind::Bitmap;
  int Width = 0;
  int Height = 0;
  std::vector<std::uint32_t> Pixels;

  /// Where it points when it is a cursor.
  int HotX = 0;
  int HotY = 0;

  bool Contains(int x, int y) const { return x >= 0 && x < Width && y >= 0 && y < Height; }

  /// The pixel at a place inside.
  std::uint32_t At(int x, int y) const {
    assert(Contains(x, y));
    return Pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(Width) +
                  static_cast<std::size_t>(x)];
  }
};

/// A picture that several may hold; null is none. It never changes once it is made.
using RasterRef = std::shared_ptr<const Raster>;

/// Makes a picture of WIDTH times HEIGHT pixels.
inline RasterRef MakeRaster(RasterKind kind, int width, int height,
                            std::vector<std::uint32_t> pixels) {
  assert(width >= 0 && height >= 0);
  assert(pixels.size() == static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  return std::make_shared<const Raster>(Raster{kind, width, height, std::move(pixels)});
}

}  // namespace cvl
