// A second way of drawing, as plain as can be: what a surface is expected to look like.
//
//   Sketch expected(20, 12, 0xC0C0C0);
//   expected.Box(0, 0, 20, 12, 0x808080);
//   ExpectLooks(canvas, expected);

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <vector>

#include "ui/button/canvas.h"

namespace cvl {

/// Colours are 0xRRGGBB.
class Sketch {
 public:
  Sketch(int width, int height, std::uint32_t ground)
      : Width(width), Height(height), Dots_(Index(0, height), ground) {}

  const int Width;
  const int Height;

  /// Nothing outside of the sheet.
  void Dot(int x, int y, std::uint32_t colour) {
    if (x >= 0 && x < Width && y >= 0 && y < Height) Dots_[Index(x, y)] = colour;
  }

  /// From the first point to, but without, the second, across or downwards.
  void Stroke(int x1, int y1, int x2, int y2, std::uint32_t colour) {
    const int steps = std::max(std::abs(x2 - x1), std::abs(y2 - y1));
    for (int step = 0; step < steps; ++step) {
      Dot(x1 + (x2 - x1) / steps * step, y1 + (y2 - y1) / steps * step, colour);
    }
  }

  /// The edge of left, top, right, bottom, with the right and bottom sides one inside.
  void Box(int left, int top, int right, int bottom, std::uint32_t colour) {
    for (int x = left; x < right; ++x) {
      for (int y = top; y < bottom; ++y) {
        if (x == left || x == right - 1 || y == top || y == bottom - 1) Dot(x, y, colour);
      }
    }
  }

  /// Everything inside left, top, right, bottom.
  void Area(int left, int top, int right, int bottom, std::uint32_t colour) {
    for (int x = left; x < right; ++x) {
      for (int y = top; y < bottom; ++y)
        Dot(x, y, colour);
    }
  }

  std::uint32_t At(int x, int y) const { return Dots_[Index(x, y)]; }

 private:
  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(Width) +
           static_cast<std::size_t>(x);
  }

  std::vector<std::uint32_t> Dots_;
};

/// Each component of 0xRRGGBB with a number added, stopping at 0 and 255.
inline std::uint32_t Brighter(std::uint32_t colour, int by) {
  std::uint32_t sum = 0;
  for (const int shift : {16, 8, 0}) {
    const int component = static_cast<int>(colour >> shift & 0xFF) + by;
    const int kept = component < 0 ? 0 : component > 255 ? 255 : component;
    sum |= static_cast<std::uint32_t>(kept) << shift;
  }
  return sum;
}

/// Compares every pixel and tells of the first that differs.
inline void ExpectLooks(const Canvas &canvas, const Sketch &sketch,
                        const char *file = __builtin_FILE(), int line = __builtin_LINE()) {
  const testing::ScopedTrace trace(file, line, "ExpectLooks");
  ASSERT_EQ(canvas.Width(), sketch.Width);
  ASSERT_EQ(canvas.Height(), sketch.Height);
  for (int y = 0; y < sketch.Height; ++y) {
    for (int x = 0; x < sketch.Width; ++x) {
      const std::uint32_t expected = 0xFF000000U | sketch.At(x, y);
      if (canvas.At(x, y) == expected) continue;
      std::ostringstream text;
      text << std::hex << "pixel " << std::dec << x << ", " << y << " is " << std::hex
           << canvas.At(x, y) << ", expected " << expected;
      ADD_FAILURE() << text.str();
      return;
    }
  }
}

}  // namespace cvl
