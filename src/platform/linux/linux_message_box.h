// Message boxes of a run without a window.

#pragma once

#include "platform/message_box.h"

namespace cvl {

/// Sends the text of each box to the system log, under the name of the service.
class LoggedMessageBoxes final : public MessageBoxes {
 public:
  BoxAnswer Show(BoxOwner owner, BoxStyle style, std::string_view title,
                 std::string_view text) override;
};

}  // namespace cvl
