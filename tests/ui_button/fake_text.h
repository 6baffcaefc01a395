// A font in which every character is 6 pixels wide and 13 high. It paints nothing, but
// remembers what it was asked to draw.

#pragma once

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "base/text.h"
#include "ui/button/button_text.h"

namespace cvl {

struct DrawnText {
  std::string Text;
  std::size_t Underlined;
  std::string FontName;
  Box Where;
  Colour Ink;

  bool operator==(const DrawnText &) const = default;
};

inline void PrintTo(const Box &box, std::ostream *out) {
  *out << "(" << box.Left << ", " << box.Top << ", " << box.Right << ", " << box.Bottom << ")";
}

inline void PrintTo(const DrawnText &drawn, std::ostream *out) {
  *out << '"' << drawn.Text << "\" underlined at " << drawn.Underlined << ", " << drawn.FontName
       << ", in " << std::hex << drawn.Ink << std::dec << " at ";
  PrintTo(drawn.Where, out);
}

/// The plain part of every fake that has a font.
struct FakeFont {
  static constexpr int CharacterWidth = 6;
  static constexpr int LineHeight = 13;

  std::vector<DrawnText> Drawn;
  std::vector<int> MeasuredWidths;

  TextSize Measure(const ShownCaption &text, int width) {
    MeasuredWidths.push_back(width);
    TextSize size{0, LineHeight};
    int line = 0;
    for (const std::string &word : Split(text.Text, " ")) {
      const int length = static_cast<int>(word.size()) * CharacterWidth;
      const bool fits = line == 0 || line + CharacterWidth + length <= width;
      if (!fits) size.Height += LineHeight;
      line = line == 0 || !fits ? length : line + CharacterWidth + length;
      size.Width = std::max(size.Width, line);
    }
    return size;
  }

  void Draw(const ShownCaption &text, const ButtonFont &font, const Box &box, Colour ink) {
    Drawn.push_back({text.Text, text.Underlined, font.Name, box, ink});
  }
};

class FakeText final : public ButtonText, public FakeFont {
 public:
  TextSize MeasureText(const ShownCaption &text, const ButtonFont &, int width) override {
    return Measure(text, width);
  }
  void DrawText(Canvas &, const ShownCaption &text, const ButtonFont &font, const Box &box,
                Colour ink) override {
    Draw(text, font, box, ink);
  }
  ButtonFont ContainerFont() override { return {}; }
};

}  // namespace cvl
