// A rectangle of whole pixels.

#pragma once

namespace cvl {

/// From (Left, Top) up to, but without, the column Right and the row Bottom. One whose
/// right side isn't right of its left side, or likewise downwards, is empty.
struct Box {
  int Left = 0;
  int Top = 0;
  int Right = 0;
  int Bottom = 0;

  constexpr int Width() const { return Right - Left; }
  constexpr int Height() const { return Bottom - Top; }
  constexpr bool IsEmpty() const { return Right <= Left || Bottom <= Top; }

  constexpr bool Contains(int x, int y) const {
    return x >= Left && x < Right && y >= Top && y < Bottom;
  }
  constexpr Box Moved(int dx, int dy) const {
    return {Left + dx, Top + dy, Right + dx, Bottom + dy};
  }
  constexpr bool operator==(const Box &) const = default;
};

}  // namespace cvl
