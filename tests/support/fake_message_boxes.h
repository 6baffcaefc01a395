// Message boxes that answer as a test says, and keep what they showed.

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/message_box.h"

namespace cvl {

class FakeMessageBoxes final : public MessageBoxes {
 public:
  struct Shown {
    BoxOwner Owner;
    BoxStyle Style;
    std::string Title;
    std::string Text;

    friend bool operator==(const Shown &, const Shown &) = default;
  };

  /// Every box, in order.
  std::vector<Shown> Boxes;

  /// What a box with Yes and No answers.
  BoxAnswer Answer = BoxAnswer::No;

  /// Called while a box is up, before it is answered.
  std::function<void()> OnShow;

  BoxAnswer Show(BoxOwner owner, BoxStyle style, std::string_view title,
                 std::string_view text) override {
    Boxes.push_back({owner, style, std::string(title), std::string(text)});
    if (OnShow) OnShow();
    return style == BoxStyle::YesNoInformation ? Answer : BoxAnswer::Ok;
  }
};

}  // namespace cvl
