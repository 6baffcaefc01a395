#include "ui/button/caption_text.h"

namespace cvl {

namespace {

/// Lower case of a Latin-1 character. Of the letters beyond ASCII, two signs stand among the
/// capitals: the times sign, and the sharp s, which has no capital there.
char LowerCase(char letter) {
  const auto code = static_cast<unsigned char>(letter);
  const bool is_capital =
      (code >= 'A' && code <= 'Z') || (code >= 0xC0 && code <= 0xDE && code != 0xD7);
  return is_capital ? static_cast<char>(code + 0x20) : letter;
}

}  // namespace

ShownCaption ShowCaption(std::string_view caption) {
  ShownCaption shown;
  for (std::size_t at = 0; at < caption.size(); ++at) {
    if (caption[at] == '&') {
      if (++at == caption.size()) break;
      if (caption[at] != '&' && shown.Underlined == ShownCaption::Nothing) {
        shown.Underlined = shown.Text.size();
      }
    }
    shown.Text += caption[at];
  }
  return shown;
}

std::string AccessKeyOf(std::string_view caption) {
  const ShownCaption shown = ShowCaption(caption);
  if (shown.Underlined == ShownCaption::Nothing) return {};
  return {LowerCase(shown.Text[shown.Underlined])};
}

}  // namespace cvl
