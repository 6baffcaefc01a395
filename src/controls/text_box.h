// A box with a line of text, a character a byte.

#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "controls/control.h"

namespace cvl {

/// The code of the Enter key.
inline constexpr int EnterKey = 13;

class TextBox : public Control {
 public:
  explicit TextBox(std::string text = {}, std::size_t max_length = 0)
      : Text_(std::move(text)), MaxLength_(max_length) {}

  /// Raised when the text changes, by a hand or from code; never by equal text.
  std::function<void()> OnChange;
  /// Raised when a key is pressed, with its code.
  std::function<void(int)> OnKeyPress;

  const std::string &Text() const { return Text_; }

  /// Stores text, cut at the box's limit as typed text is.
  void SetText(std::string_view text) {
    if (MaxLength_ != 0) text = text.substr(0, MaxLength_);
    if (text == Text_) return;
    Text_ = text;
    if (OnChange) OnChange();
  }

  /// Presses a key, as a hand does.
  void Press(int key) {
    if (OnKeyPress) OnKeyPress(key);
  }

  /// The most characters it holds; 0 for no limit.
  std::size_t MaxLength() const { return MaxLength_; }

 private:
  std::string Text_;
  std::size_t MaxLength_;
};

}  // namespace cvl
