// Message boxes: a text that the user confirms or answers.

#pragma once

#include <string_view>

namespace cvl {

/// The window that a box belongs to. None shows it by itself.
enum class BoxOwner { None, MainWindow, ConfigurationWindow };

/// Buttons and icon; the numbers are the shell's.
enum class BoxStyle {
  Ok = 0,                 ///< OK, no icon
  OkExclamation = 48,     ///< OK, an exclamation mark
  YesNoInformation = 68,  ///< Yes and No, the letter i
};

/// The button that was pressed; the numbers are the shell's.
enum class BoxAnswer { Ok = 1, Yes = 6, No = 7 };

class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;

  /// Shows a box and returns when it is answered; meanwhile the loop goes on. Where there
  /// is no window the text goes to the system's log instead, and Yes or No is answered No.
  virtual BoxAnswer Show(BoxOwner owner, BoxStyle style, std::string_view title,
                         std::string_view text) = 0;
};

/// What a box answers that nobody sees.
constexpr BoxAnswer UnseenAnswer(BoxStyle style) {
  return style == BoxStyle::YesNoInformation ? BoxAnswer::No : BoxAnswer::Ok;
}

}  // namespace cvl
