#include "ui/button/button_layout.h"

#include <algorithm>

namespace cvl {

namespace {

constexpr int Gap = 4;
constexpr int FocusInset = 3;
constexpr int LargestSide = 32767;

TextSize Limited(TextSize size) {
  return {std::clamp(size.Width, 0, LargestSide), std::clamp(size.Height, 0, LargestSide)};
}

/// A span of LENGTH in the middle of another. What is too long sticks out on both sides.
int Centred(int from, int to, int length) {
  return from + (to - from - length) / 2;
}

Box At(int left, int top, TextSize size) {
  return {left, top, left + size.Width, top + size.Height};
}

Box Centred(const Box &area, TextSize size) {
  return At(Centred(area.Left, area.Right, size.Width), Centred(area.Top, area.Bottom, size.Height),
            size);
}

struct Pair {
  Box First;
  Box Second;
};

/// Two sizes side by side, with the gap, as one group in the middle of the area.
Pair SideBySide(const Box &area, TextSize first, TextSize second) {
  const int left = Centred(area.Left, area.Right, first.Width + Gap + second.Width);
  return {At(left, Centred(area.Top, area.Bottom, first.Height), first),
          At(left + first.Width + Gap, Centred(area.Top, area.Bottom, second.Height), second)};
}

Pair OneAboveTheOther(const Box &area, TextSize first, TextSize second) {
  const int top = Centred(area.Top, area.Bottom, first.Height + Gap + second.Height);
  return {At(Centred(area.Left, area.Right, first.Width), top, first),
          At(Centred(area.Left, area.Right, second.Width), top + first.Height + Gap, second)};
}

void PlaceBoth(ButtonLayout &layout, const Box &area, std::int32_t position, TextSize picture,
               TextSize caption) {
  Pair pair;
  switch (position) {
    case picture_position::Above:
      pair = OneAboveTheOther(area, picture, caption);
      break;
    case picture_position::Below:
      pair = OneAboveTheOther(area, caption, picture);
      std::swap(pair.First, pair.Second);
      break;
    case picture_position::Right:
      pair = SideBySide(area, caption, picture);
      std::swap(pair.First, pair.Second);
      break;
    default:
      pair = SideBySide(area, picture, caption);
  }
  layout.Picture = pair.First;
  layout.Caption = pair.Second;
}

}  // namespace

ButtonLayout CalcLayout(int width, int height, const ButtonProperties &properties,
                        const ButtonFont &font, ButtonText &text) {
  const Box area = {4, 4, width - 3, height - 3};
  const TextSize picture = Limited({properties.PictureWidth, properties.PictureHeight});
  TextSize caption;
  if (!properties.Caption.empty()) {
    caption = Limited(text.MeasureText(ShowCaption(properties.Caption), font, area.Width()));
  }

  ButtonLayout layout;
  layout.Focus = {FocusInset, FocusInset, width - FocusInset, height - FocusInset};
  if (properties.Picture && !properties.Caption.empty()) {
    PlaceBoth(layout, area, properties.PicturePosition, picture, caption);
  } else {
    // Without a picture its box still stands: a hover picture may come.
    layout.Caption = Centred(area, caption);
    layout.Picture = Centred(area, picture);
  }
  layout.Shadow = layout.Picture.Moved(1, 1);
  return layout;
}

}  // namespace cvl
