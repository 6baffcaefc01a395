#include "ui/button/hand_cursor.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace cvl {

namespace {

constexpr std::size_t Side = 32;

/// '#' is the outline, '.' the hand; the rest of the icon is empty.
constexpr std::array<std::string_view, 22> Drawing = {
    "     ##          ", "    #..#         ", "    #..#         ", "    #..#         ",
    "    #..#         ", "    #..###       ", "    #..#..###    ", "    #..#..#..##  ",
    "    #..#..#..#.# ", "### #..#..#..#..#", "#..##........#..#", "#...#...........#",
    " #..............#", "  #.............#", "  #.............#", "   #............#",
    "   #...........# ", "    #..........# ", "    #..........# ", "     #........#  ",
    "     #........#  ", "     ##########  ",
};

RasterRef DrawHand() {
  Raster hand;
  hand.Kind = RasterKind::Icon;
  hand.Width = hand.Height = Side;
  hand.Pixels.resize(Side * Side);
  hand.HotX = 5;
  for (std::size_t y = 0; y < Drawing.size(); ++y) {
    for (std::size_t x = 0; x < Drawing[y].size(); ++x) {
      if (Drawing[y][x] == '#') hand.Pixels[y * Side + x] = 0xFF000000;
      if (Drawing[y][x] == '.') hand.Pixels[y * Side + x] = 0xFFFFFFFF;
    }
  }
  return std::make_shared<const Raster>(std::move(hand));
}

}  // namespace

RasterRef HandCursor() {
  static const RasterRef Hand = DrawHand();
  return Hand;
}

}  // namespace cvl
