// A box with a line of text, a character a byte.

#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "controls/control.h"
#include "platform/address.h"

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

  const std::string &Text() const {
    if (TextIsStale_) {
      Text_ = AddressText(Address_);
      TextIsStale_ = false;
    }
    return Text_;
  }

  /// Stores text, cut at the box's limit as typed text is.
  void SetText(std::string_view text) {
    if (MaxLength_ != 0) text = text.substr(0, MaxLength_);
    if (text == Text()) return;
    Text_ = text;
    HoldsAddress_ = false;
    if (OnChange) OnChange();
  }

  /// Stores the text of an address, which is made when it is read. For boxes without a limit.
  void SetAddress(PeerAddress address) {
    if (HoldsAddress_ && address == Address_) return;
    const bool is_same = !HoldsAddress_ && AddressText(address) == Text_;
    HoldsAddress_ = true;
    Address_ = address;
    if (is_same) return;
    TextIsStale_ = true;
    if (OnChange) OnChange();
  }

  /// Presses a key, as a hand does.
  void Press(int key) {
    if (OnKeyPress) OnKeyPress(key);
  }

  /// The most characters it holds; 0 for no limit.
  std::size_t MaxLength() const { return MaxLength_; }

 private:
  mutable std::string Text_;
  mutable bool TextIsStale_ = false;
  bool HoldsAddress_ = false;
  PeerAddress Address_;
  std::size_t MaxLength_;
};

}  // namespace cvl
