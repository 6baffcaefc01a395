// The headless control model: what the window's controls hold and what happens to them,
// whether anybody sees them or not. The boxes among them are the live settings.

#pragma once

#include <string>

#include "base/date_time.h"
#include "base/text.h"

namespace cvl {

/// Positions of controls are told in twips; this many are a pixel of a display at its usual
/// size.
inline constexpr int TwipsPerPixel = 15;

/// A tip: plain text, or a moment shown as a blank, the local date-time and a blank. The
/// moment becomes text only when somebody reads it.
class ToolTip {
 public:
  void Set(std::string text) {
    Text_ = std::move(text);
    ShowsMoment_ = false;
  }
  void SetMoment(DateTime moment) {
    Moment_ = moment;
    ShowsMoment_ = true;
  }
  std::string Text() const {
    return ShowsMoment_ ? Joined({" ", GeneralText(Moment_), " "}) : Text_;
  }

 private:
  std::string Text_;
  DateTime Moment_;
  bool ShowsMoment_ = false;
};

/// What all controls have.
struct Control {
  bool Visible = true;
  bool Enabled = true;
  ToolTip Tip;
};

}  // namespace cvl
