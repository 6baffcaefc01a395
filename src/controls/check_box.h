// A box with a tick.

#pragma once

#include <functional>

#include "controls/control.h"

namespace cvl {

enum class Tick { Off = 0, On = 1 };

class CheckBox : public Control {
 public:
  /// Raised when the value changes, by a hand or from code; never when it is set to what
  /// it has been.
  std::function<void()> OnClick;

  Tick Value() const { return Value_; }
  bool IsTicked() const { return Value_ == Tick::On; }

  void SetValue(Tick value) {
    if (value == Value_) return;
    Value_ = value;
    if (OnClick) OnClick();
  }

 private:
  Tick Value_ = Tick::Off;
};

}  // namespace cvl
